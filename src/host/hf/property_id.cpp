// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/property_id.h"

#include <QCoreApplication>
#include <QHash>

#include <mutex>
#include <vector>

namespace HF {

namespace {

struct KnownName
{
    int id;
    const char* name;
};

constexpr KnownName KnownNames[] = {
    {PROP_FIELD_KEY_FLAG, QT_TRANSLATE_NOOP("QObject", "Key")},
    {PROP_COLLATION, QT_TRANSLATE_NOOP("QObject", "Collation")},
    {PROP_COMMENT, QT_TRANSLATE_NOOP("QObject", "Comment")},
    {PROP_COLUMNS, QT_TRANSLATE_NOOP("QObject", "Columns")},
    {PROP_OBJECT_ID, QT_TRANSLATE_NOOP("QObject", "Object ID")},
    {PROP_NAME, QT_TRANSLATE_NOOP("QObject", "Name")},
    {PROP_KEY_COLUMNS, QT_TRANSLATE_NOOP("QObject", "Key columns")},
    {PROP_SQL_TEXT, QT_TRANSLATE_NOOP("QObject", "SQL")},
    {PROP_SCHEMA_NAME, QT_TRANSLATE_NOOP("QObject", "Schema")},
    {PROP_TEMPORARY, QT_TRANSLATE_NOOP("QObject", "Temporary")},
    {PROP_DEFINITION, QT_TRANSLATE_NOOP("QObject", "Definition")},
    {PROP_TYPE_NAME, QT_TRANSLATE_NOOP("QObject", "Type")},
    {PROP_UNIQUE, QT_TRANSLATE_NOOP("QObject", "Unique")},
    {PROP_ARRAY_SIZE, QT_TRANSLATE_NOOP("QObject", "Array size")},
    {PROP_ELEMENT_TYPE, QT_TRANSLATE_NOOP("QObject", "Element type")},
    {PROP_CHECK_EXPRESSION, QT_TRANSLATE_NOOP("QObject", "Expression")},
    {PROP_SEARCH_PATH, QT_TRANSLATE_NOOP("QObject", "Default schemas")},
    {PROP_PATH, QT_TRANSLATE_NOOP("QObject", "Path")},
    {PROP_COUNT_FUNCTIONS, QT_TRANSLATE_NOOP("QObject", "Functions")},
    {PROP_COUNT_LINKS, QT_TRANSLATE_NOOP("QObject", "Links")},
    {PROP_COUNT_SEQUENCES, QT_TRANSLATE_NOOP("QObject", "Sequences")},
    {PROP_COUNT_SCHEMAS, QT_TRANSLATE_NOOP("QObject", "Schemas")},
    {PROP_COUNT_TABLES, QT_TRANSLATE_NOOP("QObject", "Tables")},
    {PROP_COUNT_VIEWS, QT_TRANSLATE_NOOP("QObject", "Views")},
    {PROP_DEFAULT, QT_TRANSLATE_NOOP("QObject", "Default")},
    {PROP_TYPE_ARGUMENTS, QT_TRANSLATE_NOOP("QObject", "Type arguments")},
    {PROP_INDEXED, QT_TRANSLATE_NOOP("QObject", "Indexed")},
    {PROP_NULLABLE, QT_TRANSLATE_NOOP("QObject", "Nullable")},
    {PROP_FIELD_POSITION, QT_TRANSLATE_NOOP("QObject", "Position")},
    {PROP_PRECISION, QT_TRANSLATE_NOOP("QObject", "Precision")},
    {PROP_SCALE, QT_TRANSLATE_NOOP("QObject", "Scale")},
    {PROP_FUNCTION_ARG_COUNT, QT_TRANSLATE_NOOP("QObject", "Argument count")},
    {PROP_FUNCTION_TYPE, QT_TRANSLATE_NOOP("QObject", "Function type")},
    {PROP_LINK_CARDINALITY, QT_TRANSLATE_NOOP("QObject", "Cardinality")},
    {PROP_LINK_COLUMNS, QT_TRANSLATE_NOOP("QObject", "Link columns")},
    {PROP_LINK_TABLE, QT_TRANSLATE_NOOP("QObject", "Link table")},
    {PROP_LINK_SCHEMA, QT_TRANSLATE_NOOP("QObject", "Link schema")},
    {PROP_LINK_PARENT_TABLE, QT_TRANSLATE_NOOP("QObject", "Parent table")},
    {PROP_LINK_PARENT_SCHEMA, QT_TRANSLATE_NOOP("QObject", "Parent schema")},
    {PROP_METHOD_EXPRESSION, QT_TRANSLATE_NOOP("QObject", "Generated as")},
    {PROP_SEQ_CYCLE, QT_TRANSLATE_NOOP("QObject", "Cycle")},
    {PROP_SEQ_LAST_VALUE, QT_TRANSLATE_NOOP("QObject", "Last value")},
    {PROP_SEQ_INCREMENT, QT_TRANSLATE_NOOP("QObject", "Increment")},
    {PROP_SEQ_MIN, QT_TRANSLATE_NOOP("QObject", "Minimum")},
    {PROP_SEQ_MAX, QT_TRANSLATE_NOOP("QObject", "Maximum")},
    {PROP_SEQ_START, QT_TRANSLATE_NOOP("QObject", "Start")},
    {PROP_COUNT_CHECKS, QT_TRANSLATE_NOOP("QObject", "Checks")},
    {PROP_COUNT_FIELDS, QT_TRANSLATE_NOOP("QObject", "Fields")},
    {PROP_COUNT_INDEXES, QT_TRANSLATE_NOOP("QObject", "Indexes")},
    {PROP_COUNT_METHODS, QT_TRANSLATE_NOOP("QObject", "Methods")},
    {PROP_RECORD_COUNT, QT_TRANSLATE_NOOP("QObject", "Records")},
    {PROP_COUNT_UNIQUES, QT_TRANSLATE_NOOP("QObject", "Uniques")},
};

constexpr int FirstMadeId = 100000;

/// Names and categories of the numbers that were made, by number - FirstMadeId.
struct MadeIds
{
    std::mutex mutex;
    std::vector<std::pair<QByteArray, QByteArray>> list;
};

/// Numbers are made by initialisers of other libraries, in any order.
MadeIds& Made()
{
    static MadeIds made;
    return made;
}

} // namespace

int LPropertyID::CreateID(const char* name, const char* category)
{
    MadeIds& made = Made();
    const std::pair<QByteArray, QByteArray> entry{name, category};
    std::lock_guard guard(made.mutex);
    for (std::size_t i = 0; i < made.list.size(); ++i)
        if (made.list[i] == entry)
            return FirstMadeId + static_cast<int>(i);
    made.list.push_back(entry);
    return FirstMadeId + static_cast<int>(made.list.size()) - 1;
}

QString LPropertyID::GetPropertyName(int id)
{
    for (const KnownName& known : KnownNames)
        if (known.id == id)
            return QString::fromLatin1(known.name);
    if (id >= FirstMadeId) {
        MadeIds& made = Made();
        std::lock_guard guard(made.mutex);
        if (const auto index = static_cast<std::size_t>(id - FirstMadeId); index < made.list.size())
            return QString::fromUtf8(made.list[index].first);
    }
    return QStringLiteral("Property %1").arg(id);
}

QString LPropertyID::GetPropertyTitle(int id)
{
    return QCoreApplication::translate("QObject", GetPropertyName(id).toUtf8().constData());
}

} // namespace HF
