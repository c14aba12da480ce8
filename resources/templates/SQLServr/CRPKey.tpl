-- Create $$object_type$$ $$object_name$$ on a table of $$object_owner$$
-- Behind PRIMARY KEY: CLUSTERED or NONCLUSTERED.
ALTER TABLE $$object_owner$$.<table_name>
  ADD CONSTRAINT $$object_name$$
  PRIMARY KEY CLUSTERED (<column_name>, <column_name>)
  WITH FILLFACTOR = <fill_percentage>
  ON <filegroup_name>
go
