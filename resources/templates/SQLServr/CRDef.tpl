-- Create $$object_type$$ $$object_owner$$.$$object_name$$
CREATE DEFAULT $$object_owner$$.$$object_name$$
  AS <constant_expression>
go

exec sp_bindefault '$$object_owner$$.$$object_name$$', '<table_name>.<column_name>'
go
