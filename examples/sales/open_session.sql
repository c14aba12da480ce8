-- Runs before each script: the login in :login must be known, or the script stops here.
insert into session (clerk, purpose)
values ((select clerk from login where digest = hex(sha3(:login, 256))), 'queries');
