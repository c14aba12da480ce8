-- Create $$object_type$$ $$object_name$$
-- The procedure server loads the library when the procedure is first run.
USE master
go

exec sp_addextendedproc '$$object_name$$', '<library_file>'
go

-- GRANT EXECUTE ON $$object_name$$ TO <user_name>
-- go
