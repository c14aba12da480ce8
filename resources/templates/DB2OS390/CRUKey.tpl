-- Create $$object_type$$ $$object_name$$ on a table of $$object_owner$$
-- A unique index keeps the key. WHERE NOT NULL behind UNIQUE lets null values repeat.
CREATE UNIQUE INDEX $$object_owner$$.$$object_name$$
  ON $$object_owner$$.<table_name> (<column_name> ASC, <column_name> ASC)
  USING STOGROUP <stogroup_name>
    PRIQTY <primary_quantity>
    SECQTY <secondary_quantity>
  FREEPAGE 0
  PCTFREE 10
  BUFFERPOOL <buffer_pool>
  CLOSE NO
;
