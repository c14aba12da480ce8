-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- Before AS: WITH ENCRYPTION, and from version 8.0 on WITH SCHEMABINDING.
CREATE VIEW $$object_owner$$.$$object_name$$
  (<view_column>, <view_column>)
AS
  SELECT <column_name>, <column_name>
    FROM $$object_owner$$.<table_name>
    WHERE <condition>
  WITH CHECK OPTION
go

GRANT SELECT ON $$object_owner$$.$$object_name$$ TO <user_name>
go
