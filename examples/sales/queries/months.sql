-- The course of the months: revenue, running total, change, and the mean of three months.
create temp table month as
select substr(sold_on, 1, 7) as month, sum(cents) as cents
from sale_amount
group by 1;

.print Months of 2023
.mode column
select *
from (
  select month,
         printf('%d.%02d', cents / 100, cents % 100) as revenue,
         sum(cents) over (order by month) / 100 as running_total,
         printf('%+d', (cents - lag(cents) over (order by month)) / 100) as change,
         cast(avg(cents) over (order by month rows 2 preceding) / 100 as integer) as mean_of_3
  from month
)
where month like '2023-%'
order by month;

.headers off
.mode list
select 'Best month: ' || month || ', ' || cents || ' cents' from month order by cents desc limit 1;
