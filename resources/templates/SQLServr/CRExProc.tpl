-- Create $$object_type$$ $$object_name$$
USE master
go

exec sp_addextendedproc '$$object_name$$', '<library_file>'
go

-- GRANT EXECUTE ON $$object_name$$ TO <user_name>
-- go
