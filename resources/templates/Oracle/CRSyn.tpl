-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- A PUBLIC SYNONYM serves all users and has no owner before its name.
CREATE SYNONYM $$object_owner$$.$$object_name$$
  FOR <owner_name>.<target_name>
/
