-- Create $$object_type$$ $$object_name$$
-- An account of the operating system gets in by sp_grantlogin instead.
exec sp_addlogin '$$object_name$$', '<password>', '<default_database>', '<default_language>'
go

-- exec sp_addsrvrolemember '$$object_name$$', '<server_role>'
-- go
