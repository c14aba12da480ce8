-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- Before ON: LOCK ALLPAGES, LOCK DATAPAGES or LOCK DATAROWS.
CREATE TABLE $$object_owner$$.$$object_name$$
(
  <key_column>  numeric(<precision>, 0) IDENTITY,
  <column_name> <data_type> NOT NULL,
  <column_name> <data_type> DEFAULT <default_value> NOT NULL,
  <column_name> <data_type> NULL,
  CONSTRAINT <primary_key_name> PRIMARY KEY CLUSTERED (<key_column>),
  CONSTRAINT <unique_key_name> UNIQUE NONCLUSTERED (<column_name>),
  CONSTRAINT <check_name> CHECK (<condition>),
  CONSTRAINT <foreign_key_name> FOREIGN KEY (<column_name>)
    REFERENCES $$object_owner$$.<referenced_table> (<referenced_column>)
)
  ON <segment_name>
go

GRANT SELECT, INSERT, UPDATE, DELETE ON $$object_owner$$.$$object_name$$ TO <user_name>
go
