-- Create User Message $$object_name$$
-- The message number is 20000 or higher.
exec sp_addmessage $$object_name$$, '<message_text>', '<language>'
go

-- exec sp_bindmsg '<constraint_name>', $$object_name$$
-- go
