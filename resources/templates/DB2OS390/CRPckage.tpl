-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- The precompiler binds the package to the collection, the first part of its name.
PREP <program_file>
  ACTION REPLACE
  COLLECTION $$object_owner$$
  PACKAGE USING $$object_name$$
  OWNER <owner_name>
  QUALIFIER <qualifier_name>
  ISOLATION CS
  RELEASE COMMIT
  SQLERROR NOPACKAGE
  VALIDATE BIND
  EXPLAIN NO
;
