-- Create $$object_type$$ $$object_name$$
-- The login gets access to the current database.
exec sp_adduser '<login_name>', '$$object_name$$', '<group_name>'
go
