// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/list_infos.h"

#include "catalog/queries.h"
#include "engine/engine_version.h"

namespace {

using Owner = rc::Ref<HF::I_LSchemaObject>;

/// Catalogue that holds a table or view, as an SQL expression.
QString CatalogOf(const Owner& owner)
{
    // Asked first: the engine calls its own views temporary.
    const QString schema = owner->GetString(PROP_SCHEMA_NAME);
    if (EngineVersionNumber() >= 10200 && (schema == u"information_schema" || schema == u"pg_catalog"))
        return QStringLiteral("'system'");
    return owner->GetBool(PROP_TEMPORARY) ? QStringLiteral("'temp'") : QStringLiteral("current_catalog()");
}

template <const char* Old, const char* New>
QString QueryFor(const Owner& owner)
{
    if (EngineVersionNumber() < 10100)
        return QLatin1String(Old);
    QString text = QString::fromLatin1(New);
    if (text.contains(u"$CATALOG"))
        text.replace(QLatin1String("$CATALOG"), CatalogOf(owner));
    return text;
}

HF::LSchemaItemListInfo Info(HF::LSchemaItemListInfo::Factory factory, const char* nameColumn, const char* icon,
                             HF::ELObjectType type, const char* word, int countProperty, const char* query,
                             QString (*queryFor)(const Owner&) = nullptr)
{
    return {factory, QLatin1String(nameColumn), QLatin1String(icon), type, QLatin1String(word), countProperty,
            QString::fromLatin1(query), queryFor};
}

} // namespace

namespace ListInfos {

using namespace Queries;

const HF::LSchemaItemListInfo Schemas =
    Info(MakeSchema, "schema_name", ":/icons/schema.svg", HF::TYPE_SCHEMA, "schema", PROP_COUNT_SCHEMAS, Queries::Schemas,
         QueryFor<Queries::Schemas, SchemasSince101>);
const HF::LSchemaItemListInfo Functions =
    Info(MakeFunction, "function_name", ":/icons/procedure.svg", HF::TYPE_FUNCTION, "function", PROP_COUNT_FUNCTIONS,
         Queries::Functions, QueryFor<Queries::Functions, FunctionsSince101>);
const HF::LSchemaItemListInfo LinksOfSchema =
    Info(MakeLink, "constraint_name", ":/weft/icons/link2.svg", HF::TYPE_LINK, "link", PROP_COUNT_LINKS, Links,
         QueryFor<Links, LinksSince101>);
const HF::LSchemaItemListInfo Tables =
    Info(MakeTable, "table_name", ":/weft/icons/table.svg", HF::TYPE_TABLE, "table", PROP_COUNT_TABLES, Queries::Tables,
         QueryFor<Queries::Tables, TablesSince101>);
const HF::LSchemaItemListInfo Views =
    Info(MakeView, "view_name", ":/weft/icons/view.svg", HF::TYPE_VIEW, "view", PROP_COUNT_VIEWS, Queries::Views,
         QueryFor<Queries::Views, ViewsSince101>);
const HF::LSchemaItemListInfo Sequences = Info(MakeSequence, "sequence_name", ":/icons/sequence.svg", HF::TYPE_SEQUENCE,
                                               "sequence", PROP_COUNT_SEQUENCES, Queries::Sequences);
const HF::LSchemaItemListInfo Checks =
    Info(MakeCheck, "constraint_name", ":/icons/check.svg", HF::TYPE_CHECK, "check", PROP_COUNT_CHECKS, Queries::Checks,
         QueryFor<Queries::Checks, ChecksSince101>);
const HF::LSchemaItemListInfo FieldsOfTable =
    Info(MakeField, "column_name", ":/weft/icons/field.svg", HF::TYPE_FIELD, "field", PROP_COUNT_FIELDS,
         Queries::FieldsOfTable, QueryFor<Queries::FieldsOfTable, FieldsOfTableSince101>);
const HF::LSchemaItemListInfo Indexes =
    Info(MakeIndex, "index_name", ":/weft/icons/index.svg", HF::TYPE_INDEX, "index", PROP_COUNT_INDEXES,
         Queries::Indexes, QueryFor<Queries::Indexes, IndexesSince101>);
const HF::LSchemaItemListInfo LinksOfTable =
    Info(nullptr, "name", ":/weft/icons/link2.svg", HF::TYPE_LINK, "link", PROP_COUNT_LINKS, "");
const HF::LSchemaItemListInfo Methods =
    Info(MakeMethod, "column_name", ":/icons/field-method.svg", HF::TYPE_METHOD, "method", PROP_COUNT_METHODS,
         Queries::Methods, QueryFor<Queries::Methods, MethodsSince101>);
const HF::LSchemaItemListInfo Uniques =
    Info(MakeUnique, "constraint_name", ":/icons/unique.svg", HF::TYPE_UNIQUE, "unique", PROP_COUNT_UNIQUES,
         Queries::Uniques, QueryFor<Queries::Uniques, UniquesSince101>);
const HF::LSchemaItemListInfo FieldsOfView =
    Info(MakeField, "column_name", ":/weft/icons/field.svg", HF::TYPE_FIELD, "field", PROP_COUNT_FIELDS,
         Queries::FieldsOfView, QueryFor<Queries::FieldsOfView, FieldsOfViewSince101>);

} // namespace ListInfos
