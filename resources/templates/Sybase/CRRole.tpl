-- Create $$object_type$$ $$object_name$$
-- Behind the name: WITH PASSWD and a password.
CREATE ROLE $$object_name$$
go

GRANT ROLE $$object_name$$ TO <login_name>
go
