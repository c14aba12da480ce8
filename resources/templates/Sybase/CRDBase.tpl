-- Create $$object_type$$ $$object_name$$
-- Sizes are in megabytes.
USE master
go

CREATE DATABASE $$object_name$$
  ON <data_device> = <data_size>
  LOG ON <log_device> = <log_size>
go

-- exec sp_dboption '$$object_name$$', 'trunc log on chkpt', true
-- go
-- USE $$object_name$$
-- go
-- CHECKPOINT
-- go
