-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- The alias may name a table, a view or another alias.
CREATE ALIAS $$object_owner$$.$$object_name$$
  FOR <schema_name>.<target_name>
;
