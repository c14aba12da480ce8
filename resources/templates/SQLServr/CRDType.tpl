-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- Takes 'NULL' or 'NOT NULL' behind the data type.
exec sp_addtype '$$object_name$$', '<data_type>', 'NOT NULL', '$$object_owner$$'
go

-- exec sp_bindefault '<default_name>', '$$object_name$$'
-- go
-- exec sp_bindrule '<rule_name>', '$$object_name$$'
-- go
