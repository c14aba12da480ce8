-- Create $$object_type$$ $$object_name$$
-- Takes 'null', 'not null' or 'identity' behind the data type.
exec sp_addtype '$$object_name$$', '<data_type>', 'not null'
go

-- exec sp_bindefault '<default_name>', '$$object_name$$'
-- go
-- exec sp_bindrule '<rule_name>', '$$object_name$$'
-- go
