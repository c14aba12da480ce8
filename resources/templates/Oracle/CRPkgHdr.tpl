-- Create $$object_type$$ $$object_owner$$.$$object_name$$
CREATE OR REPLACE PACKAGE $$object_owner$$.$$object_name$$
IS
  c_constant CONSTANT <data_type> := <constant_value>;

  e_exception EXCEPTION;

  TYPE t_cursor IS REF CURSOR;

  FUNCTION <function_name>
  (
    <parameter_name> IN <data_type>
  )
  RETURN <return_type>;

  PROCEDURE <procedure_name>
  (
    <input_parameter>  IN  <data_type>,
    <output_parameter> OUT <data_type>
  );
END;
/

GRANT EXECUTE ON $$object_owner$$.$$object_name$$ TO <user_name>
/
