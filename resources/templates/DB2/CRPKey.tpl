-- Create $$object_type$$ $$object_name$$ on a table of $$object_owner$$
-- The columns are NOT NULL.
ALTER TABLE $$object_owner$$.<table_name>
  ADD CONSTRAINT $$object_name$$
  PRIMARY KEY (<column_name>, <column_name>)
;
