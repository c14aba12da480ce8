-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- A collection: AS TABLE OF <data_type>, or AS VARRAY (<largest_count>) OF <data_type>.
CREATE OR REPLACE TYPE $$object_owner$$.$$object_name$$ AS OBJECT
(
  <attribute_name> <data_type>,
  <attribute_name> <data_type>,
  MEMBER FUNCTION <function_name> (<parameter_name> IN <data_type>) RETURN <return_type>,
  MEMBER PROCEDURE <procedure_name> (<parameter_name> IN <data_type>),
  PRAGMA RESTRICT_REFERENCES (<function_name>, WNDS, WNPS)
)
/

GRANT EXECUTE ON $$object_owner$$.$$object_name$$ TO <user_name>
/
