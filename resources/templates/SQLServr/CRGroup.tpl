-- Create $$object_type$$ $$object_name$$
-- Groups are database roles from version 7.0 on.
exec sp_addrole '$$object_name$$'
go

exec sp_addrolemember '$$object_name$$', '<user_name>'
go
