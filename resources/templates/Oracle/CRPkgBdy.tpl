-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- Each declaration of the header stands here with the same parameters.
CREATE OR REPLACE PACKAGE BODY $$object_owner$$.$$object_name$$
IS
  v_private_state <data_type> := <initial_value>;

  FUNCTION <function_name>
  (
    <parameter_name> IN <data_type>
  )
  RETURN <return_type>
  IS
    v_result <return_type>;
  BEGIN
    v_result := <expression>;
    RETURN v_result;
  END <function_name>;

  PROCEDURE <procedure_name>
  (
    <input_parameter>  IN  <data_type>,
    <output_parameter> OUT <data_type>
  )
  IS
  BEGIN
    <output_parameter> := <expression>;
  END <procedure_name>;

BEGIN
  -- Run once in a session, at the first use of the package.
  v_private_state := <initial_value>;
END;
/
