-- Create $$object_type$$ $$object_name$$
USE master
go

CREATE DATABASE $$object_name$$
  ON PRIMARY
  (
    NAME = <data_name>,
    FILENAME = '<data_file>',
    SIZE = <data_size>MB,
    MAXSIZE = <largest_data_size>MB,
    FILEGROWTH = <growth_percentage>%
  )
  LOG ON
  (
    NAME = <log_name>,
    FILENAME = '<log_file>',
    SIZE = <log_size>MB,
    MAXSIZE = <largest_log_size>MB,
    FILEGROWTH = <growth_percentage>%
  )
go

-- exec sp_dboption '$$object_name$$', 'trunc. log on chkpt.', 'true'
-- go
