// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/method.h"

#include "catalog/list_infos.h"
#include "catalog/table.h"
#include "hf/database.h"
#include "hf/engine.h"
#include "hf/object_editor.h"

namespace {

/// Lines of the expression that a tool tip shows.
constexpr int TipLines = 6;

QString FirstLines(const QString& text)
{
    qsizetype end = -1;
    for (int line = 0; line < TipLines; ++line) {
        end = text.indexOf(u'\n', end + 1);
        if (end < 0)
            return text;
    }
    return text.left(end) + QLatin1String("\n...");
}

} // namespace

rc::Ref<HF::I_LSchemaObject> MakeMethod(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    const auto method = rc::make<orbDuckDB_Method>(rc::Ptr<HF::I_LSchemaObject>(owner), name);
    if (const auto table = rc::cast<orbDuckDB_Table>(owner))
        method->SharePosition(table->get_PositionCell());
    return method;
}

HF::LLazy<bool, true> orbDuckDB_Method::ReloadProperties()
{
    if (get_IsCursorMode())
        return true;
    if (!OwnerTable() || !get_Database())
        return false;
    return LDatabaseObject_Impl::ReloadProperties();
}

QString orbDuckDB_Method::get_ObjectTypeName() const
{
    return QString::fromLatin1(HF::OBJECT_METHOD);
}

HF::LLazy<QString, false> orbDuckDB_Method::get_Icon() const
{
    return QStringLiteral(":/icons/field-method.svg");
}

HF::LLazy<QString, false> orbDuckDB_Method::get_Tip() const
{
    const rc::Ptr<HF::I_LTable> table = OwnerTable();
    return QObject::tr("Table: %1\nType: %2\nText: %3")
        .arg(table ? table->get_Name() : QString(), GetString(PROP_TYPE_NAME),
             FirstLines(GetString(PROP_METHOD_EXPRESSION)));
}

QPointer<QWidget> orbDuckDB_Method::CreateEditor(QPointer<QWidget> parent)
{
    return HF::CreatePropertySQLEditor(rc::self<HF::I_LSchemaObject>(this), PROP_METHOD_EXPRESSION, parent);
}

void orbDuckDB_Method::FromQuery(const rc::Ref<const HF::I_LCursor>& cursor)
{
    ReadProperty(cursor, PROP_METHOD_EXPRESSION, "column_default");
    orbDuckDB_FieldBase::FromQuery(cursor);
    if (IsOfView())
        MarkAsOfView(PROP_METHOD_EXPRESSION);
    if (const HF::LDatabaseEngine* engine = get_DatabaseEngine())
        engine->UpdatePropertiesFlags(rc::self<HF::I_LSchemaObject>(this), get_Database());
}
