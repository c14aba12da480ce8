-- Create $$object_type$$ $$object_name$$
-- The link belongs to the user who creates it, $$object_owner$$.
-- Before DATABASE LINK: PUBLIC, for all users.
CREATE DATABASE LINK $$object_name$$
  CONNECT TO <remote_user> IDENTIFIED BY <password>
  USING '<service_name>'
/
