-- A wholesaler's sales: who sells what to whom. Amounts are whole cents, dates ISO texts.
pragma foreign_keys = on;

create table region (
  region_id integer primary key,
  name      text not null unique
);

create table customer (
  customer_id integer primary key,
  region_id   integer not null references region,
  name        text not null,
  since       text not null check (since like '____-__-__')
);

create table product (
  product_id  integer primary key,
  name        text not null unique,
  category    text not null,
  price_cents integer not null check (price_cents > 0)
);

create table sale (
  sale_id     integer primary key,
  customer_id integer not null references customer,
  sold_on     text not null check (sold_on like '____-__-__'),
  cancelled   integer not null default 0 check (cancelled in (0, 1))
);

create table sale_line (
  sale_id        integer not null references sale,
  line_no        integer not null,
  product_id     integer not null references product,
  quantity       integer not null check (quantity > 0),
  discount_cents integer not null default 0 check (discount_cents >= 0),
  primary key (sale_id, line_no)
) without rowid;

create index sale_by_day on sale (sold_on);
create index line_by_product on sale_line (product_id);

create view sale_amount as
select s.sale_id,
       s.customer_id,
       s.sold_on,
       sum(l.quantity * p.price_cents - l.discount_cents) as cents
from sale s
join sale_line l using (sale_id)
join product p using (product_id)
where not s.cancelled
group by s.sale_id;

-- Who may ask: the digest of "user/password@server", and what each login has asked.
create table login (
  digest text primary key,
  clerk  text not null
);

create table session (
  session_id integer primary key,
  clerk      text not null,
  purpose    text not null
);

.print schema is made
