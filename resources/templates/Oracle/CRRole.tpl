-- Create $$object_type$$ $$object_name$$
-- For a password: IDENTIFIED BY and the password in the place of NOT IDENTIFIED.
CREATE ROLE $$object_name$$
  NOT IDENTIFIED
/

GRANT <privilege_name> TO $$object_name$$
/

GRANT $$object_name$$ TO <user_name>
/
