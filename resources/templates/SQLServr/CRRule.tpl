-- Create $$object_type$$ $$object_owner$$.$$object_name$$
CREATE RULE $$object_owner$$.$$object_name$$
  AS @value BETWEEN <lowest_value> AND <highest_value>
go

exec sp_bindrule '$$object_owner$$.$$object_name$$', '<table_name>.<column_name>'
go
