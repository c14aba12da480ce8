-- Create Structured $$object_type$$ $$object_owner$$.$$object_name$$
-- A subtype: UNDER and the type it extends, before AS. Such a type has no REF USING.
CREATE TYPE $$object_owner$$.$$object_name$$
  AS
(
  <attribute_name> <data_type>,
  <attribute_name> <data_type>
)
  REF USING INTEGER
  MODE DB2SQL
;
