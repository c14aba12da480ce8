-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- The precompiler makes the package of the SQL in the program and leaves the changed program.
PREP <program_file>
  COLLECTION $$object_owner$$
  PACKAGE USING $$object_name$$
  QUALIFIER <schema_name>
  ISOLATION CS
  BLOCKING UNAMBIG
  VALIDATE BIND
  EXPLAIN NO
;
