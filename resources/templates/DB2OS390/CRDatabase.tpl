-- Create $$object_type$$ $$object_name$$
-- Behind CCSID: EBCDIC or ASCII.
CREATE DATABASE $$object_name$$
  STOGROUP <stogroup_name>
  BUFFERPOOL <buffer_pool>
  INDEXBP <index_buffer_pool>
  CCSID EBCDIC
;
