-- Create $$object_type$$ $$object_name$$ on a table of $$object_owner$$
-- Behind ON DELETE: RESTRICT, NO ACTION, CASCADE or SET NULL.
ALTER TABLE $$object_owner$$.<table_name>
  ADD FOREIGN KEY $$object_name$$ (<column_name>, <column_name>)
  REFERENCES $$object_owner$$.<referenced_table> (<referenced_column>, <referenced_column>)
  ON DELETE RESTRICT
;
