-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- Before INDEX: UNIQUE or UNIQUE WHERE NOT NULL. Behind the columns: CLUSTER.
CREATE INDEX $$object_owner$$.$$object_name$$
  ON $$object_owner$$.<table_name> (<column_name> ASC, <column_name> DESC)
  USING STOGROUP <stogroup_name>
    PRIQTY <primary_quantity>
    SECQTY <secondary_quantity>
    ERASE NO
  FREEPAGE 0
  PCTFREE 10
  BUFFERPOOL <buffer_pool>
  CLOSE NO
;
