-- Revenue by region and year, and each region's share of the year.
create temp table region_year as
select r.name as region,
       substr(a.sold_on, 1, 4) as year,
       count(*) as sales,
       sum(a.cents) as cents
from sale_amount a
join customer c using (customer_id)
join region r using (region_id)
group by r.name, year;

.print Revenue by region and year
.mode column
select year,
       region,
       sales,
       printf('%d.%02d', cents / 100, cents % 100) as revenue,
       printf('%d%%', round(100.0 * cents / sum(cents) over (partition by year))) as share
from region_year
order by year, cents desc;

.headers off
.mode list
select 'All: ' || sum(sales) || ' sales, ' || sum(cents) || ' cents' from region_year;
