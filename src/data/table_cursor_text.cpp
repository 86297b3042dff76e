// SPDX-License-Identifier: GPL-3.0-or-later
// DuckDB's texts of a table cursor: select list, comparisons, set operations.
#include "data/queries.h"
#include "data/table_cursor.h"
#include "hf/database.h"
#include "hf/schema_item_list.h"
#include "hf/sql_text.h"
#include "hf/values.h"

#include <QRegularExpression>

using HF::I_LSqlValue;

namespace {

/// A type that keeps what the engine would round off when it casts the text: 1.6 is no row's INTEGER.
/// Empty for texts that it takes as they are.
QString WiderType(const QString& type, const QString& text)
{
    static const QRegularExpression whole(QStringLiteral(R"(^\s*[+-]?\d+\s*$)"));
    static const QRegularExpression decimal(QStringLiteral(R"(^\s*[+-]?\d*\.?(\d*)\s*$)"));
    static const QRegularExpression fine(QStringLiteral(R"(\.\d{7})"));
    static const QRegularExpression declared(QStringLiteral(R"(^DECIMAL\((\d+),\s*(\d+)\)$)"));
    if (const auto parts = declared.match(type); parts.hasMatch()) {
        const int width = parts.captured(1).toInt(), scale = parts.captured(2).toInt();
        const auto digits = decimal.match(text);
        if (width - scale >= 38 || (digits.hasMatch() && digits.captured(1).size() <= scale))
            return QString();
        return QStringLiteral("DECIMAL(38,%1)").arg(38 - (width - scale));
    }
    if (type == QLatin1String("DATE"))
        return text.contains(u':') ? QStringLiteral("TIMESTAMP") : QString();
    if (type == QLatin1String("TIMESTAMP_S") || type == QLatin1String("TIMESTAMP_MS"))
        return QStringLiteral("TIMESTAMP");
    if (type == QLatin1String("TIMESTAMP"))
        return text.contains(fine) ? QStringLiteral("TIMESTAMP_NS") : QString();
    return type.endsWith(QLatin1String("INT")) || type == QLatin1String("INTEGER") || type == QLatin1String("UINTEGER")
               ? (whole.match(text).hasMatch() ? QString() : QStringLiteral("DECIMAL(38,10)"))
               : QString();
}

/// Types whose text gives the very value back, so that the text is cast and an
/// index or the ranges of the blocks can be used. The others are compared as the
/// text that the grid shows.
bool IsCastable(const QString& engineType)
{
    if (engineType.contains(u'['))
        return false;
    static const QStringList beginnings = {
        QStringLiteral("DECIMAL("), QStringLiteral("HUGEINT"), QStringLiteral("UHUGEINT"), QStringLiteral("BIGNUM"),
        QStringLiteral("DATE"),     QStringLiteral("TIME"),    QStringLiteral("UUID"),     QStringLiteral("BOOLEAN"),
        QStringLiteral("TINYINT"),  QStringLiteral("SMALLINT"), QStringLiteral("INTEGER"), QStringLiteral("BIGINT"),
        QStringLiteral("UTINYINT"), QStringLiteral("USMALLINT"), QStringLiteral("UINTEGER"), QStringLiteral("UBIGINT"),
        QStringLiteral("FLOAT"),    QStringLiteral("DOUBLE")};
    for (const QString& beginning : beginnings)
        if (engineType.startsWith(beginning))
            return true;
    return false;
}

/// Values that reach the engine in the class of their column.
bool IsNative(const I_LSqlValue& value)
{
    return !dynamic_cast<const HF::LValueString*>(&value);
}

/// Whether the text is of a time when zones had offsets with seconds, which the
/// engine's text cuts to minutes.
bool HasOldOffset(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("^([0-9]+)-.*[+-][0-9]{2}:[0-9]{2}$"));
    const QRegularExpressionMatch match = pattern.match(text.trimmed());
    return match.hasMatch() && (text.contains(QLatin1String("(BC)")) || match.captured(1).toInt() < 1973);
}

/// Reads the time in the session's zone where that is what gives the very text.
QString OldTimeText(const QString& placeholder)
{
    const QString text = QStringLiteral("CAST(%1 AS VARCHAR)").arg(placeholder);
    const QString whole = QStringLiteral("CAST(%1 AS TIMESTAMPTZ)").arg(text);
    const QString local =
        QStringLiteral("TRY_CAST(regexp_replace(%1, '[+-][0-9:]+$', '') AS TIMESTAMPTZ)").arg(text);
    return QStringLiteral("CASE WHEN CAST(%2 AS VARCHAR) <> %1 AND CAST(%3 AS VARCHAR) = %1 THEN %3 ELSE %2 END")
        .arg(text, whole, local);
}

/// Name and type of each member of a union, from the text between the type's brackets.
QList<std::pair<QString, QString>> UnionMembers(const QString& arguments)
{
    QList<std::pair<QString, QString>> members;
    qsizetype start = 0, nameEnd = -1;
    int depth = 0;
    QChar quote;
    for (qsizetype at = 0; at <= arguments.size(); ++at) {
        const QChar c = at < arguments.size() ? arguments[at] : QChar(u',');
        if (!quote.isNull() && at < arguments.size()) {
            quote = c == quote ? QChar() : quote; // a doubled one opens the rest
            continue;
        }
        if (c == u'"' || c == u'\'')
            quote = c;
        depth += c == u'(' || c == u'[' ? 1 : c == u')' || c == u']' ? -1 : 0;
        if (c == u' ' && nameEnd < 0)
            nameEnd = at;
        if (c != u',' || depth > 0)
            continue;
        if (nameEnd > start)
            members.append({arguments.mid(start, nameEnd - start), arguments.mid(nameEnd, at - nameEnd).trimmed()});
        for (start = at + 1; start < arguments.size() && arguments[start] == u' ';)
            ++start;
        at = start - 1;
        nameEnd = -1;
    }
    return members;
}

/// The first member whose text is the one given: the engine would ask for a member
/// of type VARCHAR, and refuse without one. With `current`, a column of the row, the
/// member that stands there goes first.
QString UnionText(const QString& placeholder, const QString& arguments, const QString& current)
{
    const QString text = QStringLiteral("CAST(%1 AS VARCHAR)").arg(placeholder);
    const QString type = QStringLiteral("UNION(%1)").arg(arguments);
    QString preferred, others;
    for (const auto& [name, memberType] : UnionMembers(arguments)) {
        const QString value = QStringLiteral("TRY_CAST(%1 AS %2)").arg(text, memberType);
        const QString fits = QStringLiteral("CAST(%1 AS VARCHAR) = %2").arg(value, text);
        const QString result = QStringLiteral(" THEN CAST(union_value(%1 := %2) AS %3)").arg(name, value, type);
        others += QLatin1String(" WHEN ") + fits + result;
        QString tag = name;
        if (tag.startsWith(u'"') && tag.endsWith(u'"'))
            tag = tag.mid(1, tag.size() - 2).replace(QLatin1String("\"\""), QLatin1String("\""));
        if (!current.isEmpty())
            preferred += QStringLiteral(" WHEN union_tag(%1) = %2 AND ").arg(current, HF::QuoteText(tag)) + fits + result;
    }
    return QLatin1String("CASE") + preferred + others
           + QStringLiteral(" ELSE error('No member of the union takes the text ' || %1) END").arg(text);
}

} // namespace

QString orbDuckDB_TableCursor::PreviewExpression(const QString& name, bool quote, long limit) const
{
    const rc::Ptr<HF::I_LSchemaObject> source = get_Source();
    if (!source)
        return QString();
    return queries::Preview(quote ? HF::QuoteName(name, source) : name, limit);
}

QString orbDuckDB_TableCursor::SelectList(const rc::Ref<HF::I_LSchemaObject>& table, bool qualify, bool noPreview,
                                          const QString& prefix) const
{
    const QString before =
        qualify ? (prefix.isEmpty() ? table->get_NameForQuery(true) : prefix) + u'.' : QString();
    QStringList items;
    if (m_showRowId)
        items.append(before + (noPreview ? QLatin1String("RowID") : QLatin1String("RowID AS RowID")));
    const auto add = [&](int type) {
        for (const rc::Ref<HF::I_LSchemaObject>& item : table->get_ChildObjects(type).Force()) {
            const rc::Ptr<HF::I_LField> field = rc::cast<HF::I_LField>(item);
            if (!field)
                continue;
            const QString name = HF::QuoteName(field->get_Name(), table);
            if (type == HF::TYPE_FIELD && !noPreview && field->get_Type().Force() == HF::FIELD_BLOB
                && !KeyNames.contains(field->get_Name()))
                items.append(PreviewExpression(before + name, false, PreviewBytes) + QLatin1String(" AS ") + name);
            else
                items.append(before + name);
        }
    };
    add(HF::TYPE_FIELD);
    if (m_showMethods)
        add(HF::TYPE_METHOD);
    return items.join(QLatin1String(", "));
}

QString orbDuckDB_TableCursor::FieldNamesList() const
{
    QStringList names;
    for (qsizetype i = m_hasRowIdField ? 1 : 0; i < Fields.size(); ++i)
        names.append(Quote(Fields[i]->get_Name()));
    return names.join(QLatin1String(", "));
}

QString orbDuckDB_TableCursor::ComparedBind(const QString& name, const I_LSqlValue& value,
                                            const QString& placeholder) const
{
    EnsureTypes();
    const orbDuckDB_FieldBase* field = FindField(name);
    const QString quoted = Quote(name);
    const QString type = field ? field->get_EngineType() : QString();
    if (!field || IsNative(value) || type == QLatin1String("VARCHAR") || type == QLatin1String("BLOB"))
        return quoted + QLatin1String(" = ") + placeholder;
    // The engine's text of an old time leaves the seconds of its zone out: it tells
    // the row, and does not give the time back.
    if (IsCastable(type) && type != QLatin1String("TIMESTAMP WITH TIME ZONE")) {
        const QString equal = QStringLiteral("%1 = CAST(%2 AS %3)").arg(quoted, placeholder, type);
        const QString wider = WiderType(type, value.get_String());
        return wider.isEmpty() ? equal
                               : equal + QStringLiteral(" AND coalesce(TRY_CAST(%1 AS %2) = CAST(%1 AS %3), true)")
                                             .arg(placeholder, wider, type);
    }
    return QStringLiteral("CAST(%1 AS VARCHAR) = %2").arg(quoted, placeholder);
}

QString orbDuckDB_TableCursor::StoredBind(const QString& name, const I_LSqlValue& value,
                                          const QString& placeholder) const
{
    // The engine casts what it stores, but for two kinds of text that it reads otherwise than it writes.
    const orbDuckDB_FieldBase* field = value.get_IsNull() || IsNative(value) ? nullptr : FindField(name);
    const HF::ELFieldType type = field ? field->get_Type().Force() : HF::FIELD_UNKNOWN;
    if (type == HF::FIELD_TIMESTAMP_TZ && HasOldOffset(value.get_String()))
        return OldTimeText(placeholder);
    if (type == HF::FIELD_UNION)
        if (const rc::Ptr<HF::I_LField> own = SourceColumn(name))
            return UnionText(placeholder, own->GetString(PROP_TYPE_ARGUMENTS), QString());
    return placeholder;
}

QString orbDuckDB_TableCursor::AssignedBind(const QString& name, const I_LSqlValue& value,
                                            const QString& placeholder) const
{
    const orbDuckDB_FieldBase* field = value.get_IsNull() || IsNative(value) ? nullptr : FindField(name);
    if (field && field->get_Type().Force() == HF::FIELD_UNION)
        if (const rc::Ptr<HF::I_LField> own = SourceColumn(name))
            return UnionText(placeholder, own->GetString(PROP_TYPE_ARGUMENTS), Quote(name));
    return StoredBind(name, value, placeholder);
}

bool orbDuckDB_TableCursor::IsReadInPart(const QString& name, const I_LSqlValue& value) const
{
    const orbDuckDB_FieldBase* field = FindField(name);
    return field && field->get_Type().Force() == HF::FIELD_BLOB && !value.get_IsNull()
           && value.get_Length() == PreviewBytes && !KeyNames.contains(field->get_Name());
}

QString orbDuckDB_TableCursor::UnchangedCondition(const QString& name, const rc::Ref<I_LSqlValue>& value,
                                                  RcList<I_LSqlValue>& binds) const
{
    if (!IsReadInPart(name, *value))
        return LTableCursor::UnchangedCondition(name, value, binds);
    const QString placeholder = Placeholder(binds);
    binds.append(value);
    return PreviewExpression(name, true, PreviewBytes) + QLatin1String(" = ") + placeholder;
}

// Set operations

QString orbDuckDB_TableCursor::OperationQuery(const rc::Ref<HF::I_LSchemaObject>& table, HF::ELSetOperation operation,
                                              const QString& columns, const QString& first, const QString& second,
                                              unsigned& counter) const
{
    switch (static_cast<int>(operation)) {
    case HF::SET_INTERSECTION: return first + QLatin1String(" INTERSECT ") + second;
    case HF::SET_UNION: return first + QLatin1String(" UNION ") + second;
    case HF::SET_EXCEPT: return first + QLatin1String(" EXCEPT ") + second;
    case HF::SET_DIFFERENCE: return LTableCursor::OperationQuery(table, operation, columns, first, second, counter);
    default: return QString();
    }
}

QString orbDuckDB_TableCursor::OperationDifference(const rc::Ref<HF::I_LSchemaObject>&, const QString& first,
                                                   const QString& columns, const QString& second,
                                                   unsigned& counter) const
{
    // What stands in either, without what stands in both. The numbers keep nested
    // operations from using one alias twice.
    const QString text =
        QStringLiteral("SELECT DISTINCT %1 FROM ( %2 UNION %3 ) AS subQuery_%4 EXCEPT SELECT DISTINCT %1 FROM ( %2 ) "
                       "AS subQuery_%5 INNER JOIN ( %3 ) AS subQuery_%6 USING ( %1 )")
            .arg(columns, first, second, QString::number(counter + 1), QString::number(counter + 2),
                 QString::number(counter + 3));
    counter += 3;
    return text;
}

// Rows of other tables

rc::Ptr<HF::I_LTableCursor> orbDuckDB_TableCursor::get_LinkedRecords(const rc::Ref<HF::I_LSchemaObject>& table,
                                                                     int mode, HF::ELSetOperation operation,
                                                                     const rc::Ref<HF::I_LLink>& link)
{
    if (mode != HF::LINKED_TO_NONE)
        return LTableCursor::get_LinkedRecords(table, mode, operation, link);
    if (!get_Table())
        return nullptr;
    get_MarkedCount();
    const QString list = SelectList(table, false, true, QString());
    const QString join = Join_Query(table, link);
    const QString query = QLatin1String("SELECT DISTINCT ") + list + QLatin1String(" FROM ")
                          + table->get_NameForQuery(true) + QLatin1String(" EXCEPT ") + join + u' ';
    if (const rc::Ptr<HF::I_LTableCursor> cursor = CreateCursorFromQuery(query, QString(), table, {}, {}))
        return cursor;
    return CreateCursorFromQuery(QString(), QString(), table, {}, {});
}

rc::Ptr<HF::I_LTableCursor> orbDuckDB_TableCursor::CreateCursorFromQuery(const QString& query, const QString&,
                                                                         const rc::Ref<HF::I_LSchemaObject>& table,
                                                                         const RcList<I_LSqlValue>& binds,
                                                                         const RcList<HF::I_LField>&)
{
    const rc::Ptr<HF::I_LTable> own = rc::cast<HF::I_LTable>(table);
    if (!own || own->get_DatabaseEngine() != get_DatabaseEngine())
        return nullptr;
    const rc::Ref<orbDuckDB_TableCursor> cursor =
        Make(table, get_Mode(), m_rowIdWanted, true, get_IsReadOnly().Force());
    const rc::Ptr<HF::I_LDatabase> database = cursor->get_Database();
    if (query.isEmpty() || !database)
        return cursor;
    if (query == QLatin1String("*")) {
        cursor->AllMarked = true;
        return cursor;
    }
    cursor->RestrictTo(query, binds);
    cursor->m_restricted = true;
    if (!cursor->FillMarkedFromQuery(QLatin1String("SELECT ") + HF::JoinIdentifiers(cursor->KeyNames, database)
                                         + QLatin1String(" FROM (") + query + QLatin1String(") AS markedQuery"),
                                     binds))
        return nullptr;
    return cursor;
}
