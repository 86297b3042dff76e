// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/function_model.h"

#include "catalog/function.h"
#include "hf/engine.h"
#include "hf/model_object.h"
#include "model/empty_enum.h"
#include "model/macro_text.h"
#include "model/scoped_value.h"
#include "model/script_with_name.h"
#include "model/text_helpers.h"

#include <QObject>

namespace {

QString NameOf(const rc::Ref<const HF::I_LSchemaObject>& function)
{
    return function->GetBool(PROP_TEMPORARY) ? function->get_NameQuoted() : function->get_NameForQuery(true);
}

} // namespace

void orbDuckDB_ModelFunction::CreateProperties(HF::LHasProperties::Properties& list) const
{
    static const QList<HF::LProperty> properties = [] {
        const QString title = QObject::tr("DuckDB Function");
        const QString settings = QString::fromLatin1(HF::CATEGORY_SETTINGS);
        QList<HF::LProperty> made;
        HF::AddPropertyTo(made, title, PROP_NAME, HF::LVariant::EmptyString(), 166);
        HF::AddPropertyTo(made, title, PROP_OBJECT_ID, HF::LVariant::EmptyLong(), 16777377);
        HF::AddPropertyTo(made, title, PROP_SCHEMA_NAME, HF::LVariant::EmptyString(), 33);
        HF::AddPropertyTo(made, title, PROP_COMMENT, HF::LVariant::EmptyString(), 40);
        HF::AddPropertyTo(made, settings, PROP_DEFINITION, HF::LVariant::EmptyString(), 65704);
        HF::AddPropertyTo(made, settings, PROP_FUNCTION_TYPE, HF::LVariant::EmptyString(), 37);
        HF::AddPropertyTo(made, settings, PROP_FUNCTION_ARG_COUNT, HF::LVariant::EmptyLong(), 33);
        for (const int property : {PROP_FUNCTION_ARGUMENTS, PROP_FUNCTION_BODY})
            HF::AddPropertyTo(made, settings, property, HF::LVariant::EmptyString(), 33);
        HF::AddPropertyTo(made, settings, PROP_TEMPORARY, HF::LVariant::EmptyBool(), 33);
        return made;
    }();
    list.AssignProperties(properties);
}

bool orbDuckDB_ModelFunction::IsRecreatingProperty(const rc::Ref<const HF::I_LSchemaObject>&, int property) const
{
    return property == PROP_NAME;
}

QList<HF::LQueryNode> orbDuckDB_ModelFunction::GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object,
                                                             HF::ELQueryKind kind, int property,
                                                             const HF::LVariant& value) const
{
    HF::LQueryNode node = MakeNode(object, kind, property, value);
    const QString table =
        object->GetString(PROP_FUNCTION_TYPE) == u"table_macro" ? QStringLiteral("TABLE ") : QString();
    const HF::LDatabaseEngine& engine = *object->get_DatabaseEngine();
    const auto comment = [&] {
        if (const QString text = object->GetString(PROP_COMMENT); !text.isEmpty())
            node.children += engine.GetQueryNodes(object, HF::KIND_CHANGE_PROPERTY, PROP_COMMENT, text);
    };
    switch (kind) {
    case HF::KIND_CHANGE_PROPERTY:
        if (property == PROP_NAME) {
            node.children += engine.GetQueryNodes(object, HF::KIND_DROP, -1, HF::LVariant());
            const orbDuckDB_ScopedValue pending(object, PROP_NAME, value);
            node.children += engine.GetQueryNodes(object, HF::KIND_CREATE, -1, HF::LVariant());
        } else if (property == PROP_DEFINITION) {
            node.sql = ScriptWithName(object, value.ToString(), true, FunctionPattern);
            comment();
        } else if (property == PROP_COMMENT) {
            // While a rename is being written the macro has its new name already.
            node.sql = CommentStatement(QStringLiteral("MACRO"), table + PendingNameForQuery(object), value.ToString());
            node.sql.chop(1);
        }
        break;
    case HF::KIND_CREATE:
        node.sql = EmptyEnum::WithType(ScriptWithName(object, object->GetString(PROP_DEFINITION), false, FunctionPattern));
        comment();
        break;
    case HF::KIND_DROP:
        node.sql = QLatin1String("DROP MACRO ") + table + QLatin1String(" IF EXISTS ") + NameOf(object) + u';';
        break;
    case HF::KIND_CALL: {
        const QString arguments = object->GetString(PROP_FUNCTION_ARGUMENTS);
        node.sql = QLatin1String("SELECT ") + NameOf(object) + u'('
                   + (arguments.isEmpty() ? QString() : u' ' + arguments + u' ') + u')';
        break;
    }
    default: break;
    }
    return {node};
}

QString orbDuckDB_ModelFunction::CheckProperty(const rc::Ref<const HF::I_LSchemaObject>& object,
                                               const rc::Ptr<HF::I_LDatabase>&, int property,
                                               const HF::LVariant& value) const
{
    if (property != PROP_DEFINITION)
        return QString();
    HF::LParser parser(FunctionPattern);
    if (!parser.Parse(value.ToString()))
        return parser.get_Error();
    const QString first = parser.get_Ident(QStringLiteral("NAME1"));
    const QString second = parser.get_Ident(QStringLiteral("NAME2"));
    if ((second.isEmpty() ? first : second) != object->GetString(PROP_NAME))
        return QObject::tr("You cannot rename function this way!");
    return QString();
}

QList<HF::LQueryNode> orbDuckDB_ModelFunction::GetChangeNodes(const rc::Ref<const HF::I_LModelObject>& object) const
{
    QList<HF::LQueryNode> nodes = LDatabaseModelFunction::GetChangeNodes(object);
    const rc::Ptr<HF::I_LDatabase> database = object->get_Database();
    if (!database || object->IsMarkedDropped() || object->Evaluate(HF::EVAL_JUST_CREATED).ToBool()
        || !object->IsPropertyChanged(PROP_NAME) || object->IsPropertyChanged(PROP_DEFINITION))
        return nodes;
    // The definition knows one form, and no defaults of parameters; under its new name the macro keeps all.
    const QString text = ReadMacroText(rc::Ref(database), object->GetString(PROP_SCHEMA_NAME), object->get_Name(),
                                       object->GetString(PROP_FUNCTION_TYPE) == u"table_macro", object->GetString(PROP_NAME));
    for (HF::LQueryNode& node : nodes)
        for (HF::LQueryNode& child : node.children)
            if (!text.isEmpty() && node.property == PROP_NAME && child.kind == HF::KIND_CREATE)
                child.sql = EmptyEnum::WithType(text);
    return nodes;
}

QStringList orbDuckDB_ModelFunction::GetChangeWarnings(const rc::Ref<const HF::I_LModelObject>& object) const
{
    const auto* const function = dynamic_cast<const HF::LModelObject*>(object.get());
    if (!function || function->IsJustCreated() || !function->get_ParentModel())
        return {};
    const bool goes = function->IsMarkedDropped() || function->IsPropertyChanged(PROP_DEFINITION)
                      || (function->IsPropertyChanged(PROP_NAME) && function->GetBool(PROP_TEMPORARY));
    int overloads = 0;
    for (const rc::Ref<HF::LModelObject>& other : function->get_ParentModel()->get_Models(HF::TYPE_FUNCTION))
        if (other->get_Name() == function->get_Name()
            && other->GetString(PROP_FUNCTION_TYPE) == function->GetString(PROP_FUNCTION_TYPE))
            ++overloads;
    if (!goes || overloads < 2)
        return {};
    return {QObject::tr("The macro \"%1\" has %2 forms, and all of them go.").arg(function->get_Name()).arg(overloads)};
}
