-- Create $$object_type$$ $$object_owner$$.$$object_name$$
CREATE SEQUENCE $$object_owner$$.$$object_name$$
  AS <integer_type>
  START WITH <first_value>
  INCREMENT BY 1
  MINVALUE <lowest_value>
  MAXVALUE <highest_value>
  NO CYCLE
  CACHE 20
  NO ORDER
;
