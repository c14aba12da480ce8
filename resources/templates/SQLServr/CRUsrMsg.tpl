-- Create User Message $$object_name$$
-- The message number is 50001 or higher.
exec sp_addmessage $$object_name$$, <severity>, '<message_text>', '<language>', 'false'
go
