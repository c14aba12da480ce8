-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- Several actions stand between BEGIN ATOMIC and END, each with a semicolon.
CREATE TRIGGER $$object_owner$$.$$object_name$$
  NO CASCADE BEFORE UPDATE OF <column_name>
  ON $$object_owner$$.<table_name>
  REFERENCING OLD AS O_ROW NEW AS N_ROW
  FOR EACH ROW MODE DB2SQL
  WHEN (<forbidden_condition>)
    SIGNAL SQLSTATE '<sqlstate>' ('<message_text>')
;
