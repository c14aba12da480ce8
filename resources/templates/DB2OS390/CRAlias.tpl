-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- The alias names a table or view here or, with its location before it, elsewhere.
CREATE ALIAS $$object_owner$$.$$object_name$$
  FOR <location_name>.<owner_name>.<table_name>
;
