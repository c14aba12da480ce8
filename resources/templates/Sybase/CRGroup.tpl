-- Create $$object_type$$ $$object_name$$
exec sp_addgroup '$$object_name$$'
go

-- exec sp_changegroup '$$object_name$$', '<user_name>'
-- go
