-- Create $$object_type$$ $$object_name$$ on a table of $$object_owner$$
-- Behind ON DELETE: NO ACTION, RESTRICT, CASCADE or SET NULL. Behind ON UPDATE: the first two.
ALTER TABLE $$object_owner$$.<table_name>
  ADD CONSTRAINT $$object_name$$
  FOREIGN KEY (<column_name>, <column_name>)
  REFERENCES $$object_owner$$.<referenced_table> (<referenced_column>, <referenced_column>)
  ON DELETE NO ACTION
  ON UPDATE NO ACTION
;
