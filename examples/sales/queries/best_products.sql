-- The three best products of each category, by what they brought in.
create temp view product_revenue as
select p.category,
       p.name,
       sum(l.quantity) as pieces,
       sum(l.quantity * p.price_cents - l.discount_cents) as cents
from product p
join sale_line l using (product_id)
join sale s on s.sale_id = l.sale_id and not s.cancelled
group by p.product_id;

.print Best products of each category
.mode column
with ranked as (
  select *, rank() over (partition by category order by cents desc, name) as place
  from product_revenue
)
select category, place, name, pieces, printf('%d.%02d', cents / 100, cents % 100) as revenue
from ranked
where place <= 3
order by category, place;

.headers off
.mode list
select 'Least sold: ' || name || ', ' || pieces || ' pieces'
from product_revenue
order by pieces, name
limit 1;
