-- Create $$object_type$$ $$object_owner$$.$$object_name$$
CREATE TRIGGER $$object_owner$$.$$object_name$$
  ON $$object_owner$$.<table_name>
  FOR INSERT, UPDATE
AS
BEGIN
  IF @@rowcount = 0
    RETURN

  IF UPDATE (<column_name>)
  BEGIN
    IF EXISTS (SELECT 1 FROM inserted WHERE <forbidden_condition>)
    BEGIN
      ROLLBACK TRIGGER WITH RAISERROR <message_number> '<message_text>'
      RETURN
    END
  END
END
go
