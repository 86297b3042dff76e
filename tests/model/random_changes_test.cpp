// SPDX-License-Identifier: GPL-3.0-or-later
// Random tables and random changes of them, through the engine: what is there
// afterwards is compared with a database that was made that way from the start.
// ORBIS_RANDOM_RUNS sets how many, ORBIS_RANDOM_SEED where they begin.
#include "model_place.h"
#include "random_world.h"

#include "engine/engine_version.h"
#include "hf/design.h"

#include <QRegularExpression>

#include <functional>
#include <map>
#include <set>

namespace {

using support::Ident;
using support::World;
using Model = rc::Ref<HF::LModelObject>;

/// One edit: the world as it is to be, and the design that is to make it.
class Editor
{
public:
    Editor(support::WorldMaker& maker, World& world, const rc::Ref<HF::LDesign>& design)
        : m_maker(maker), m_world(world), m_design(design)
    {
        for (const auto& [id, table] : world.tables) {
            const auto model = Child(Child(design->get_Root(), HF::TYPE_SCHEMA, table.schema), HF::TYPE_TABLE, table.name);
            m_tables.emplace(id, model);
            for (const World::Column& column : table.columns)
                m_columns.emplace(column.id, Child(model, column.IsGenerated() ? HF::TYPE_METHOD : HF::TYPE_FIELD, column.name));
        }
    }

    /// A few changes; what each was, for the message of a failure.
    QStringList Change()
    {
        if (m_maker.Chance(50))
            for (auto& [id, table] : m_world.tables)
                if (m_maker.Chance(40))
                    Rename(table);
        for (int i = 1 + m_maker.Below(4); i > 0; --i) {
            auto at = m_world.tables.begin();
            std::advance(at, m_maker.Below(int(m_world.tables.size())));
            One(at->second);
        }
        return m_done;
    }

private:
    static Model Child(const Model& owner, int type, const QString& name)
    {
        const auto child = owner->get_Model(type, name);
        if (!child)
            throw std::runtime_error("not in the tree: " + name.toStdString());
        return Model(child);
    }
    void Set(const Model& object, int property, const HF::LVariant& value)
    {
        const QString problem = m_design->Change(object, property, value);
        EXPECT_EQ(problem.toStdString(), "");
    }
    QStringList Names(const World::Table& table, const QList<int>& columns) const
    {
        QStringList names;
        for (const int column : columns)
            names << table.Get(column).name;
        return names;
    }
    QString Text(const World::Table& table, const QString& expression, int column) const
    {
        return expression.arg(Ident(table.Get(column).name));
    }
    void Note(const QString& what, const World::Table& table) { m_done << what + QLatin1String(" of ") + table.name; }

    void Rename(World::Table& table)
    {
        World::Column& column = table.columns[m_maker.Below(int(table.columns.size()))];
        if (m_maker.Chance(25)) {
            Note("new table name", table);
            table.name = m_maker.Name("n");
            return Set(m_tables.at(table.id), PROP_NAME, table.name);
        }
        // Two columns may also change places.
        World::Column& other = table.columns[m_maker.Below(int(table.columns.size()))];
        const bool swap = m_maker.Chance(20) && other.id != column.id;
        Note((swap ? "swapped names of " : "new name of ") + column.name, table);
        if (swap)
            std::swap(column.name, other.name);
        else
            column.name = m_maker.Name("n");
        Set(m_columns.at(column.id), PROP_NAME, column.name);
        if (swap)
            Set(m_columns.at(other.id), PROP_NAME, other.name);
    }

    void AddColumn(World::Table& table)
    {
        World::Column column = m_maker.NewColumn(m_world, table);
        // It holds its default in the rows that are there, or nothing.
        column.collation.clear();
        if (column.defaultText == u"now()" || column.defaultText.startsWith(u"nextval"))
            column.defaultText.clear();
        column.nullable = true;
        column.distinct = false;
        column.values = column.defaultText.isEmpty() ? QStringLiteral("CAST(NULL AS %1)").arg(column.type)
                                                     : column.defaultText;
        const Model field{m_design->Create(m_tables.at(table.id), HF::TYPE_FIELD, column.name)};
        Set(field, PROP_TYPE_NAME, column.type);
        Set(field, PROP_DEFAULT, UserText(column.defaultText));
        Set(field, PROP_COMMENT, column.comment);
        m_columns.emplace(column.id, field);
        table.columns << column;
        Note("new column " + column.name, table);
    }

    static QString UserText(const QString& text)
    {
        const bool bare = text.isEmpty() || text.startsWith(u'(') || text.startsWith(u'\'') || text[0].isDigit();
        return bare ? text : u'(' + text + u')';
    }

    void ChangeColumn(World::Table& table, World::Column& column)
    {
        const Model& field = m_columns.at(column.id);
        if (column.IsGenerated() && m_maker.Chance(20)) {
            Note("dropped " + column.name, table);
            m_design->Drop(field);
            const int id = column.id;
            table.columns.removeIf([id](const World::Column& one) { return one.id == id; });
            return;
        }
        switch (m_maker.Below(column.IsGenerated() ? 2 : 5)) {
        case 0:
            if (!m_maker.MayComment(table))
                return;
            column.comment = m_maker.Chance(30) ? QString() : QStringLiteral("now 'about' %1").arg(column.name);
            Note("comment on " + column.name, table);
            return Set(field, PROP_COMMENT, column.comment);
        case 1:
            if (column.IsGenerated()) {
                column.expression = QStringLiteral("%1 * 7");
                column.type = QStringLiteral("BIGINT");
                Note("expression of " + column.name, table);
                Set(field, PROP_TYPE_NAME, column.type);
                return Set(field, PROP_METHOD_EXPRESSION, Text(table, column.expression, column.source));
            }
            if (table.key.contains(column.id) || column.values.contains(QLatin1String("CAST(NULL")))
                return;
            column.nullable = !column.nullable;
            Note("nullable of " + column.name, table);
            return Set(field, PROP_NULLABLE, column.nullable);
        case 2:
            if (field->IsJustCreated())
                return; // its default is in the rows
            column.defaultText = column.defaultText.isEmpty() ? m_maker.OtherDefault(column) : QString();
            Note("default of " + column.name, table);
            return Set(field, PROP_DEFAULT, UserText(column.defaultText));
        case 3: {
            const QString type = m_maker.OtherType(column);
            const bool isSource = std::any_of(table.columns.begin(), table.columns.end(),
                                              [&](const World::Column& other) { return other.source == column.id; });
            if (type.isEmpty() || isSource || m_world.IsLinked(column.id))
                return;
            // The rows that are there are converted.
            column.values = QStringLiteral("CAST(%1 AS %2)").arg(column.values, column.type);
            column.type = type;
            column.collation.clear();
            if (!column.defaultText.isEmpty()) {
                column.defaultText.clear();
                Set(field, PROP_DEFAULT, QString());
            }
            Note("type of " + column.name, table);
            return Set(field, PROP_TYPE_NAME, type);
        }
        default:
            if (table.Uses(column.id) || m_world.IsLinked(column.id) || table.columns.first().id == column.id)
                return;
            Note("dropped " + column.name, table);
            m_design->Drop(field);
            const int id = column.id;
            table.columns.removeIf([id](const World::Column& one) { return one.id == id; });
        }
    }

    void ChangeIndex(World::Table& table)
    {
        const Model& model = m_tables.at(table.id);
        if (!table.indexes.isEmpty() && m_maker.Chance(60)) {
            World::Index& index = table.indexes[m_maker.Below(int(table.indexes.size()))];
            const auto known = model->get_Model(HF::TYPE_INDEX, index.name);
            if (!known)
                return; // it was created or renamed in this edit
            if (m_maker.Chance(25)) {
                Note("other columns of index " + index.name, table);
                index.expression.clear();
                index.columns = {table.columns.first().id};
                if (const World::Column& other = table.columns[m_maker.Below(int(table.columns.size()))];
                    other.distinct && other.type == u"INTEGER" && other.id != index.columns.first())
                    index.columns.insert(m_maker.Below(2), other.id);
                Set(Model(known), PROP_COLUMNS, Names(table, index.columns));
            } else if (m_maker.Chance(15) && index.expression.isEmpty()) {
                Note("uniqueness of index " + index.name, table);
                index.unique = !index.unique;
                Set(Model(known), PROP_UNIQUE, index.unique);
            } else if (m_maker.Chance(40)) {
                Note("dropped index " + index.name, table);
                m_design->Drop(Model(known));
                const QString name = index.name;
                table.indexes.removeIf([&](const World::Index& one) { return one.name == name; });
            } else if (m_maker.Chance(50)) {
                Note("new name of index " + index.name, table);
                index.name = m_maker.Name("ni");
                Set(Model(known), PROP_NAME, index.name);
            } else if (m_maker.MayComment(table)) {
                index.comment = QStringLiteral("index 'comment'");
                Note("comment on index " + index.name, table);
                Set(Model(known), PROP_COMMENT, index.comment);
            }
            return;
        }
        World::Index index{m_maker.Name("ix"), m_maker.Chance(30), {table.columns.first().id}, QString(), QString()};
        Note("new index " + index.name, table);
        const Model made{m_design->Create(model, HF::TYPE_INDEX, index.name)};
        Set(made, PROP_COLUMNS, Names(table, index.columns));
        Set(made, PROP_UNIQUE, index.unique);
        table.indexes << index;
    }

    void ChangeConstraint(World::Table& table)
    {
        const Model& model = m_tables.at(table.id);
        const World::Column column = table.columns.first();
        const bool isParent = !m_world.Children(table.id).isEmpty();
        switch (m_maker.Below(8)) {
        case 0: {
            const QList<int> unique{column.id};
            Note("unique", table);
            const bool target = std::any_of(table.uniques.begin(), table.uniques.end(),
                                            [&](const QList<int>& one) { return one == unique && IsTarget(table, one); });
            if (target)
                return;
            if (table.uniques.contains(unique)) {
                for (const Model& one : model->get_Models(HF::TYPE_UNIQUE))
                    if (!one->IsMarkedDropped() && one->GetStringList(PROP_COLUMNS) == (one->IsJustCreated() ? QStringList{column.name} : QStringList{m_columns.at(column.id)->get_Name()}))
                        m_design->Drop(one);
                table.uniques.removeAll(unique);
            } else {
                const Model made{m_design->Create(model, HF::TYPE_UNIQUE, "u")};
                Set(made, PROP_COLUMNS, QStringList{column.name});
                table.uniques << unique;
            }
            return;
        }
        case 1: {
            const World::Check check{QStringLiteral("%1 > ") + QString::number(-m_maker.Below(1000000)), column.id};
            Note("new check", table);
            const Model made{m_design->Create(model, HF::TYPE_CHECK, m_maker.Chance(50) ? "ch" : "")};
            Set(made, PROP_CHECK_EXPRESSION, Text(table, check.expression, check.column));
            table.checks << check;
            return;
        }
        case 2: {
            if (isParent || !table.links.isEmpty() || model->IsPropertyChanged(PROP_KEY_COLUMNS))
                return;
            if (const World::Column& other = table.columns[m_maker.Below(int(table.columns.size()))];
                other.distinct && other.type == u"INTEGER" && !m_columns.at(other.id)->IsJustCreated()
                && other.id != column.id && !table.key.isEmpty()) {
                Note("primary key of two columns", table);
                table.key = {other.id, column.id};
                table.Get(other.id).nullable = false;
                table.columns.first().nullable = false;
                return Set(model, PROP_KEY_COLUMNS, Names(table, table.key));
            }
            Note("primary key", table);
            table.key = table.key.isEmpty() ? QList<int>{column.id} : QList<int>();
            if (!table.key.isEmpty())
                table.columns.first().nullable = false;
            return Set(model, PROP_KEY_COLUMNS, Names(table, table.key));
        }
        case 3: {
            World::Column made = m_maker.NewGenerated(m_world, table);
            Note("new generated column", table);
            const Model method{m_design->Create(model, HF::TYPE_METHOD, made.name)};
            Set(method, PROP_TYPE_NAME, made.type);
            Set(method, PROP_METHOD_EXPRESSION, Text(table, made.expression, made.source));
            m_columns.emplace(made.id, method);
            table.columns << made;
            return;
        }
        case 4: return ChangeCheck(table);
        case 5: return ChangeUnique(table);
        default:
            if (table.links.isEmpty() || m_maker.Chance(30))
                return NewLink(table);
            const World::ForeignKey link = table.links[m_maker.Below(int(table.links.size()))];
            for (const Model& one : m_design->LinksOf(model))
                if (!one->IsJustCreated() && one->GetStringList(PROP_LINK_COLUMNS) == OldNames(link.columns)
                    && one->GetString(PROP_LINK_TABLE) == model->get_Name()) {
                    Note("dropped link", table);
                    m_design->Drop(one);
                    table.links.removeIf([&](const World::ForeignKey& known) { return known.columns == link.columns; });
                    return;
                }
        }
    }

    QStringList OldNames(const QList<int>& columns) const
    {
        QStringList names;
        for (const int column : columns)
            names << m_columns.at(column)->get_Name();
        return names;
    }
    bool IsTarget(const World::Table& table, const QList<int>& columns) const
    {
        for (const auto& [id, other] : m_world.tables)
            for (const World::ForeignKey& link : other.links)
                if (link.parent == table.id && link.parentColumns == columns)
                    return true;
        return false;
    }

    static QString Bare(const QString& expression)
    {
        return QString(expression).remove(QRegularExpression(QStringLiteral("[\\s()\"]")));
    }
    void ChangeCheck(World::Table& table)
    {
        if (table.checks.isEmpty())
            return;
        const qsizetype at = m_maker.Below(int(table.checks.size()));
        const World::Check check = table.checks[at];
        std::vector<Model> found;
        for (const Model& one : m_tables.at(table.id)->get_Models(HF::TYPE_CHECK))
            if (!one->IsJustCreated() && !one->HasOwnChanges()
                && Bare(one->GetString(PROP_CHECK_EXPRESSION))
                       == Bare(check.expression.arg(Ident(m_columns.at(check.column)->get_Name()))))
                found.push_back(one);
        if (found.size() != 1)
            return;
        if (m_maker.Chance(50)) {
            Note("dropped check", table);
            table.checks.removeAt(at);
            return m_design->Drop(found[0]);
        }
        Note("other check", table);
        table.checks[at].expression = QStringLiteral("%1 IS NOT NULL OR 1 = ") + QString::number(m_maker.Below(1000000));
        Set(found[0], PROP_CHECK_EXPRESSION, Text(table, table.checks[at].expression, check.column));
    }
    void ChangeUnique(World::Table& table)
    {
        if (table.uniques.isEmpty())
            return;
        const qsizetype at = m_maker.Below(int(table.uniques.size()));
        const QList<int> unique = table.uniques[at];
        if (IsTarget(table, unique) || table.uniques.count(unique) > 1)
            return;
        for (const Model& one : m_tables.at(table.id)->get_Models(HF::TYPE_UNIQUE)) {
            if (one->IsJustCreated() || one->HasOwnChanges() || one->GetStringList(PROP_COLUMNS) != OldNames(unique))
                continue;
            if (m_maker.Chance(50)) {
                Note("dropped unique", table);
                table.uniques.removeAt(at);
                return m_design->Drop(one);
            }
            const QList<int> both{unique.first(), table.columns.first().id};
            if (both[0] == both[1] || table.uniques.contains(both))
                return;
            Note("other columns of unique", table);
            table.uniques[at] = both;
            return Set(one, PROP_COLUMNS, Names(table, both));
        }
    }

    void NewLink(World::Table& table)
    {
        for (const auto& [id, parent] : m_world.tables) {
            const Model& parentModel = m_tables.at(id);
            const QList<int> number{parent.columns.first().id};
            // A key on the row numbers, which were there before this edit; at most one to a table.
            if (id == table.id || parentModel->IsJustCreated() || parent.schema != table.schema
                || parent.temporary != table.temporary || parent.key != number
                || parent.links.size() + m_world.Children(table.id).size() > 0)
                continue;
            const QList<int> columns{table.columns.first().id};
            if (std::any_of(table.links.begin(), table.links.end(),
                            [&](const World::ForeignKey& link) { return link.columns == columns; }))
                return;
            const QString wanted = parentModel->GetString(PROP_NAME);
            const Model link{m_design->Create(m_tables.at(table.id), HF::TYPE_LINK, "fk")};
            Set(link, PROP_LINK_COLUMNS, Names(table, columns));
            Set(link, PROP_LINK_PARENT_TABLE, parentModel->get_Name());
            Set(link, PROP_KEY_COLUMNS, QStringList{parent.columns.first().name});
            table.links << World::ForeignKey{columns, id, number};
            Note("new link to " + wanted, table);
            return;
        }
    }

    void DropTable(const World::Table& table)
    {
        if (m_world.tables.size() < 2 || !m_world.Children(table.id).isEmpty())
            return;
        Note("dropped", table);
        m_design->Drop(m_tables.at(table.id));
        m_world.tables.erase(table.id);
    }

    void NewTable(const World::Table& beside)
    {
        World::Table table = m_maker.NewTable(m_world, beside.schema, beside.temporary);
        Note("created " + beside.schema, table);
        const Model schema = Child(m_design->get_Root(), HF::TYPE_SCHEMA, table.schema);
        const Model made{m_design->Create(schema, HF::TYPE_TABLE, table.name)};
        Set(made, PROP_COMMENT, table.comment);
        if (table.temporary)
            Set(made, PROP_TEMPORARY, true);
        table.hasRows = false;
        m_tables.emplace(table.id, made);
        for (World::Column& column : table.columns) {
            column.collation.clear();
            const Model one{m_design->Create(made, column.IsGenerated() ? HF::TYPE_METHOD : HF::TYPE_FIELD, column.name)};
            Set(one, PROP_TYPE_NAME, column.type);
            Set(one, PROP_COMMENT, column.comment);
            if (column.IsGenerated()) {
                Set(one, PROP_METHOD_EXPRESSION, Text(table, column.expression, column.source));
            } else {
                Set(one, PROP_DEFAULT, UserText(column.defaultText));
                Set(one, PROP_NULLABLE, column.nullable);
            }
            m_columns.emplace(column.id, one);
        }
        Set(made, PROP_KEY_COLUMNS, Names(table, table.key));
        for (const QList<int>& unique : table.uniques)
            Set(Model(m_design->Create(made, HF::TYPE_UNIQUE, "")), PROP_COLUMNS, Names(table, unique));
        for (const World::Check& check : table.checks)
            Set(Model(m_design->Create(made, HF::TYPE_CHECK, "")), PROP_CHECK_EXPRESSION,
                Text(table, check.expression, check.column));
        table.indexes.removeIf([](const World::Index& index) { return !index.expression.isEmpty(); });
        for (const World::Index& index : table.indexes) {
            const Model one{m_design->Create(made, HF::TYPE_INDEX, index.name)};
            Set(one, PROP_COLUMNS, Names(table, index.columns));
            Set(one, PROP_UNIQUE, index.unique);
            Set(one, PROP_COMMENT, index.comment);
        }
        m_world.tables.emplace(table.id, table);
    }

    void One(World::Table& table)
    {
        if (m_tables.at(table.id)->IsJustCreated())
            return;
        if (m_maker.Chance(5))
            return DropTable(table);
        if (m_maker.Chance(5))
            return NewTable(table);
        switch (m_maker.Below(8)) {
        case 0: return AddColumn(table);
        case 1:
        case 2:
        case 3: return ChangeColumn(table, table.columns[m_maker.Below(int(table.columns.size()))]);
        case 4: return ChangeIndex(table);
        case 5:
        case 6: return ChangeConstraint(table);
        default:
            if (!m_maker.MayComment(table))
                return;
            table.comment = QStringLiteral("new 'comment'");
            Note("comment", table);
            return Set(m_tables.at(table.id), PROP_COMMENT, table.comment);
        }
    }

    support::WorldMaker& m_maker;
    World& m_world;
    rc::Ref<HF::LDesign> m_design;
    std::map<int, Model> m_tables;
    std::map<int, Model> m_columns;
    QStringList m_done;
};

class RandomChanges : public support::ModelPlace
{
protected:
    /// The catalogue as text, without what only says how it came about.
    QString Catalog()
    {
        const char* const queries[] = {
            "SELECT schema_name, table_name, temporary, comment, list_sort(regexp_extract_all(sql, '[^ ,(]+ VARCHAR COLLATE "
            "[a-z]+')) FROM duckdb_tables() WHERE NOT internal ORDER BY 1, 2",
            "SELECT schema_name, table_name, column_name, data_type, is_nullable, replace(column_default, '\"', ''), comment FROM "
            "duckdb_columns() WHERE NOT internal ORDER BY 1, 2, 3",
            "SELECT schema_name, table_name, constraint_type, constraint_column_names, expression, referenced_table, "
            "referenced_column_names FROM duckdb_constraints() WHERE constraint_type <> 'NOT NULL' ORDER BY ALL",
            "SELECT schema_name, table_name, index_name, is_unique, comment, sql FROM duckdb_indexes() ORDER BY 1, 2, 3",
        };
        QStringList texts;
        for (const char* query : queries)
            texts << Rows(QString::fromLatin1(query));
        return texts.join(QLatin1String("\n--\n"));
    }
    /// All rows of all tables, cells as text.
    QString AllRows(const World& world)
    {
        QStringList texts;
        for (const auto& [id, table] : world.tables) {
            QStringList cells;
            for (const World::Column& column : table.columns)
                cells << QStringLiteral("CAST(%1 AS VARCHAR)").arg(Ident(column.name));
            texts << Rows(QStringLiteral("SELECT %1 FROM %2 ORDER BY %3")
                              .arg(cells.join(QLatin1String(", ")), table.Qualified(), Ident(table.columns.first().name)));
        }
        return texts.join(QLatin1String("\n--\n"));
    }
    void Fresh(const World& world, bool rows)
    {
        CloseDatabase();
        const QString said = Run(world.Script(rows));
        ASSERT_EQ(said.toStdString(), "") << world.Script(rows).toStdString();
    }
    bool IsInTransaction()
    {
        const QString first = Rows("SELECT txid_current()");
        return Rows("SELECT txid_current()") == first;
    }
    /// A row that nobody refers to can go, in every table that others refer to; and all tables can.
    void ParentsLetGo(const World& world)
    {
        QStringList drops;
        std::set<int> dropped;
        const std::function<void(int)> drop = [&](int id) {
            if (!dropped.insert(id).second)
                return;
            for (const int child : world.Children(id))
                drop(child);
            drops << QLatin1String("DROP TABLE ") + world.tables.at(id).Qualified();
        };
        for (const auto& [id, table] : world.tables) {
            drop(id);
            QStringList free;
            for (const auto& [other, child] : world.tables)
                for (const World::ForeignKey& link : child.links) {
                    if (link.parent != id)
                        continue;
                    QStringList same;
                    for (qsizetype i = 0; i < link.columns.size(); ++i)
                        same << QStringLiteral("c.%1 = p.%2").arg(Ident(child.Get(link.columns[i]).name),
                                                                 Ident(table.Get(link.parentColumns[i]).name));
                    free << QStringLiteral("NOT EXISTS (FROM %1 c WHERE %2)").arg(child.Qualified(), same.join(" AND "));
                }
            if (free.isEmpty())
                continue;
            EXPECT_EQ(Run(QStringLiteral("BEGIN; DELETE FROM %1 WHERE %2 IN (SELECT p.%2 FROM %1 p WHERE %3); ROLLBACK")
                                  .arg(table.Qualified(), Ident(table.columns.first().name), free.join(" AND "))).toStdString(), "");
        }
        EXPECT_EQ(Run("BEGIN; " + drops.join("; ") + "; ROLLBACK").toStdString(), "");
    }
    /// Plain columns stand in the order that was asked for.
    void ColumnsStandInOrder(const World& world)
    {
        for (const auto& [id, table] : world.tables) {
            QStringList wanted;
            QStringList there;
            for (const World::Column& column : table.columns)
                if (!column.IsGenerated())
                    wanted << column.name;
            for (const QString& name : Rows(QStringLiteral("SELECT hex(column_name) FROM duckdb_columns() WHERE table_name = %1 AND schema_name = %2 "
                                                           "AND (database_name = 'temp') = %3 ORDER BY column_index")
                                                .arg(support::Literal(table.name), support::Literal(table.temporary ? "main" : table.schema),
                                                     table.temporary ? "true" : "false")).split(u'\n'))
                if (const QString plain = QString::fromUtf8(QByteArray::fromHex(name.toUtf8())); wanted.contains(plain))
                    there << plain;
            EXPECT_EQ(there, wanted);
        }
    }

    void OneRun(unsigned seed, bool failures)
    {
        SCOPED_TRACE(seed);
        support::WorldMaker maker(seed, EngineVersionNumber() >= 10500);
        World world = maker.Make();
        Fresh(world, true);
        if (HasFatalFailure())
            return;
        const World before = world;
        const auto design = rc::make<HF::LDesign>(Database());
        QStringList done;
        {
            Editor editor(maker, world, design);
            done = editor.Change();
        }
        const HF::LDesignPlan plan = design->get_Plan();
        const QString story = done.join("\n") + "\n\n" + before.Script(true) + "\n" + plan.statements.join(";\n");
        if (plan.statements.isEmpty() && plan.problems.isEmpty())
            return;
        ASSERT_EQ(plan.problems.join("\n").toStdString(), "") << story.toStdString();
        const QString catalogBefore = Catalog();
        const QString rowsBefore = AllRows(before);
        if (failures)
            for (qsizetype i = 0; i < plan.statements.size(); ++i) {
                qsizetype at = 0;
                const HF::LDesignReport report = design->Apply([&](const QString&) {
                    if (at++ < i)
                        return true;
                    Run("SELECT error('forced')"); // also aborts the transaction
                    return false;
                });
                EXPECT_FALSE(report.success);
                EXPECT_EQ(Catalog(), catalogBefore) << i << "\n" << story.toStdString();
                EXPECT_EQ(AllRows(before), rowsBefore) << i << "\n" << story.toStdString();
                EXPECT_FALSE(IsInTransaction()) << story.toStdString();
            }
        const HF::LDesignReport report = design->Apply();
        if (!report.success && failures && Expected(report.error)) {
            EXPECT_EQ(Catalog(), catalogBefore) << story.toStdString();
            EXPECT_FALSE(IsInTransaction());
            ++refused;
            return;
        }
        ASSERT_TRUE(report.success) << report.error.toStdString() << "\n" << story.toStdString();
        EXPECT_FALSE(IsInTransaction());
        const QString catalogAfter = Catalog();
        const QString rowsAfter = AllRows(world);
        ParentsLetGo(world);
        ColumnsStandInOrder(world);
        Fresh(world, true);
        EXPECT_EQ(catalogAfter.toStdString(), Catalog().toStdString()) << story.toStdString();
        EXPECT_EQ(rowsAfter.toStdString(), AllRows(world).toStdString()) << story.toStdString();
        ++applied;
    }
    /// After a rollback the engine still knows the unique index that took the name of a plain one,
    /// as long as the database is open.
    static bool Expected(const QString& error) { return error.contains("An index with the name"); }

    int applied = 0;
    int refused = 0;
};

TEST_F(RandomChanges, MakeWhatWasAskedForOrNothing)
{
    const int runs = qEnvironmentVariableIsSet("ORBIS_RANDOM_RUNS") ? qEnvironmentVariableIntValue("ORBIS_RANDOM_RUNS") : 25;
    const int seed = qEnvironmentVariableIsSet("ORBIS_RANDOM_SEED") ? qEnvironmentVariableIntValue("ORBIS_RANDOM_SEED") : 1;
    for (int i = 0; i < runs && !HasFailure(); ++i)
        OneRun(unsigned(seed + i), i % 10 == 0);
    RecordProperty("applied", applied);
    RecordProperty("refused", refused);
    EXPECT_GT(applied, runs / 2);
}

} // namespace
