CREATE SCHEMA "o dd";
CREATE SCHEMA zz;
CREATE TYPE mood AS ENUM ('sad', 'it''s "x"', '');
CREATE TYPE "o dd"."ty pe" AS STRUCT(a INTEGER, b VARCHAR[]);
COMMENT ON TYPE mood IS 'how''s it';
CREATE TYPE alias AS DECIMAL(10,2);
CREATE TYPE valueless AS ENUM (SELECT '' WHERE false);
CREATE TYPE "o dd"."value less" AS ENUM (SELECT '' WHERE false);
CREATE TYPE around AS STRUCT(a valueless[], "ENUM()" INTEGER);
COMMENT ON TYPE valueless IS 'ENUM()';
CREATE MACRO of_valueless(a valueless, b := 1) AS b;
CREATE TABLE valueless_columns(i INTEGER DEFAULT 3, e valueless, n "o dd"."value less" NOT NULL,
    s STRUCT(x valueless, "ENUM()" INTEGER), l valueless[], m MAP(valueless, INTEGER), u UNION(x valueless, y INTEGER),
    g valueless GENERATED ALWAYS AS (NULL), gl valueless[] AS ([]), d valueless DEFAULT NULL, w around, CHECK (i > 0));
CREATE TABLE o_valueless(i INTEGER, e valueless, s STRUCT(x valueless, "ENUM()" INTEGER), u UNION(x valueless, y INTEGER),
    w around, m MAP(valueless, INTEGER), f valueless[2]);
INSERT INTO o_valueless VALUES (1, NULL, {'x': NULL, 'ENUM()': 2}, union_value(y := 5), {'a': [NULL], 'ENUM()': 6}, MAP {}, [NULL, NULL]),
    (2, NULL, NULL, union_value(x := NULL::valueless), NULL, NULL, NULL);
CREATE INDEX valueless_ix ON o_valueless(i);
CREATE VIEW of_valueless_columns AS SELECT e, NULL::valueless AS x FROM valueless_columns;
CREATE SEQUENCE sq;
SELECT nextval('sq') FROM range(5);
COMMENT ON SEQUENCE sq IS 'numbers';
CREATE SEQUENCE unused START 7;
CREATE SEQUENCE down INCREMENT -3 MINVALUE -100 MAXVALUE 50 START 50;
SELECT nextval('down'), nextval('down');
CREATE SEQUENCE zero MINVALUE 0 START 0;
CREATE SEQUENCE "negative" MINVALUE -5 START 0;
CREATE SEQUENCE ring MINVALUE 1 MAXVALUE 3 CYCLE;
SELECT nextval('ring') FROM range(3);
CREATE SEQUENCE spent MAXVALUE 2;
CREATE SEQUENCE evens INCREMENT 2 MINVALUE 0 START 0 MAXVALUE 9 CYCLE;
CREATE SEQUENCE falling INCREMENT -3 MINVALUE -9 MAXVALUE 0;
SELECT nextval('falling');
SELECT nextval('spent') FROM range(2);
CREATE SEQUENCE "o dd"."s q";
CREATE MACRO plus(a, b := 5) AS a + b, (a, b, c) AS a * b * c;
CREATE MACRO "o dd"."odd name"("a b", "select" := [1, 2], d := 'x, y := )''') AS "a b" + 1;
CREATE MACRO typed(a INTEGER, b VARCHAR := 'q') AS a || b;
CREATE MACRO rows_of(n, d := DATE '2020-01-01') AS TABLE SELECT range AS i, d AS d FROM range(n);
CREATE MACRO noargs() AS 42;
CREATE MACRO forms_of(a) AS TABLE (SELECT a), (a, b := 'x') AS TABLE (SELECT a, b UNION ALL SELECT 1, ')');
CREATE MACRO "for$$ms"(a) AS a + 1;
CREATE MACRO "for$$ms"(a, b) AS TABLE SELECT a, b;
COMMENT ON MACRO plus IS 'adds; sometimes';
COMMENT ON MACRO TABLE rows_of IS 'rows';
CREATE TABLE parents("i d" INTEGER, name VARCHAR DEFAULT 'it''s', "q""q" VARCHAR, PRIMARY KEY ("i d", "q""q"));
CREATE TABLE a_child(id BIGINT DEFAULT nextval('sq') PRIMARY KEY, pid INTEGER, pq VARCHAR,
    FOREIGN KEY (pid, pq) REFERENCES parents("i d", "q""q"));
CREATE TABLE "two
lines"("a
b" INTEGER, "c
" INTEGER, "
" INTEGER, PRIMARY KEY ("a
b", "
"), UNIQUE ("c
"), UNIQUE ("
", "c
"));
CREATE TABLE lined("x
y" INTEGER, z INTEGER, FOREIGN KEY ("x
y", z) REFERENCES "two
lines"("a
b", "
"));
INSERT INTO "two
lines" VALUES (1, 2, 3);
INSERT INTO lined VALUES (1, 3);
CREATE INDEX "lined
ix" ON lined("x
y", z);
CREATE TABLE tree(id INTEGER PRIMARY KEY, up INTEGER REFERENCES tree(id), other INTEGER REFERENCES tree(id));
CREATE TABLE gen(z INTEGER, g INTEGER GENERATED ALWAYS AS (z * 2), y DATE DEFAULT DATE '2020-01-01',
    h VARCHAR AS (upper(t)), t VARCHAR COLLATE NOCASE, CHECK (z > 0), UNIQUE (z, t), UNIQUE (y));
CREATE TABLE moods(x INTEGER, l mood[] GENERATED ALWAYS AS (NULL), st STRUCT(m mood, b INTEGER) GENERATED ALWAYS AS (NULL));
INSERT INTO moods VALUES (1);
CREATE TABLE usesmacro(a INTEGER DEFAULT (plus(1)), CHECK (plus(a) > 0));
CREATE TABLE defaults(a VARCHAR DEFAULT '007', b VARCHAR DEFAULT '', c VARCHAR DEFAULT 'null', d INTEGER DEFAULT NULL,
    e VARCHAR DEFAULT 'E', f TIMESTAMP DEFAULT now(), g DOUBLE DEFAULT 1e5, h BOOLEAN DEFAULT true, i INTEGER NOT NULL DEFAULT -1,
    j INTEGER[] DEFAULT [1, 2], k VARCHAR DEFAULT '(x)');
CREATE TABLE "o dd"."t'1"("c""x" INTEGER DEFAULT nextval('"o dd"."s q"'), "se lect" VARCHAR, "1x" mood, st "o dd"."ty pe");
CREATE TABLE "o dd".p(id INTEGER PRIMARY KEY);
CREATE TABLE "o dd".c(id INTEGER, FOREIGN KEY (id) REFERENCES "o dd".p(id));
CREATE TABLE zz.empty_one(a INTEGER);
CREATE TABLE types(
    b BOOLEAN, ti TINYINT, si SMALLINT, i INTEGER, bi BIGINT, uti UTINYINT, usi USMALLINT, ui UINTEGER, ubi UBIGINT,
    hi HUGEINT, uhi UHUGEINT, f FLOAT, d DOUBLE, de DECIMAL(38,10), v VARCHAR, bl BLOB, da DATE, tm TIME, tt TIMETZ,
    ts TIMESTAMP, tss TIMESTAMP_S, tsm TIMESTAMP_MS, tsn TIMESTAMP_NS, tz TIMESTAMPTZ, iv INTERVAL, u UUID, bt BIT,
    en ENUM('x', 'y''z'), js JSON, l INTEGER[], a VARCHAR[2], st STRUCT("x'y" DOUBLE, n STRUCT(k VARCHAR[])),
    m MAP(VARCHAR, DATE[]), un UNION(n INTEGER, s VARCHAR), bn BIGNUM, tn TIME_NS);
INSERT INTO types VALUES (true, -128, -32768, -2147483648, -9223372036854775808, 255, 65535, 4294967295, 18446744073709551615,
    '-170141183460469231731687303715884105728', '340282366920938463463374607431768211455', 'inf', 'nan', 0.1, 'it''s' || chr(0) || 'ä€😀
', '\x00\xFF'::BLOB, '0044-03-15 (BC)', '24:00:00', '12:34:56.5-05:30', '-infinity', '1970-01-01', '2020-01-01 00:00:00.001',
    '2020-01-01 00:00:00.000000001', '2020-01-01 00:00:00+02', '-1 years 2 days -00:00:00.000001', '80000000-0000-0000-0000-000000000000',
    '0101', 'y''z', '{"a" : [1, "it''s"]}', [1, NULL], ['a, b', NULL], {'x''y': '-0.0', 'n': {'k': ['NULL', NULL, '']}},
    MAP {'a=b': ['infinity', NULL]}, union_value(s := 'NULL'), '12345678901234567890123', '12:00:00.123456789');
INSERT INTO types (f, d, iv, bl, l, m) VALUES ('-0.0', '-0.0', to_microseconds(9223372036854775807), '', [], MAP {});
INSERT INTO types (i) VALUES (NULL);
INSERT INTO parents VALUES (1, 'a', 'x'), (2, NULL, 'y');
INSERT INTO a_child VALUES (1, 2, 'y'), (2, NULL, NULL), (3, 1, 'x');
INSERT INTO tree VALUES (5, NULL, NULL);
INSERT INTO tree VALUES (1, NULL, 5);
INSERT INTO tree VALUES (2, 1, 5);
INSERT INTO tree VALUES (9, 2, 1);
INSERT INTO gen (z, t) VALUES (1, 'b');
INSERT INTO gen (z, y, t) VALUES (2, NULL, 'B');
INSERT INTO usesmacro VALUES (3);
INSERT INTO defaults (d) VALUES (1), (2);
INSERT INTO "o dd"."t'1" VALUES (1, 'x', 'it''s "x"', {'a': 1, 'b': ['q']});
INSERT INTO "o dd".p VALUES (4); INSERT INTO "o dd".c VALUES (4);
CREATE VIEW z_view AS SELECT 1 AS p;
CREATE VIEW b_view AS SELECT * FROM z_view;
CREATE OR REPLACE VIEW z_view AS SELECT id, plus(id) AS p FROM a_child JOIN parents ON pid = "i d";
CREATE OR REPLACE VIEW b_view AS SELECT * FROM z_view WHERE p > (SELECT min(i) FROM rows_of(3));
CREATE VIEW "o dd"."v w" AS SELECT 'it''s'::mood AS m, * FROM "o dd"."t'1";
COMMENT ON VIEW b_view IS 'a view';
CREATE VIEW a_quoting AS SELECT * FROM query_table('b_view');
CREATE VIEW a_values AS VALUES (1, 'a)'), (2, 'b');
CREATE VIEW b_values AS SELECT x FROM (VALUES (1), (2)) AS v(x);
CREATE MACRO listed() AS TABLE VALUES (1), (2);
CREATE MACRO uses_view(n) AS TABLE SELECT * FROM b_view LIMIT n;
CREATE MACRO max_of_view() AS (SELECT max(p) FROM z_view);
CREATE INDEX plain_ix ON a_child(pid);
CREATE UNIQUE INDEX "u ix" ON parents("q""q", name);
CREATE INDEX expr_ix ON gen((upper(t)), z);
CREATE INDEX "o ix" ON "o dd"."t'1"("c""x");
COMMENT ON INDEX plain_ix IS 'index''s';
COMMENT ON TABLE a_child IS 'children
of two lines';
COMMENT ON COLUMN a_child.pid IS 'parent; see "parents"';
COMMENT ON COLUMN gen.g IS 'twice';
COMMENT ON COLUMN b_view.id IS 'a column of a view';
CREATE TABLE self_rows(id INTEGER PRIMARY KEY, up INTEGER REFERENCES self_rows(id), rowid INTEGER);
INSERT INTO self_rows VALUES (1, NULL, NULL);
INSERT INTO self_rows VALUES (2, 1, 7);
INSERT INTO self_rows VALUES (3, 1, 7);
INSERT INTO self_rows VALUES (4, 3, 7);
CREATE VIEW "order" AS SELECT * FROM self_rows;
CREATE VIEW an_order AS SELECT * FROM "order" JOIN "order" o USING (id);
CREATE TABLE not_generated(a INTEGER, b VARCHAR DEFAULT ' a INTEGER GENERATED ALWAYS AS ( ');
INSERT INTO not_generated VALUES (1, 'kept');
CREATE TABLE marks AS SELECT repeat(chr(65279), 100000) AS v FROM range(3);
CREATE SCHEMA along; CREATE SEQUENCE along.counted; SET search_path = 'along,main';
CREATE TABLE along.with_path(j INTEGER DEFAULT nextval('counted'));
SET search_path = '';
CREATE VIEW a_view_of_main AS SELECT * FROM parents;
