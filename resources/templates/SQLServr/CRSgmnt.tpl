-- Create $$object_type$$ $$object_name$$
-- Filegroups take the place of segments from version 7.0 on.
-- Before, sp_addsegment does it: exec sp_addsegment '$$object_name$$', '<device_name>'
ALTER DATABASE <database_name>
  ADD FILEGROUP $$object_name$$
go

ALTER DATABASE <database_name>
  ADD FILE
  (
    NAME = <data_name>,
    FILENAME = '<data_file>',
    SIZE = <data_size>MB
  )
  TO FILEGROUP $$object_name$$
go
