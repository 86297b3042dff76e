// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/function.h"

#include "catalog/list_infos.h"
#include "engine/engine_version.h"

#include <QCoreApplication>

const int PROP_FUNCTION_ARGUMENTS =
    HF::LPropertyID::CreateID(QT_TRANSLATE_NOOP("QObject", "Argument Names"), QT_TRANSLATE_NOOP("QObject", "Function"));
const int PROP_FUNCTION_BODY = HF::LPropertyID::CreateID(QT_TRANSLATE_NOOP("QObject", "Function Body"), "Function");

rc::Ref<HF::I_LSchemaObject> MakeFunction(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    // These engines list each form of a macro under its plain name; with "$$" inside, that is the name.
    if (EngineVersionNumber() >= 10100)
        return rc::make<orbDuckDB_Function>(owner, name, QString());
    const QString separator = QStringLiteral("$$");
    return rc::make<orbDuckDB_Function>(owner, name.section(separator, 0, 0), name.section(separator, 1));
}

orbDuckDB_Function::orbDuckDB_Function(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name,
                                       const QString& overloadKey)
    : m_overloadKey(overloadKey)
{
    put_ParentObject(owner);
    AssignName(name);
}

rc::Ptr<HF::LAction> orbDuckDB_Function::get_DefaultAction() const
{
    return ActionOpenQueryEditor();
}

void orbDuckDB_Function::FromQuery(const rc::Ref<const HF::I_LCursor>& cursor)
{
    ReadProperty(cursor, PROP_FUNCTION_TYPE, "function_type");
    ReadProperty(cursor, PROP_FUNCTION_ARG_COUNT, "args_count");
    ReadProperty(cursor, PROP_FUNCTION_ARGUMENTS, "args_names");
    ReadProperty(cursor, PROP_COMMENT, "comment");
    ReadProperty(cursor, PROP_OBJECT_ID, "function_oid");
    ReadProperty(cursor, PROP_SCHEMA_NAME, "schema_name");
    ReadProperty(cursor, PROP_FUNCTION_BODY, "macro_definition");
    ReadProperty(cursor, PROP_TEMPORARY, "temporary");
    AssignPropertyValueSilent(PROP_DEFINITION, MakeDefinition());
}

QString orbDuckDB_Function::MakeDefinition() const
{
    QString text = QStringLiteral("CREATE OR REPLACE ");
    if (GetBool(PROP_TEMPORARY))
        text += QLatin1String("TEMP ");
    text += QLatin1String("MACRO ") + get_NameForQuery(true) + QLatin1String("( ") + GetString(PROP_FUNCTION_ARGUMENTS)
            + QLatin1String(" ) AS ");
    if (GetString(PROP_FUNCTION_TYPE) == u"table_macro")
        text += QLatin1String("TABLE ");
    return text + GetString(PROP_FUNCTION_BODY);
}
