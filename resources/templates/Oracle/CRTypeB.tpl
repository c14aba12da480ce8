-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- Each method of the type stands here with the same parameters.
CREATE OR REPLACE TYPE BODY $$object_owner$$.$$object_name$$
AS
  MEMBER FUNCTION <function_name> (<parameter_name> IN <data_type>) RETURN <return_type>
  IS
    v_result <return_type>;
  BEGIN
    v_result := SELF.<attribute_name>;
    RETURN v_result;
  END;

  MEMBER PROCEDURE <procedure_name> (<parameter_name> IN <data_type>)
  IS
  BEGIN
    SELF.<attribute_name> := <parameter_name>;
  END;
END;
/
