-- Create $$object_type$$ $$object_owner$$.$$object_name$$
CREATE VIEW $$object_owner$$.$$object_name$$
(
  <view_column>,
  <view_column>
)
AS
  SELECT <column_name>, <column_name>
    FROM $$object_owner$$.<table_name>
    WHERE <condition>
  WITH CHECK OPTION
;

GRANT SELECT ON TABLE $$object_owner$$.$$object_name$$ TO <user_name>
;
