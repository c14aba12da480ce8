-- Create $$object_type$$ $$object_owner$$.$$object_name$$
CREATE TABLE $$object_owner$$.$$object_name$$
(
  <key_column>  int IDENTITY (1, 1) NOT NULL,
  <column_name> <data_type> NOT NULL,
  <column_name> <data_type> NOT NULL
    CONSTRAINT <default_name> DEFAULT (<default_value>),
  <column_name> <data_type> NULL,
  CONSTRAINT <primary_key_name> PRIMARY KEY CLUSTERED (<key_column>),
  CONSTRAINT <unique_key_name> UNIQUE NONCLUSTERED (<column_name>),
  CONSTRAINT <check_name> CHECK (<condition>),
  CONSTRAINT <foreign_key_name> FOREIGN KEY (<column_name>)
    REFERENCES $$object_owner$$.<referenced_table> (<referenced_column>)
)
  ON <filegroup_name>
go

GRANT SELECT, INSERT, UPDATE, DELETE ON $$object_owner$$.$$object_name$$ TO <user_name>
go
