-- Create $$object_type$$ $$object_name$$
-- The login works in the current database as the given user.
exec sp_addalias '$$object_name$$', '<user_name>'
go
