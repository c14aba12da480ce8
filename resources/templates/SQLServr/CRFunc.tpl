-- Create $$object_type$$ $$object_owner$$.$$object_name$$
CREATE FUNCTION $$object_owner$$.$$object_name$$
(
  @<parameter_name> <data_type>,
  @<optional_parameter> <data_type> = <default_value>
)
RETURNS <return_type>
AS
BEGIN
  DECLARE @result <return_type>

  SELECT @result = <expression>
    FROM $$object_owner$$.<table_name>
    WHERE <column_name> = @<parameter_name>

  RETURN @result
END
go

GRANT EXECUTE ON $$object_owner$$.$$object_name$$ TO <user_name>
go
