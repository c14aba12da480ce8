-- Create $$object_type$$ $$object_name$$ on a table of $$object_owner$$
-- Behind ALTER TABLE and the table: WITH NOCHECK leaves the present rows unchecked.
ALTER TABLE $$object_owner$$.<table_name>
  WITH CHECK
  ADD CONSTRAINT $$object_name$$
  CHECK (<condition>)
go
