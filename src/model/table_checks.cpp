// SPDX-License-Identifier: GPL-3.0-or-later
// What stands against the changes of a table, told before anything runs.
#include "hf/sql_text.h"
#include "model/sql_tokens.h"
#include "model/table_changes.h"
#include "model/text_helpers.h"

#include <QObject>
#include <QSet>

namespace {

using Model = rc::Ref<HF::LModelObject>;

bool SameName(const QString& one, const QString& other)
{
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

/// Where names of columns stand in what is to be, and may be wrong.
class ColumnUses
{
public:
    ColumnUses(const HF::LModelObject& table, QStringList& problems) : m_table(table.get_Name()), m_problems(problems)
    {
        for (const int type : {HF::TYPE_FIELD, HF::TYPE_METHOD})
            for (const Model& column : table.get_Models(type)) {
                if (column->IsMarkedDropped())
                    m_gone.append(column->get_Name());
                else
                    m_there << column->GetString(PROP_NAME).toLower() << column->get_Name().toLower();
            }
        m_gone.removeIf([&](const QString& name) { return m_there.contains(name.toLower()); });
    }

    void Names(const QString& user, const QStringList& names)
    {
        for (const QString& name : names)
            if (!m_there.contains(name.toLower()))
                m_problems.append(
                    QObject::tr("%1 of the table \"%2\" names the column \"%3\", which is not there any more.")
                        .arg(user, m_table, name));
    }
    void Expression(const QString& user, const QString& text)
    {
        for (const QString& name : m_gone)
            if (SqlTokens::Mentions(text, name))
                Names(user, {name});
    }
    const QStringList& Gone() const { return m_gone; }

private:
    QString m_table;
    QStringList& m_problems;
    QSet<QString> m_there;
    QStringList m_gone;
};

void CheckNames(const HF::LModelObject& table, QStringList& problems)
{
    QSet<QString> names;
    bool hasPlain = false;
    for (const int type : {HF::TYPE_FIELD, HF::TYPE_METHOD})
        for (const Model& column : table.get_Models(type)) {
            if (column->IsMarkedDropped())
                continue;
            hasPlain = hasPlain || type == HF::TYPE_FIELD;
            const QString name = column->GetString(PROP_NAME);
            if (name.isEmpty())
                problems.append(QObject::tr("A column of the table \"%1\" has no name.").arg(table.get_Name()));
            else if (names.contains(name.toLower()))
                problems.append(QObject::tr("The table \"%1\" would have two columns called \"%2\".")
                                    .arg(table.get_Name(), name));
            names.insert(name.toLower());
        }
    if (!hasPlain)
        problems.append(QObject::tr("The table \"%1\" needs a column that is not generated.").arg(table.get_Name()));
}

/// The engine's text of the table as it is now; null when it cannot be told.
std::optional<QString> TextNow(const HF::LModelObject& table)
{
    const QString schema = table.GetString(PROP_SCHEMA_NAME);
    return HF::EvaluateSQL(table.get_Database(),
                           QStringLiteral("SELECT sql FROM duckdb_tables() WHERE table_name = %1 AND schema_name = %2 AND "
                                          "table_oid = %3 AND database_name IN ( current_catalog(), 'temp' )")
                               .arg(QuoteStringLiteral(table.get_Name()), QuoteStringLiteral(schema))
                               .arg(table.GetLong(PROP_OBJECT_ID)));
}

} // namespace

QStringList TableChangeProblems(const rc::Ref<const HF::I_LModelObject>& object)
{
    QStringList problems;
    const auto* const table = dynamic_cast<const HF::LModelObject*>(object.get());
    if (!table || !table->get_ParentModel())
        return problems;
    const QString name = table->get_Name();
    if (!table->IsJustCreated()) {
        // What was read when the edit began is what the statements are made of.
        const std::optional<QString> now = TextNow(*table);
        if (!now || *now != table->GetString(PROP_SQL_TEXT))
            problems.append(QObject::tr("The table \"%1\" was changed meanwhile; read it again.").arg(name));
        if (const QString unread = UnreadParts(*table); !unread.isEmpty())
            problems.append(unread);
    }
    const HF::LModelObject& schema = *table->get_ParentModel();
    if (table->IsMarkedDropped()) {
        for (const Model& link : schema.get_Models(HF::TYPE_LINK)) {
            const QString child = link->GetString(PROP_LINK_TABLE);
            const auto childTable = schema.get_Model(HF::TYPE_TABLE, child);
            if (!link->IsMarkedDropped() && SameName(link->GetString(PROP_LINK_PARENT_TABLE), name)
                && !SameName(child, name) && !(childTable && childTable->IsMarkedDropped()))
                problems.append(QObject::tr("The table \"%1\" is referenced by \"%2\"; drop that link first.")
                                    .arg(name, child));
        }
        return problems;
    }
    if (table->IsPropertyChanged(PROP_TEMPORARY))
        problems.append(
            QObject::tr("The engine cannot make the table \"%1\" temporary or lasting afterwards.").arg(name));
    CheckNames(*table, problems);
    ColumnUses uses(*table, problems);
    uses.Names(QObject::tr("The primary key"), table->GetStringList(PROP_KEY_COLUMNS));
    for (const Model& unique : table->get_Models(HF::TYPE_UNIQUE))
        if (!unique->IsMarkedDropped())
            uses.Names(QObject::tr("A unique"), unique->GetStringList(PROP_COLUMNS));
    for (const Model& index : table->get_Models(HF::TYPE_INDEX))
        if (!index->IsMarkedDropped())
            uses.Expression(QObject::tr("The index \"%1\"").arg(index->GetString(PROP_NAME)),
                            index->GetStringList(PROP_COLUMNS).join(QLatin1String(" , ")));
    for (const Model& check : table->get_Models(HF::TYPE_CHECK))
        if (!check->IsMarkedDropped())
            uses.Expression(QObject::tr("A check"), check->GetString(PROP_CHECK_EXPRESSION));
    for (const Model& method : table->get_Models(HF::TYPE_METHOD))
        if (!method->IsMarkedDropped())
            uses.Expression(QObject::tr("The generated column \"%1\"").arg(method->GetString(PROP_NAME)),
                            method->GetString(PROP_METHOD_EXPRESSION));
    for (const Model& link : schema.get_Models(HF::TYPE_LINK)) {
        if (link->IsMarkedDropped())
            continue;
        const bool own = SameName(link->GetString(PROP_LINK_TABLE), name);
        const bool toThis = SameName(link->GetString(PROP_LINK_PARENT_TABLE), name);
        if (own)
            uses.Names(QObject::tr("The link \"%1\"").arg(link->get_Name()), link->GetStringList(PROP_LINK_COLUMNS));
        if (toThis)
            uses.Names(QObject::tr("The link \"%1\"").arg(link->get_Name()), link->GetStringList(PROP_KEY_COLUMNS));
    }
    return problems;
}

QStringList TableChangeWarnings(const rc::Ref<const HF::I_LModelObject>& object)
{
    QStringList warnings;
    const auto* const table = dynamic_cast<const HF::LModelObject*>(object.get());
    if (!table || table->IsJustCreated() || !table->get_ParentModel())
        return warnings;
    const QString name = table->get_Name();
    const auto rows = [&] {
        return HF::EvaluateSQL(table->get_Database(), QLatin1String("SELECT count(*) FROM ")
                                                          + QualifiedName(SchemaNameOf(object), name))
            .value_or(QStringLiteral("?"));
    };
    if (table->IsMarkedDropped())
        return {QObject::tr("Dropping the table \"%1\" loses its rows: %2").arg(name, rows())};
    QStringList lost;
    QStringList converted;
    bool anyStays = false;
    for (const Model& column : table->get_Models(HF::TYPE_FIELD)) {
        anyStays = anyStays || !(column->IsMarkedDropped() || column->IsJustCreated());
        if (column->IsMarkedDropped())
            lost.append(column->get_Name());
        else if (!column->IsJustCreated() && ChangesType(*column))
            converted.append(column->get_Name());
    }
    if (!anyStays)
        warnings.append(QObject::tr("No column of \"%1\" stays: its rows may be lost: %2").arg(name, rows()));
    if (!lost.isEmpty())
        warnings.append(
            QObject::tr("The values of these columns of \"%1\" are lost: %2").arg(name, lost.join(QLatin1String(", "))));
    if (!converted.isEmpty())
        warnings.append(QObject::tr("The values of these columns of \"%1\" are converted to another type: %2")
                            .arg(name, converted.join(QLatin1String(", "))));
    return warnings;
}
