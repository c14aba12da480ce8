-- Create $$object_type$$ $$object_name$$
-- The path is one of the server.
CREATE OR REPLACE DIRECTORY $$object_name$$
  AS '<directory_path>'
/

GRANT READ ON DIRECTORY $$object_name$$ TO <user_name>
/
