-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- FAST needs a materialized view log on each table, COMPLETE does not.
CREATE MATERIALIZED VIEW $$object_owner$$.$$object_name$$
  PCTFREE 10
  TABLESPACE <tablespace_name>
  STORAGE (INITIAL <initial_size>K NEXT <next_size>K PCTINCREASE 0)
  BUILD IMMEDIATE
  REFRESH FAST
    START WITH SYSDATE
    NEXT SYSDATE + <days>
    WITH PRIMARY KEY
  DISABLE QUERY REWRITE
AS
  SELECT <key_column>, <column_name>
    FROM <owner_name>.<table_name>
    WHERE <condition>
/
