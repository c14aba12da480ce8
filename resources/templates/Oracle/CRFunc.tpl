-- Create $$object_type$$ $$object_owner$$.$$object_name$$
CREATE OR REPLACE FUNCTION $$object_owner$$.$$object_name$$
(
  <parameter_name>     IN <data_type>,
  <optional_parameter> IN <data_type> DEFAULT <default_value>
)
RETURN <return_type>
IS
  v_result <table_name>.<column_name>%TYPE;
BEGIN
  SELECT <column_name>
    INTO v_result
    FROM <table_name>
    WHERE <key_column> = <parameter_name>;
  RETURN v_result;
EXCEPTION
  WHEN NO_DATA_FOUND THEN
    RETURN NULL;
END;
/

GRANT EXECUTE ON $$object_owner$$.$$object_name$$ TO <user_name>
/
