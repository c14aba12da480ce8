-- Create $$object_type$$ $$object_name$$ on a table of $$object_owner$$
-- The key has no name of its own: it goes by the unique index on its columns, which are NOT NULL.
CREATE UNIQUE INDEX $$object_owner$$.$$object_name$$
  ON $$object_owner$$.<table_name> (<column_name> ASC, <column_name> ASC)
  USING STOGROUP <stogroup_name>
    PRIQTY <primary_quantity>
    SECQTY <secondary_quantity>
  BUFFERPOOL <buffer_pool>
;

ALTER TABLE $$object_owner$$.<table_name>
  ADD PRIMARY KEY (<column_name>, <column_name>)
;
