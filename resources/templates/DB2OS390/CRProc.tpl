-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- The load module is in a library of the environment that WLM ENVIRONMENT names.
CREATE PROCEDURE $$object_owner$$.$$object_name$$
(
  IN <input_parameter> <data_type>,
  OUT <output_parameter> <data_type>,
  INOUT <changed_parameter> <data_type>
)
  RESULT SETS 1
  EXTERNAL NAME <load_module>
  LANGUAGE <program_language>
  PARAMETER STYLE GENERAL WITH NULLS
  NOT DETERMINISTIC
  MODIFIES SQL DATA
  NO DBINFO
  COLLID <collection_name>
  WLM ENVIRONMENT <environment_name>
  ASUTIME NO LIMIT
  STAY RESIDENT NO
  PROGRAM TYPE MAIN
  SECURITY DB2
  COMMIT ON RETURN NO
;

GRANT EXECUTE ON PROCEDURE $$object_owner$$.$$object_name$$ TO <user_name>
;
