-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- SIZE is the room in bytes for the rows of one key.
CREATE CLUSTER $$object_owner$$.$$object_name$$
(
  <key_column> <data_type>
)
  INDEX
  SIZE <key_size>
  PCTFREE 10
  PCTUSED 40
  TABLESPACE <tablespace_name>
  STORAGE (INITIAL <initial_size>K NEXT <next_size>K PCTINCREASE 0)
/

CREATE INDEX $$object_owner$$.<index_name>
  ON CLUSTER $$object_owner$$.$$object_name$$
  TABLESPACE <index_tablespace>
/
