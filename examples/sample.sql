-- A coffee roaster: what it sells, to whom, and who works there.
-- Loads into an empty database; the data is the same at every load.

BEGIN;

CREATE SCHEMA shop;
CREATE SCHEMA staff;
CREATE SCHEMA reports;

-- Shop

CREATE TYPE shop.roast AS ENUM ('light', 'medium', 'dark', 'french');
CREATE TYPE shop.order_state AS ENUM ('open', 'paid', 'shipped', 'returned');

CREATE SEQUENCE shop.customer_number START 1001 INCREMENT 1;
CREATE SEQUENCE shop.order_number START 50001 INCREMENT 1 MINVALUE 50001 MAXVALUE 999999;

CREATE TABLE shop.countries (
    code VARCHAR PRIMARY KEY CHECK (length(code) = 2),
    name VARCHAR NOT NULL UNIQUE,
    vat DECIMAL(4, 2) NOT NULL DEFAULT 20.00 CHECK (vat BETWEEN 0 AND 30)
);

CREATE TABLE shop.customers (
    id INTEGER PRIMARY KEY DEFAULT nextval('shop.customer_number'),
    name VARCHAR NOT NULL,
    email VARCHAR UNIQUE,
    country VARCHAR NOT NULL REFERENCES shop.countries (code),
    address STRUCT(street VARCHAR, house INTEGER, city VARCHAR),
    contact UNION(phone VARCHAR, mail VARCHAR),
    since DATE NOT NULL DEFAULT DATE '2023-01-01',
    newsletter BOOLEAN NOT NULL DEFAULT false,
    token UUID,
    CHECK (email IS NULL OR contains(email, '@'))
);

CREATE TABLE shop.products (
    id INTEGER PRIMARY KEY,
    name VARCHAR NOT NULL UNIQUE,
    origin VARCHAR,
    roast shop.roast NOT NULL DEFAULT 'medium',
    price DECIMAL(8, 2) NOT NULL CHECK (price > 0),
    grams SMALLINT NOT NULL DEFAULT 250,
    price_per_kilo DECIMAL(10, 2) GENERATED ALWAYS AS (price * 1000 / grams) VIRTUAL,
    flavours VARCHAR[],
    taste INTEGER[3],
    attributes MAP(VARCHAR, VARCHAR),
    details JSON,
    label BLOB,
    "Altitude (m)" USMALLINT
);

CREATE TABLE shop.orders (
    number INTEGER PRIMARY KEY DEFAULT nextval('shop.order_number'),
    customer INTEGER NOT NULL REFERENCES shop.customers (id),
    placed TIMESTAMP NOT NULL,
    state shop.order_state NOT NULL DEFAULT 'open',
    shipped DATE,
    delivery_time INTERVAL,
    remark VARCHAR,
    CHECK (shipped IS NULL OR shipped >= CAST(placed AS DATE))
);

CREATE TABLE shop.order_lines (
    order_number INTEGER NOT NULL REFERENCES shop.orders (number),
    line UTINYINT NOT NULL,
    product INTEGER NOT NULL REFERENCES shop.products (id),
    quantity SMALLINT NOT NULL DEFAULT 1 CHECK (quantity > 0),
    unit_price DECIMAL(8, 2) NOT NULL,
    total DECIMAL(12, 2) GENERATED ALWAYS AS (quantity * unit_price) VIRTUAL,
    PRIMARY KEY (order_number, line)
);

CREATE INDEX orders_placed ON shop.orders (placed);
CREATE INDEX customers_country_name ON shop.customers (country, name);

COMMENT ON TABLE shop.customers IS 'Everybody who ever ordered';
COMMENT ON TABLE shop.products IS 'Coffees by the bag';
COMMENT ON COLUMN shop.customers.since IS 'Day of the first visit';
COMMENT ON COLUMN shop.products.taste IS 'Acidity, body and sweetness from 0 to 10';
COMMENT ON INDEX shop.orders_placed IS 'For the reports by month';
COMMENT ON SEQUENCE shop.order_number IS 'Numbers on the invoices';
COMMENT ON TYPE shop.roast IS 'From the lightest to the darkest';

INSERT INTO shop.countries VALUES
    ('AT', 'Austria', 20.00), ('BE', 'Belgium', 21.00), ('DE', 'Germany', 19.00), ('DK', 'Denmark', 25.00),
    ('ES', 'Spain', 21.00), ('FR', 'France', 20.00), ('IT', 'Italy', 22.00), ('JP', '日本', 10.00),
    ('NL', 'Netherlands', 21.00), ('SE', 'Sweden', 25.00);

INSERT INTO shop.customers (name, email, country, address, contact, since, newsletter, token)
SELECT
    first_names[1 + i * 7 % 20] || ' ' || last_names[1 + i * 11 % 24],
    CASE WHEN i % 9 = 4 THEN NULL
         ELSE lower(strip_accents(first_names[1 + i * 7 % 20])) || '.' || i || '@example.org' END,
    countries[1 + i * 3 % 10],
    {'street': streets[1 + i * 5 % 8], 'house': 1 + i * 13 % 120, 'city': cities[1 + i * 3 % 10]},
    CASE WHEN i % 4 = 0
         THEN CAST(union_value(phone := '+43 1 555 ' || (1000 + i * 37 % 9000)) AS UNION(phone VARCHAR, mail VARCHAR))
         ELSE CAST(union_value(mail := 'home' || i || '@example.org') AS UNION(phone VARCHAR, mail VARCHAR)) END,
    DATE '2023-01-02' + CAST(i * 17 % 700 AS INTEGER),
    i % 3 = 0,
    CAST(md5('customer ' || i) AS UUID)
FROM (
    SELECT
        range AS i,
        ['Anna', 'Ben', 'Chloé', 'David', 'Elif', 'Femke', 'Giulia', 'Håkon', 'Inés', 'Jonas', 'Karin', 'Luca', 'Mei',
         'Noor', 'Oskar', 'Paula', 'Quentin', 'Rosa', 'Sören', 'Tomoko'] AS first_names,
        ['Adler', 'Bianchi', 'Claes', 'Dupont', 'Eriksson', 'Fischer', 'García', 'Hansen', 'Ito', 'Jansen', 'König',
         'Lefèvre', 'Moretti', 'Nielsen', 'O''Brien', 'Peeters', 'Rossi', 'Sato', 'Torres', 'Ueda', 'Vogel', 'Weber',
         'Yılmaz', 'de Vries'] AS last_names,
        ['AT', 'BE', 'DE', 'DK', 'ES', 'FR', 'IT', 'JP', 'NL', 'SE'] AS countries,
        ['Wien', 'Gent', 'Köln', 'Aarhus', 'Sevilla', 'Lyon', 'Torino', '京都', 'Utrecht', 'Malmö'] AS cities,
        ['Harbour Street', 'Long Lane', 'Mill Road', 'Old Market', 'Park Row', 'Station Square', 'Church Hill',
         'River Bank'] AS streets
    FROM range(120)
);

INSERT INTO shop.products (id, name, origin, roast, price, grams, flavours, taste, attributes, details, label,
                           "Altitude (m)")
VALUES
    (1, 'Morning Fog', 'Colombia', 'medium', 8.90, 250, ['caramel', 'apple'], [6, 5, 7],
     MAP {'process': 'washed', 'variety': 'Caturra'}, '{"organic": true, "score": 84.5}', '\x89PNG\x0D\x0A'::BLOB, 1750),
    (2, 'Yirga Light', 'Ethiopia', 'light', 11.50, 250, ['jasmine', 'lemon', 'peach'], [9, 3, 6],
     MAP {'process': 'washed', 'variety': 'heirloom'}, '{"organic": true, "score": 88.0}', NULL, 2050),
    (3, 'Night Shift', 'Brazil', 'dark', 7.50, 250, ['cocoa', 'walnut'], [2, 9, 5],
     MAP {'process': 'natural'}, '{"organic": false, "score": 81.25}', NULL, 1100),
    (4, 'Old Port', 'Indonesia', 'french', 9.20, 250, ['tobacco', 'cedar', 'molasses'], [1, 10, 4],
     MAP {'process': 'wet-hulled', 'island': 'Sumatra'}, NULL, NULL, 1300),
    (5, 'House Blend', NULL, 'medium', 14.00, 500, ['hazelnut'], [4, 6, 6], MAP {}, '{"blend": [1, 3]}', NULL, NULL),
    (6, 'House Blend, big bag', NULL, 'medium', 25.50, 1000, ['hazelnut'], [4, 6, 6], MAP {}, '{"blend": [1, 3]}', NULL,
     NULL),
    (7, 'Swiss Water Decaf', 'Peru', 'medium', 9.80, 250, ['plum', 'brown sugar'], [5, 5, 5],
     MAP {'process': 'washed', 'decaf': 'water'}, '{"organic": true, "caffeine": null}', NULL, 1600),
    (8, 'Geisha Reserve', 'Panama', 'light', 29.00, 125, ['bergamot', 'honey', 'mango'], [8, 4, 9],
     MAP {'process': 'honey', 'variety': 'Geisha', 'farm': 'Los Lirios'}, '{"score": 91.75, "lot": "A\"7"}', NULL, 1900),
    (9, 'Kiambu AA', 'Kenya', 'light', 12.40, 250, ['blackcurrant', 'grapefruit'], [9, 5, 6],
     MAP {'process': 'washed', 'grade': 'AA'}, '{"organic": false, "score": 87.5}', NULL, 1850),
    (10, 'Espresso Napoli', NULL, 'french', 10.90, 500, [], [1, 9, 3], MAP {'robusta': '40 %'}, NULL, NULL, NULL),
    (11, 'Tasting set', NULL, 'light', 19.90, 375, ['jasmine', 'bergamot', NULL], NULL, NULL, '{"bags": 3}', NULL, NULL),
    (12, '深煎り', 'Guatemala', 'dark', 10.20, 250, ['dark chocolate', 'smoke'], [3, 8, 6],
     MAP {'process': 'washed'}, '{"score": 83}', NULL, 1500);

INSERT INTO shop.orders (customer, placed, state, shipped, delivery_time, remark)
SELECT
    1001 + i * 31 % 120,
    TIMESTAMP '2024-01-03 08:15:00' + INTERVAL (i * 47 % 8760) HOUR + INTERVAL (i * 13 % 60) MINUTE,
    CASE i % 10 WHEN 0 THEN 'open' WHEN 1 THEN 'paid' WHEN 2 THEN 'returned' ELSE 'shipped' END,
    CASE WHEN i % 10 < 2 THEN NULL
         ELSE CAST(TIMESTAMP '2024-01-03 08:15:00' + INTERVAL (i * 47 % 8760) HOUR AS DATE)
              + CAST(1 + i * 7 % 5 AS INTEGER) END,
    CASE WHEN i % 10 < 2 THEN NULL ELSE INTERVAL (1 + i % 4) DAY + INTERVAL (i * 5 % 24) HOUR END,
    CASE i % 23 WHEN 5 THEN 'Please ring twice' WHEN 11 THEN E'Gift:\nno invoice in the box' END
FROM range(300) t(i);

INSERT INTO shop.order_lines (order_number, line, product, quantity, unit_price)
SELECT o, l, p.id, 1 + (o * 3 + l * 5) % 4, p.price
FROM (
    SELECT 50001 + i AS o, l, 1 + (i * 7 + l * 5) % 12 AS product
    FROM range(300) orders(i), range(1, 4) lines(l)
    WHERE l <= 1 + i % 3
) picked
JOIN shop.products p ON p.id = picked.product
ORDER BY o, l;

-- Staff

CREATE TABLE staff.departments (
    id TINYINT PRIMARY KEY,
    name VARCHAR NOT NULL UNIQUE,
    budget DECIMAL(18, 2) NOT NULL DEFAULT 0,
    UNIQUE (id, name)
);

CREATE TABLE staff.employees (
    id INTEGER PRIMARY KEY,
    name VARCHAR NOT NULL,
    department TINYINT NOT NULL REFERENCES staff.departments (id),
    manager INTEGER REFERENCES staff.employees (id),
    hired DATE NOT NULL,
    wage DECIMAL(8, 2) NOT NULL,
    yearly DECIMAL(12, 2) GENERATED ALWAYS AS (wage * 14) VIRTUAL,
    skills VARCHAR[] DEFAULT [],
    works_from TIME NOT NULL DEFAULT TIME '08:00:00',
    CHECK (wage >= 1500)
);

CREATE UNIQUE INDEX employees_name ON staff.employees (department, name);

COMMENT ON TABLE staff.employees IS 'Who works here, and for whom';
COMMENT ON COLUMN staff.employees.yearly IS 'With the two extra wages';

INSERT INTO staff.departments VALUES
    (1, 'Management', 250000.00), (2, 'Roastery', 480000.50), (3, 'Shop', 190000.00), (4, 'Shipping', 120000.75);

INSERT INTO staff.employees (id, name, department, manager, hired, wage, skills, works_from)
VALUES (1, 'Ada Berger', 1, NULL, '2015-03-01', 5200.00, ['strategy'], '09:00');
INSERT INTO staff.employees (id, name, department, manager, hired, wage, skills, works_from)
SELECT i, names[i - 1], 2 + (i - 2) % 3, 1, DATE '2016-05-01' + CAST(i * 40 AS INTEGER), 3000 + i * 55.5,
       ['leading', 'cupping'], '07:30'
FROM range(2, 5) t(i), (SELECT ['Emil Kraus', 'Zoë Lang', 'Petr Novák'] AS names);
INSERT INTO staff.employees (id, name, department, manager, hired, wage, skills)
SELECT i, 'Helper ' || i, 2 + (i - 5) % 3, 2 + (i - 5) % 3, DATE '2018-01-15' + CAST(i * 61 % 1500 AS INTEGER),
       1600 + i * 23.75,
       CASE i % 3 WHEN 0 THEN ['packing'] WHEN 1 THEN ['roasting', 'grinding'] ELSE [] END
FROM range(5, 25) t(i);

-- Reports

CREATE VIEW reports.order_totals AS
    SELECT o.number, o.customer, CAST(o.placed AS DATE) AS placed, o.state, sum(l.total) AS total, count(*) AS lines
    FROM shop.orders o JOIN shop.order_lines l ON l.order_number = o.number
    GROUP BY ALL;

CREATE VIEW reports.revenue_by_month AS
    SELECT date_trunc('month', placed) AS month, count(*) AS orders, sum(total) AS revenue
    FROM reports.order_totals
    WHERE state <> 'returned'
    GROUP BY ALL;

CREATE MACRO reports.gross(net, vat := 20) AS CAST(net * (100 + vat) / 100 AS DECIMAL(12, 2));
CREATE MACRO reports.best_customers(how_many) AS TABLE
    SELECT c.name, c.country, sum(t.total) AS spent
    FROM reports.order_totals t JOIN shop.customers c ON c.id = t.customer
    GROUP BY ALL
    ORDER BY spent DESC, c.name
    LIMIT how_many;

COMMENT ON VIEW reports.revenue_by_month IS 'Without what came back';
COMMENT ON MACRO reports.gross IS 'Price with tax';
COMMENT ON MACRO TABLE reports.best_customers IS 'Who spent most';

COMMIT;
