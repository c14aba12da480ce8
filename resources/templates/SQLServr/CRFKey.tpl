-- Create $$object_type$$ $$object_name$$ on a table of $$object_owner$$
-- From version 8.0 on, at the end: ON DELETE CASCADE, ON UPDATE CASCADE.
ALTER TABLE $$object_owner$$.<table_name>
  WITH CHECK
  ADD CONSTRAINT $$object_name$$
  FOREIGN KEY (<column_name>, <column_name>)
  REFERENCES $$object_owner$$.<referenced_table> (<referenced_column>, <referenced_column>)
go
