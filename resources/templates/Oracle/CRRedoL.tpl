-- Create $$object_type$$ $$object_name$$
-- The name is the number of the group. Its members are copies of each other on different disks.
ALTER DATABASE
  ADD LOGFILE GROUP $$object_name$$
  (
    '<first_log_file>',
    '<second_log_file>'
  )
  SIZE <log_size>M
/
