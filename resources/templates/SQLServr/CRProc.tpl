-- Create $$object_type$$ $$object_owner$$.$$object_name$$
CREATE PROCEDURE $$object_owner$$.$$object_name$$
  @<input_parameter>   <data_type>,
  @<optional_parameter> <data_type> = <default_value>,
  @<output_parameter>  <data_type> OUTPUT
AS
BEGIN
  SET NOCOUNT ON

  DECLARE @error_number int

  SELECT @<output_parameter> = <expression>
    FROM $$object_owner$$.<table_name>
    WHERE <column_name> = @<input_parameter>

  SELECT @error_number = @@ERROR
  IF @error_number != 0
  BEGIN
    RAISERROR ('<message_text>', 16, 1)
    RETURN @error_number
  END

  RETURN 0
END
go

GRANT EXECUTE ON $$object_owner$$.$$object_name$$ TO <user_name>
go
