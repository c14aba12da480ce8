-- Create $$object_type$$ $$object_name$$ on a table of $$object_owner$$
ALTER TABLE $$object_owner$$.<table_name>
  ADD CONSTRAINT $$object_name$$
  UNIQUE (<column_name>, <column_name>)
  NOT DEFERRABLE
  USING INDEX
    PCTFREE 10
    TABLESPACE <tablespace_name>
    STORAGE (INITIAL <initial_size>K NEXT <next_size>K PCTINCREASE 0)
  ENABLE VALIDATE
/
