-- Create $$object_type$$ $$object_owner$$.$$object_name$$
CREATE OR REPLACE PROCEDURE $$object_owner$$.$$object_name$$
(
  <input_parameter>    IN     <data_type>,
  <output_parameter>   OUT    <data_type>,
  <changed_parameter>  IN OUT <data_type>,
  <optional_parameter> IN     <data_type> DEFAULT <default_value>
)
IS
  CURSOR c_rows IS
    SELECT <column_name>, <column_name>
      FROM <table_name>
      WHERE <key_column> = <input_parameter>;
BEGIN
  FOR r_row IN c_rows LOOP
    <output_parameter> := r_row.<column_name>;
  END LOOP;
EXCEPTION
  WHEN NO_DATA_FOUND THEN
    RAISE_APPLICATION_ERROR(-20001, '<message_text>');
END;
/

GRANT EXECUTE ON $$object_owner$$.$$object_name$$ TO <user_name>
/
