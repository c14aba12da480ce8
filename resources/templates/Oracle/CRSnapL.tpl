-- Create $$object_type$$ on the table $$object_owner$$.$$object_name$$
-- Behind PRIMARY KEY: ROWID and the columns that snapshots filter by, in parentheses.
CREATE SNAPSHOT LOG ON $$object_owner$$.$$object_name$$
  PCTFREE 5
  TABLESPACE <tablespace_name>
  STORAGE (INITIAL <initial_size>K NEXT <next_size>K PCTINCREASE 0)
  WITH PRIMARY KEY
/
