-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- The body has semicolons of its own, so that it is run with another statement end.
CREATE PROCEDURE $$object_owner$$.$$object_name$$
(
  IN <input_parameter> <data_type>,
  OUT <output_parameter> <data_type>,
  INOUT <changed_parameter> <data_type>
)
  SPECIFIC <specific_name>
  RESULT SETS 1
  MODIFIES SQL DATA
  LANGUAGE SQL
BEGIN
  DECLARE v_not_found SMALLINT DEFAULT 0;
  DECLARE c_result CURSOR WITH RETURN FOR
    SELECT <column_name>, <column_name>
      FROM <table_name>
      WHERE <condition>;
  DECLARE CONTINUE HANDLER FOR NOT FOUND
    SET v_not_found = 1;

  SELECT <column_name>
    INTO <output_parameter>
    FROM <table_name>
    WHERE <key_column> = <input_parameter>;
  IF v_not_found = 1 THEN
    SIGNAL SQLSTATE '<sqlstate>' SET MESSAGE_TEXT = '<message_text>';
  END IF;

  SET <changed_parameter> = <expression>;
  OPEN c_result;
END
;
