-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- The load module is in a library of the environment that WLM ENVIRONMENT names.
CREATE FUNCTION $$object_owner$$.$$object_name$$
(
  <data_type>,
  <data_type>
)
  RETURNS <return_type>
  SPECIFIC <specific_name>
  EXTERNAL NAME '<load_module>'
  LANGUAGE <program_language>
  PARAMETER STYLE DB2SQL
  DETERMINISTIC
  FENCED
  CALLED ON NULL INPUT
  READS SQL DATA
  NO EXTERNAL ACTION
  NO SCRATCHPAD
  NO FINAL CALL
  NO DBINFO
  COLLID <collection_name>
  WLM ENVIRONMENT <environment_name>
  STAY RESIDENT NO
  PROGRAM TYPE SUB
  SECURITY DB2
;

GRANT EXECUTE ON SPECIFIC FUNCTION $$object_owner$$.<specific_name> TO <user_name>
;
