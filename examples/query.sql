-- What sold best in each roast.
SELECT p.roast, p.name, sum(l.quantity) AS bags, sum(l.total) AS revenue, any_value(p.flavours) AS flavours
FROM shop.order_lines l JOIN shop.products p ON p.id = l.product
GROUP BY p.roast, p.name
QUALIFY row_number() OVER (PARTITION BY p.roast ORDER BY revenue DESC) <= 2
ORDER BY p.roast, revenue DESC;
