-- Create $$object_type$$ $$object_name$$ on a table of $$object_owner$$
-- Before INDEX: UNIQUE, CLUSTERED or NONCLUSTERED.
CREATE NONCLUSTERED INDEX $$object_name$$
  ON $$object_owner$$.<table_name> (<column_name>, <column_name>)
  WITH PAD_INDEX, FILLFACTOR = <fill_percentage>
  ON <filegroup_name>
go
