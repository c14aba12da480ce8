-- Create $$object_type$$ $$object_name$$
-- The device must belong to the database already.
USE <database_name>
go

exec sp_addsegment '$$object_name$$', '<database_name>', '<device_name>'
go

-- exec sp_extendsegment '$$object_name$$', '<database_name>', '<device_name>'
-- go
