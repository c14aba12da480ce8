-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- Before INDEX: UNIQUE or BITMAP. At the end: REVERSE, NOLOGGING, ONLINE, COMPUTE STATISTICS.
CREATE INDEX $$object_owner$$.$$object_name$$
  ON $$object_owner$$.<table_name> (<column_name> ASC, <column_name> DESC)
  PCTFREE 10
  INITRANS 2
  TABLESPACE <tablespace_name>
  STORAGE (INITIAL <initial_size>K NEXT <next_size>K PCTINCREASE 0)
/
