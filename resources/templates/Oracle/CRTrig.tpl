-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- A trigger of a view is INSTEAD OF in the place of BEFORE.
CREATE OR REPLACE TRIGGER $$object_owner$$.$$object_name$$
  BEFORE INSERT OR UPDATE OF <column_name>
  ON $$object_owner$$.<table_name>
  REFERENCING OLD AS OLD NEW AS NEW
  FOR EACH ROW
  WHEN (<row_condition>)
DECLARE
  v_variable <data_type>;
BEGIN
  IF INSERTING THEN
    :NEW.<column_name> := <expression>;
  ELSIF UPDATING('<column_name>') THEN
    RAISE_APPLICATION_ERROR(-20001, '<message_text>');
  END IF;
END;
/
