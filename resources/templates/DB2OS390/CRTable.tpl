-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- A primary key is complete when its unique index is there.
CREATE TABLE $$object_owner$$.$$object_name$$
(
  <key_column>  <data_type> NOT NULL,
  <column_name> <data_type> NOT NULL,
  <column_name> <data_type> NOT NULL WITH DEFAULT <default_value>,
  <column_name> <data_type>,
  PRIMARY KEY (<key_column>),
  CONSTRAINT <check_name> CHECK (<condition>),
  FOREIGN KEY <foreign_key_name> (<column_name>)
    REFERENCES $$object_owner$$.<referenced_table> (<referenced_column>)
    ON DELETE RESTRICT
)
  IN <database_name>.<tablespace_name>
;

CREATE UNIQUE INDEX $$object_owner$$.<index_name>
  ON $$object_owner$$.$$object_name$$ (<key_column> ASC)
;

COMMENT ON TABLE $$object_owner$$.$$object_name$$ IS '<table_description>'
;

GRANT SELECT, INSERT, UPDATE, DELETE ON TABLE $$object_owner$$.$$object_name$$ TO <user_name>
;
