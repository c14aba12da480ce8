-- Create $$object_type$$ $$object_owner$$.$$object_name$$
CREATE TABLE $$object_owner$$.$$object_name$$
(
  <key_column>  <data_type> NOT NULL,
  <column_name> <data_type> NOT NULL,
  <column_name> <data_type> DEFAULT <default_value> NOT NULL,
  <column_name> <data_type>,
  CONSTRAINT <primary_key_name> PRIMARY KEY (<key_column>)
    USING INDEX TABLESPACE <index_tablespace>,
  CONSTRAINT <unique_key_name> UNIQUE (<column_name>)
    USING INDEX TABLESPACE <index_tablespace>,
  CONSTRAINT <check_name> CHECK (<condition>),
  CONSTRAINT <foreign_key_name> FOREIGN KEY (<column_name>)
    REFERENCES $$object_owner$$.<referenced_table> (<referenced_column>)
)
  PCTFREE 10
  PCTUSED 40
  TABLESPACE <tablespace_name>
  STORAGE (INITIAL <initial_size>K NEXT <next_size>K PCTINCREASE 0)
/

COMMENT ON TABLE $$object_owner$$.$$object_name$$ IS '<table_description>'
/

GRANT SELECT, INSERT, UPDATE, DELETE ON $$object_owner$$.$$object_name$$ TO <user_name>
/
