-- Create $$object_type$$ $$object_name$$
-- Before ROLLBACK SEGMENT: PUBLIC, for all instances.
CREATE ROLLBACK SEGMENT $$object_name$$
  TABLESPACE <tablespace_name>
  STORAGE
  (
    INITIAL <extent_size>K
    NEXT <extent_size>K
    MINEXTENTS 20
    MAXEXTENTS <extent_count>
    OPTIMAL <optimal_size>K
  )
/

ALTER ROLLBACK SEGMENT $$object_name$$ ONLINE
/
