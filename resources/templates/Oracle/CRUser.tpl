-- Create $$object_type$$ $$object_name$$
-- EXTERNALLY in the place of BY and the password leaves the check to the operating system.
CREATE USER $$object_name$$
  IDENTIFIED BY <password>
  DEFAULT TABLESPACE <tablespace_name>
  TEMPORARY TABLESPACE <temporary_tablespace>
  QUOTA <quota_size>M ON <tablespace_name>
  PROFILE DEFAULT
  PASSWORD EXPIRE
  ACCOUNT UNLOCK
/

GRANT CREATE SESSION TO $$object_name$$
/
