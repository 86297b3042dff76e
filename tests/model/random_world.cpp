// SPDX-License-Identifier: GPL-3.0-or-later
#include "random_world.h"

#include <QRegularExpression>

#include <functional>
#include <set>

namespace support {

namespace {

struct TypeChoice
{
    const char* type;
    const char* values;
    bool distinct;
    const char* defaultText;
    const char* other; ///< a type to change to
};

const TypeChoice Types[] = {
    {"INTEGER", "i * 3", true, "5", "BIGINT"},
    {"BIGINT", "i * 1000000007", true, "(1 + 1)", "VARCHAR"},
    {"VARCHAR", "'v ' || i", true, "'it''s'", ""},
    {"VARCHAR", "'2020-01-0' || i", true, "'2020-01-01'", "DATE"},
    {"VARCHAR", "'00' || i", true, "'007'", "INTEGER"},
    {"DECIMAL(9,2)", "i + 0.25", true, "1.5", "DECIMAL(12,3)"},
    {"DOUBLE", "i / 4", true, "1e5", "VARCHAR"},
    {"DATE", "DATE '2020-01-01' + i::INTEGER", true, "DATE '2021-02-03'", "TIMESTAMP"},
    {"TIMESTAMP", "TIMESTAMP '2020-01-01 00:00:00.000123' + to_days(i::INTEGER)", true, "now()", "VARCHAR"},
    {"TIMESTAMP_NS", "TIMESTAMP_NS '2020-01-01 00:00:00.123456789'", false, "", ""},
    {"TIME", "TIME '01:02:03'", false, "", "VARCHAR"},
    {"BOOLEAN", "i % 2 = 0", false, "true", "INTEGER"},
    {"INTEGER[]", "[i, NULL]", true, "[1, 2]", "VARCHAR"},
    {"INTEGER[2]", "[i, i + 1]::INTEGER[2]", true, "", "INTEGER[]"},
    {"STRUCT(a INTEGER, \"b c\" VARCHAR)", "{'a': i, 'b c': 'x'}", true, "", "VARCHAR"},
    {"MAP(VARCHAR, INTEGER)", "MAP {'k': i}", false, "", "VARCHAR"},
    {"ENUM('x', 'it''s \"y\"', 'z')", "CASE WHEN i % 2 = 0 THEN 'x' ELSE 'it''s \"y\"' END", false, "'z'", "VARCHAR"},
    {"UNION(n INTEGER, s VARCHAR)", "union_value(n := i::INTEGER)", false, "", "VARCHAR"},
    {"UUID", "'00000000-0000-0000-0000-00000000000' || i", true, "", "VARCHAR"},
    {"BLOB", "('b' || i)::BLOB", true, "", ""},
    {"HUGEINT", "i::HUGEINT * 100000000000000000000", true, "", "VARCHAR"},
    {"INTERVAL", "to_days(i::INTEGER)", false, "", "VARCHAR"},
    {"JSON", "'{\"a\":' || i || '}'", false, "", "VARCHAR"},
    {"BIT", "'0101'", false, "", "VARCHAR"},
    {"UTINYINT", "i", true, "7", "SMALLINT"},
    {"TIMESTAMPTZ", "TIMESTAMPTZ '2020-01-01 00:00:00+00'", false, "", ""},
    {"FLOAT", "i + 0.5", true, "'NaN'", "DOUBLE"},
    {"SMALLINT", "i * 2", true, "-3", "INTEGER"},
    {"TINYINT", "i - 4", true, "", "SMALLINT"},
    {"USMALLINT", "i + 7", true, "9", "UBIGINT"},
    {"UINTEGER", "i + 8", true, "", "HUGEINT"},
    {"UBIGINT", "i + 9", true, "", "VARCHAR"},
    {"UHUGEINT", "i::UHUGEINT * 100000000000000000000", true, "", "VARCHAR"},
    {"BIGNUM", "(i * 12345678901)::BIGNUM", false, "", "VARCHAR"},
    {"DECIMAL(38,10)", "i / 8", true, "0.125", "VARCHAR"},
    {"DECIMAL(9,2)[]", "[i + 0.25]", false, "", "VARCHAR"},
    {"TIMESTAMP_S", "TIMESTAMP_S '2020-01-01 00:00:01'", false, "", "TIMESTAMP"},
    {"TIMESTAMP_MS", "TIMESTAMP_MS '2020-01-01 00:00:00.001'", false, "", "TIMESTAMP"},
    {"TIMETZ", "TIMETZ '01:02:03+02'", false, "", "VARCHAR"},
    {"STRUCT(l INTEGER[], m MAP(VARCHAR, DECIMAL(9,2)))[]", "[{'l': [i], 'm': MAP {'x': 1.5}}]", false, "", "VARCHAR"},
    {"mood", "CASE WHEN i % 2 = 0 THEN 'fine' ELSE 'so so' END", false, "'fine'", "VARCHAR"},
    {"\"od d\".\"a type\"", "CASE WHEN i > 3 THEN 'k' ELSE 'l' END", false, "", "VARCHAR"},
    {"BIGINT", "i * 11", true, "nextval('\"sq 1\"')", ""},
    {"INTEGER", "CAST(NULL AS INTEGER)", false, "NULL", "BIGINT"},
    {"VARCHAR", "'a;b -- /* ' || i", true, "';--'", ""},
};

} // namespace

QString Ident(QString name)
{
    return u'"' + name.replace(u'"', QLatin1String("\"\"")) + u'"';
}

QString Literal(QString text)
{
    return u'\'' + text.replace(u'\'', QLatin1String("''")) + u'\'';
}

World::Column& World::Table::Get(int column)
{
    for (Column& one : columns)
        if (one.id == column)
            return one;
    throw std::logic_error("no such column");
}

bool World::Table::Has(const QString& columnName) const
{
    for (const Column& column : columns)
        if (column.name.compare(columnName, Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

bool World::Table::Uses(int column) const
{
    bool used = key.contains(column);
    for (const QList<int>& unique : uniques)
        used = used || unique.contains(column);
    for (const Check& check : checks)
        used = used || check.column == column;
    for (const Index& index : indexes)
        used = used || index.columns.contains(column);
    for (const ForeignKey& link : links)
        used = used || link.columns.contains(column) || (link.parent == id && link.parentColumns.contains(column));
    for (const Column& other : columns)
        used = used || other.source == column;
    return used;
}

QString World::Table::Qualified() const
{
    return temporary ? Ident(name) : Ident(schema) + u'.' + Ident(name);
}

QList<int> World::Children(int table) const
{
    QList<int> children;
    for (const auto& [id, other] : tables)
        for (const ForeignKey& link : other.links)
            if (link.parent == table && id != table)
                children.append(id);
    return children;
}

bool World::IsLinked(int column) const
{
    for (const auto& [id, table] : tables)
        for (const ForeignKey& link : table.links)
            if (link.columns.contains(column) || link.parentColumns.contains(column))
                return true;
    return false;
}

namespace {

QString ListOf(const World::Table& table, const QList<int>& ids)
{
    QStringList quoted;
    for (const int id : ids)
        quoted << Ident(table.Get(id).name);
    return quoted.join(QLatin1String(", "));
}

} // namespace

QString World::Script(bool rows) const
{
    QString script = QStringLiteral("CREATE SCHEMA IF NOT EXISTS \"s 1\";\nCREATE SCHEMA \"od d\";\nCREATE SEQUENCE \"sq 1\";\n"
                                    "CREATE TYPE mood AS ENUM ('fine', 'so so');\n"
                                    "CREATE TYPE \"od d\".\"a type\" AS ENUM ('k', 'l');\n");
    std::set<int> made;
    const std::function<void(const Table&)> make = [&](const Table& table) {
        if (!made.insert(table.id).second)
            return;
        QStringList items;
        QStringList names;
        const auto list = [&](const QList<int>& ids) { return ListOf(table, ids); };
        for (const Column& column : table.columns) {
            QString item = Ident(column.name) + u' ' + column.type;
            if (column.IsGenerated())
                item += QStringLiteral(" AS (") + column.expression.arg(Ident(table.Get(column.source).name)) + u')';
            else
                names << Ident(column.name);
            if (!column.collation.isEmpty())
                item += QStringLiteral(" COLLATE ") + column.collation;
            if (!column.nullable)
                item += QStringLiteral(" NOT NULL");
            if (!column.defaultText.isEmpty())
                item += QStringLiteral(" DEFAULT ") + column.defaultText;
            items << item;
        }
        if (!table.key.isEmpty())
            items << QStringLiteral("PRIMARY KEY (%1)").arg(list(table.key));
        for (const QList<int>& unique : table.uniques)
            items << QStringLiteral("UNIQUE (%1)").arg(list(unique));
        for (const Check& check : table.checks)
            items << QStringLiteral("CHECK (%1)").arg(check.expression.arg(Ident(table.Get(check.column).name)));
        for (const ForeignKey& link : table.links) {
            const Table& parent = tables.at(link.parent);
            if (parent.id != table.id)
                make(parent);
            items << QStringLiteral("FOREIGN KEY (%1) REFERENCES %2(%3)")
                         .arg(list(link.columns), parent.Qualified(), ListOf(parent, link.parentColumns));
        }
        script += QStringLiteral("CREATE %1TABLE %2(%3);\n")
                      .arg(table.temporary ? QStringLiteral("TEMP ") : QString(), table.Qualified(),
                           items.join(QLatin1String(", ")));
        if (rows && table.hasRows) {
            QStringList values;
            for (const Column& column : table.columns)
                if (!column.IsGenerated())
                    values << column.values;
            // The last row is one that nobody refers to.
            script += QStringLiteral("INSERT INTO %1(%2) SELECT %3 FROM range(1, %4) r(i);\n")
                          .arg(table.Qualified(), names.join(QLatin1String(", ")), values.join(QLatin1String(", ")))
                          .arg(WorldMaker::Rows + 1);
            for (const Column& column : table.columns)
                if (!column.later.isEmpty())
                    script += QStringLiteral("UPDATE %1 SET %2 = %3 WHERE %4 > 3;\n")
                                  .arg(table.Qualified(), Ident(column.name),
                                       column.later.arg(Ident(table.columns.first().name)), Ident(table.columns.first().name));
        }
        for (const Index& index : table.indexes) {
            const QString items = index.expression.isEmpty()
                                      ? list(index.columns)
                                      : index.expression.arg(Ident(table.Get(index.columns.first()).name));
            script += QStringLiteral("CREATE %1INDEX %2 ON %3(%4);\n")
                          .arg(index.unique ? QStringLiteral("UNIQUE ") : QString(), Ident(index.name),
                               table.Qualified(), items);
            if (!index.comment.isEmpty())
                script += QStringLiteral("COMMENT ON INDEX %1 IS %2;\n")
                              .arg(table.temporary ? Ident(index.name)
                                                   : Ident(table.schema) + u'.' + Ident(index.name),
                                   Literal(index.comment));
        }
        if (!table.comment.isEmpty())
            script += QStringLiteral("COMMENT ON TABLE %1 IS %2;\n").arg(table.Qualified(), Literal(table.comment));
        for (const Column& column : table.columns)
            if (!column.comment.isEmpty())
                script += QStringLiteral("COMMENT ON COLUMN %1.%2 IS %3;\n")
                              .arg(table.Qualified(), Ident(column.name), Literal(column.comment));
    };
    for (const auto& [id, table] : tables)
        make(table);
    return script;
}

QString WorldMaker::Name(const QString& prefix)
{
    static const char* const Forms[] = {"%1%2", "%1 %2", "%1\"%2", "%2%1", "%1.%2", "%1#%2", "\u00c4%1%2", "%1'%2", "Sel%1%2",
                                        "%1;--%2", " %1%2 ", "%1%2\t", "%1/*%2", "\u65e5%1%2", "$NAME%1%2", "%1(%2)"};
    ++m_number;
    if (!m_words.isEmpty() && Chance(8))
        return m_words.takeFirst();
    return QString::fromUtf8(Forms[Below(std::size(Forms))]).replace(QLatin1String("%1"), prefix)
        .replace(QLatin1String("%2"), QString::number(m_number));
}

World::Column WorldMaker::NewColumn(World& world, const World::Table& table)
{
    int at = Below(std::size(Types));
    // The engine before 1.5 looks for the types of temporary tables in main alone.
    while (table.temporary && *Types[at].type == '"')
        at = Below(std::size(Types));
    const TypeChoice& choice = Types[at];
    World::Column column;
    column.id = world.next++;
    column.name = Name(QStringLiteral("c"));
    column.type = QString::fromLatin1(choice.type);
    column.values = QString::fromLatin1(choice.values);
    column.distinct = choice.distinct;
    if (Chance(40))
        column.defaultText = QString::fromLatin1(choice.defaultText);
    if (Chance(30) && MayComment(table))
        column.comment = QStringLiteral("about ") + column.name;
    if (column.type == u"VARCHAR" && Chance(40))
        column.collation = QStringLiteral("nocase");
    column.nullable = Chance(60) || column.values.startsWith(QLatin1String("CAST(NULL"));
    return column;
}

World::Column WorldMaker::NewGenerated(World& world, const World::Table& table)
{
    static const char* const Forms[] = {"%1 + 1", "CAST(%1 AS VARCHAR) || ' cast(x as y)'", "%1 * 2.5"};
    static const char* const FormTypes[] = {"INTEGER", "VARCHAR", "DOUBLE"};
    const int form = Below(3);
    World::Column column;
    column.id = world.next++;
    column.name = Name(QStringLiteral("g"));
    column.type = QString::fromLatin1(FormTypes[form]);
    column.expression = QString::fromLatin1(Forms[form]);
    column.source = table.columns.first().id;
    for (const World::Column& other : table.columns)
        if (!other.IsGenerated() && other.type == u"INTEGER" && Chance(50))
            column.source = other.id;
    return column;
}

World::Table WorldMaker::NewTable(World& world, const QString& schema, bool temporary)
{
    World::Table table;
    table.id = world.next++;
    table.schema = schema;
    table.name = Name(QStringLiteral("t"));
    table.temporary = temporary;
    if (Chance(40) && MayComment(table))
        table.comment = QStringLiteral("it's ") + table.name;
    World::Column rowNumber;
    rowNumber.id = world.next++;
    rowNumber.name = Chance(50) ? QStringLiteral("k") : Name(QStringLiteral("k"));
    rowNumber.type = QStringLiteral("INTEGER");
    rowNumber.values = QStringLiteral("i");
    rowNumber.distinct = true;
    table.columns << rowNumber;
    for (int i = 1 + Below(4); i > 0; --i)
        table.columns << NewColumn(world, table);
    const QList<World::Column> plain = table.columns;
    if (Chance(70))
        table.key << table.columns.first().id;
    for (const World::Column& column : plain) {
        const bool keyType = column.distinct && !column.type.contains(u'(') && !column.type.contains(u'[')
                             && column.collation.isEmpty();
        if (keyType && !table.key.isEmpty() && table.key.size() < 2 && column.id != table.key.first() && Chance(10))
            table.key << column.id;
        if (keyType && Chance(15))
            table.uniques << QList<int>{column.id};
        if (Chance(15) && !column.values.startsWith(QLatin1String("CAST(NULL")))
            table.checks << World::Check{QStringLiteral("%1 IS NOT NULL"), column.id};
        if (keyType && Chance(20))
            table.indexes << World::Index{Name(QStringLiteral("ix")), Chance(30), {column.id}, QString(),
                                          Chance(50) && MayComment(table) ? QStringLiteral("an index") : QString()};
    }
    if (Chance(10))
        table.indexes << World::Index{Name(QStringLiteral("ex")), false, {table.columns.first().id},
                                      QStringLiteral("(%1 + 1)"), QString()};
    for (int i = Below(3); i > 0; --i)
        table.columns << NewGenerated(world, table);
    for (const int id : table.key)
        table.Get(id).nullable = false;
    return table;
}

bool WorldMaker::AddForeignKey(World& world, World::Table& table, const World::Table& parent)
{
    QList<QList<int>> targets = parent.uniques;
    if (!parent.key.isEmpty() && (parent.id != table.id || parent.key == QList<int>{parent.columns.first().id}))
        targets << parent.key << parent.key; // the usual case
    if (parent.id == table.id)
        targets.removeIf([&](const QList<int>& target) { return target != parent.key; });
    if (targets.isEmpty())
        return false;
    static const QRegularExpression rowNumber(QStringLiteral("\\bi\\b"));
    const World::ForeignKey key{{}, parent.id, targets[Below(int(targets.size()))]};
    QList<World::Column> made;
    for (const int id : key.parentColumns) {
        World::Column column = parent.Get(id);
        column.id = world.next++;
        column.name = Name(QStringLiteral("r"));
        column.values.replace(rowNumber, QStringLiteral("(i % 3 + 1)"));
        column.defaultText.clear();
        column.comment.clear();
        column.nullable = true;
        column.distinct = false;
        if (parent.id == table.id) {
            column.values = QStringLiteral("CAST(NULL AS INTEGER)");
            column.later = QStringLiteral("CASE WHEN %1 > 3 THEN %1 % 3 + 1 END");
        }
        made << column;
    }
    table.links << key;
    for (const World::Column& column : made) {
        table.links.last().columns << column.id;
        table.columns.insert(1 + Below(2) % int(table.columns.size()), column);
    }
    return true;
}

World WorldMaker::Make()
{
    World world;
    for (int i = 2 + Below(4); i > 0; --i) {
        const bool temporary = Chance(20);
        static const char* const Schemas[] = {"main", "main", "s 1", "od d"};
        World::Table table = NewTable(world, QString::fromLatin1(temporary ? "main" : Schemas[Below(4)]), temporary);
        QList<const World::Table*> parents;
        for (const auto& [id, parent] : world.tables) {
            if (parent.schema == table.schema && parent.temporary == temporary)
                parents << &parent;
            // One name in several schemas; a temporary table would hide one of main.
            else if (parent.schema != table.schema && !temporary && !parent.temporary && Chance(15))
                table.name = parent.name;
        }
        for (const auto& [id, other] : world.tables)
            if (other.schema == table.schema && other.name == table.name)
                table.name = Name(QStringLiteral("t"));
        for (const World::Table* parent : parents)
            if (Chance(50))
                AddForeignKey(world, table, *parent);
        if (Chance(10)) {
            const World::Table itself = table;
            AddForeignKey(world, table, itself);
        }
        world.tables.emplace(table.id, table);
    }
    return world;
}

QString WorldMaker::OtherType(const World::Column& column)
{
    for (const TypeChoice& choice : Types)
        if (column.type == QLatin1String(choice.type) && column.values == QLatin1String(choice.values))
            return QString::fromLatin1(choice.other);
    return QString();
}

QString WorldMaker::OtherDefault(const World::Column& column)
{
    for (const TypeChoice& choice : Types)
        if (column.type == QLatin1String(choice.type) && column.values == QLatin1String(choice.values))
            return QString::fromLatin1(choice.defaultText);
    return QString();
}

} // namespace support
