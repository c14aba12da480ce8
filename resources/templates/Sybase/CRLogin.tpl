-- Create $$object_type$$ $$object_name$$
exec sp_addlogin '$$object_name$$', '<password>', '<default_database>', '<default_language>',
  '<full_name>'
go

-- exec sp_role 'grant', '<role_name>', '$$object_name$$'
-- go
