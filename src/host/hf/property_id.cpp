// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/property_id.h"

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
    {PROP_FIELD_KEY_FLAG, "Key"},
    {PROP_COLLATION, "Collation"},
    {PROP_COMMENT, "Comment"},
    {PROP_COLUMNS, "Columns"},
    {PROP_OBJECT_ID, "Object ID"},
    {PROP_NAME, "Name"},
    {PROP_KEY_COLUMNS, "Key columns"},
    {PROP_SQL_TEXT, "SQL"},
    {PROP_SCHEMA_NAME, "Schema"},
    {PROP_TEMPORARY, "Temporary"},
    {PROP_DEFINITION, "Definition"},
    {PROP_TYPE_NAME, "Type"},
    {PROP_UNIQUE, "Unique"},
    {PROP_ARRAY_SIZE, "Array size"},
    {PROP_ELEMENT_TYPE, "Element type"},
    {PROP_CHECK_EXPRESSION, "Expression"},
    {PROP_SEARCH_PATH, "Default schemas"},
    {PROP_PATH, "Path"},
    {PROP_COUNT_FUNCTIONS, "Functions"},
    {PROP_COUNT_LINKS, "Links"},
    {PROP_COUNT_SEQUENCES, "Sequences"},
    {PROP_COUNT_SCHEMAS, "Schemas"},
    {PROP_COUNT_TABLES, "Tables"},
    {PROP_COUNT_VIEWS, "Views"},
    {PROP_DEFAULT, "Default"},
    {PROP_TYPE_ARGUMENTS, "Type arguments"},
    {PROP_INDEXED, "Indexed"},
    {PROP_NULLABLE, "Nullable"},
    {PROP_FIELD_POSITION, "Position"},
    {PROP_PRECISION, "Precision"},
    {PROP_SCALE, "Scale"},
    {PROP_FUNCTION_ARG_COUNT, "Argument count"},
    {PROP_FUNCTION_TYPE, "Function type"},
    {PROP_LINK_CARDINALITY, "Cardinality"},
    {PROP_LINK_COLUMNS, "Link columns"},
    {PROP_LINK_TABLE, "Link table"},
    {PROP_LINK_SCHEMA, "Link schema"},
    {PROP_LINK_PARENT_TABLE, "Parent table"},
    {PROP_LINK_PARENT_SCHEMA, "Parent schema"},
    {PROP_METHOD_EXPRESSION, "Generated as"},
    {PROP_SEQ_CYCLE, "Cycle"},
    {PROP_SEQ_LAST_VALUE, "Last value"},
    {PROP_SEQ_INCREMENT, "Increment"},
    {PROP_SEQ_MIN, "Minimum"},
    {PROP_SEQ_MAX, "Maximum"},
    {PROP_SEQ_START, "Start"},
    {PROP_COUNT_CHECKS, "Checks"},
    {PROP_COUNT_FIELDS, "Fields"},
    {PROP_COUNT_INDEXES, "Indexes"},
    {PROP_COUNT_METHODS, "Methods"},
    {PROP_RECORD_COUNT, "Records"},
    {PROP_COUNT_UNIQUES, "Uniques"},
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

} // namespace HF
