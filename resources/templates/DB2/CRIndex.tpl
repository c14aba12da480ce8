-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- Before INDEX: UNIQUE. With UNIQUE, behind the columns: INCLUDE and more columns.
CREATE INDEX $$object_owner$$.$$object_name$$
  ON $$object_owner$$.<table_name> (<column_name> ASC, <column_name> DESC)
  PCTFREE 10
  ALLOW REVERSE SCANS
;
