-- Create $$object_type$$ $$object_name$$
-- The login gets access to the current database.
exec sp_grantdbaccess '<login_name>', '$$object_name$$'
go

exec sp_addrolemember '<role_name>', '$$object_name$$'
go
