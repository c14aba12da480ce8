-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- Behind a data type: GENERATED ALWAYS AS IDENTITY numbers the rows.
CREATE TABLE $$object_owner$$.$$object_name$$
(
  <key_column>  <data_type> NOT NULL,
  <column_name> <data_type> NOT NULL,
  <column_name> <data_type> NOT NULL WITH DEFAULT <default_value>,
  <column_name> <data_type>,
  CONSTRAINT <primary_key_name> PRIMARY KEY (<key_column>),
  CONSTRAINT <unique_key_name> UNIQUE (<column_name>),
  CONSTRAINT <check_name> CHECK (<condition>),
  CONSTRAINT <foreign_key_name> FOREIGN KEY (<column_name>)
    REFERENCES $$object_owner$$.<referenced_table> (<referenced_column>)
    ON DELETE NO ACTION
)
  IN <tablespace_name>
  INDEX IN <index_tablespace>
;

COMMENT ON TABLE $$object_owner$$.$$object_name$$ IS '<table_description>'
;

GRANT SELECT, INSERT, UPDATE, DELETE ON TABLE $$object_owner$$.$$object_name$$ TO USER <user_name>
;
