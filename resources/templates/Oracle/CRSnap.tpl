-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- FAST needs a snapshot log on the master table, COMPLETE does not.
CREATE SNAPSHOT $$object_owner$$.$$object_name$$
  PCTFREE 10
  TABLESPACE <tablespace_name>
  STORAGE (INITIAL <initial_size>K NEXT <next_size>K PCTINCREASE 0)
  REFRESH FAST
    START WITH SYSDATE
    NEXT SYSDATE + <days>
    WITH PRIMARY KEY
AS
  SELECT <key_column>, <column_name>
    FROM <owner_name>.<table_name>@<link_name>
    WHERE <condition>
/
