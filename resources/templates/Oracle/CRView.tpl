-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- FORCE before VIEW creates it even if what it selects from is not there.
CREATE OR REPLACE VIEW $$object_owner$$.$$object_name$$
(
  <view_column>,
  <view_column>
)
AS
  SELECT <column_name>, <column_name>
    FROM $$object_owner$$.<table_name>
    WHERE <condition>
  WITH CHECK OPTION CONSTRAINT <constraint_name>
/

GRANT SELECT ON $$object_owner$$.$$object_name$$ TO <user_name>
/
