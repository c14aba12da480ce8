-- Create $$object_type$$ $$object_name$$ on a table of $$object_owner$$
ALTER TABLE $$object_owner$$.<table_name>
  ADD CONSTRAINT $$object_name$$
  CHECK (<condition>)
  NOT DEFERRABLE
  ENABLE VALIDATE
/
