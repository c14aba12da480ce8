-- Create $$object_type$$ $$object_name$$ on a table of $$object_owner$$
-- Without ON DELETE, referenced rows stay.
ALTER TABLE $$object_owner$$.<table_name>
  ADD CONSTRAINT $$object_name$$
  FOREIGN KEY (<column_name>, <column_name>)
  REFERENCES $$object_owner$$.<referenced_table> (<referenced_column>, <referenced_column>)
  ON DELETE CASCADE
  NOT DEFERRABLE
  ENABLE VALIDATE
/
