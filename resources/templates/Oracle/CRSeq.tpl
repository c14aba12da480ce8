-- Create $$object_type$$ $$object_owner$$.$$object_name$$
CREATE SEQUENCE $$object_owner$$.$$object_name$$
  START WITH <first_value>
  INCREMENT BY 1
  MINVALUE <lowest_value>
  MAXVALUE <highest_value>
  NOCYCLE
  CACHE 20
  NOORDER
/

GRANT SELECT ON $$object_owner$$.$$object_name$$ TO <user_name>
/
