-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- A function that reads tables: READS SQL DATA in the place of CONTAINS SQL.
CREATE FUNCTION $$object_owner$$.$$object_name$$
(
  <parameter_name> <data_type>,
  <parameter_name> <data_type>
)
  RETURNS <return_type>
  SPECIFIC <specific_name>
  LANGUAGE SQL
  DETERMINISTIC
  NO EXTERNAL ACTION
  CONTAINS SQL
  RETURN <expression>
;
