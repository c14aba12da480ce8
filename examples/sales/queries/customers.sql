-- Customers that need a call: good once, silent since, and with the gap between their sales.
create temp table gap as
select customer_id,
       sold_on,
       julianday(sold_on) - julianday(lag(sold_on) over (
         partition by customer_id order by sold_on, sale_id)) as days
from sale_amount;

.print Silent since the summer of 2023
.mode column
with recursive quarter(first_day) as (
  select '2023-07-01'
  union all
  select date(first_day, '+3 months') from quarter where first_day < '2023-10-01'
)
select c.name,
       r.name as region,
       count(a.sale_id) as sales,
       max(a.sold_on) as last_sale,
       (select cast(max(days) as integer) from gap g where g.customer_id = c.customer_id) as gap
from customer c
join region r using (region_id)
join sale_amount a using (customer_id)
group by c.customer_id
having last_sale < (select min(first_day) from quarter) and sum(a.cents) > 400000
order by sum(a.cents) desc, c.name
limit 8;

.headers off
.mode list
select count(*) || ' customers, ' || (select count(*) from sale where cancelled) ||
       ' sales were cancelled' from customer;
