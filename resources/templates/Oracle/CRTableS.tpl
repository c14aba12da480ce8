-- Create $$object_type$$ $$object_name$$
CREATE TABLESPACE $$object_name$$
  DATAFILE '<data_file>' SIZE <data_size>M
    AUTOEXTEND ON NEXT <next_size>M MAXSIZE <largest_size>M
  LOGGING
  ONLINE
  PERMANENT
  EXTENT MANAGEMENT LOCAL UNIFORM SIZE <extent_size>K
/
