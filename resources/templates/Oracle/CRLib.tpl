-- Create $$object_type$$ $$object_owner$$.$$object_name$$
-- The path is that of a shared library of the server.
CREATE OR REPLACE LIBRARY $$object_owner$$.$$object_name$$
  AS '<library_file>'
/

GRANT EXECUTE ON $$object_owner$$.$$object_name$$ TO <user_name>
/
