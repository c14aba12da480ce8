-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- From version 8.0 on, AFTER or INSTEAD OF in the place of FOR.
CREATE TRIGGER $$object_owner$$.$$object_name$$
  ON $$object_owner$$.<table_name>
  FOR INSERT, UPDATE
AS
BEGIN
  IF @@ROWCOUNT = 0
    RETURN

  SET NOCOUNT ON

  IF UPDATE (<column_name>)
  BEGIN
    IF EXISTS (SELECT 1 FROM inserted WHERE <forbidden_condition>)
    BEGIN
      RAISERROR ('<message_text>', 16, 1)
      ROLLBACK TRANSACTION
      RETURN
    END
  END
END
go
