-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- Leave WITH COMPARISONS out for BLOB, CLOB and DBCLOB.
CREATE DISTINCT TYPE $$object_owner$$.$$object_name$$
  AS <source_type>
  WITH COMPARISONS
;
