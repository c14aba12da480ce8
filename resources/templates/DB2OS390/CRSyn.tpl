-- Create $$object_type$$ $$object_name$$ of $$object_owner$$
-- A synonym belongs to the one who creates it.
SET CURRENT SQLID = '$$object_owner$$'
;

CREATE SYNONYM $$object_name$$
  FOR <owner_name>.<table_name>
;
