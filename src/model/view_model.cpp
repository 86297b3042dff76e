// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/view_model.h"

#include "hf/engine.h"
#include "hf/model_object.h"
#include "hf/sql_text.h"
#include "model/script_with_name.h"
#include "model/text_helpers.h"

#include <QObject>

namespace {

QString NameOf(const rc::Ref<const HF::I_LSchemaObject>& view)
{
    return view->GetBool(PROP_TEMPORARY) ? view->get_NameQuoted() : view->get_NameForQuery(true);
}

} // namespace

void orbDuckDB_ModelView::CreateProperties(HF::LHasProperties::Properties& list) const
{
    static const QList<HF::LProperty> properties = [] {
        const QString title = QObject::tr("DuckDB View");
        QList<HF::LProperty> made;
        HF::AddPropertyTo(made, title, PROP_OBJECT_ID, HF::LVariant::EmptyLong(), 16777249);
        HF::AddPropertyTo(made, title, PROP_SCHEMA_NAME, HF::LVariant::EmptyString(), 4129);
        HF::AddPropertyTo(made, title, PROP_NAME, HF::LVariant::EmptyString(), 134);
        HF::AddPropertyTo(made, title, PROP_TEMPORARY, HF::LVariant::EmptyBool(), 129);
        HF::AddPropertyTo(made, title, PROP_DEFINITION, HF::LVariant::EmptyString(), 65704);
        HF::AddPropertyTo(made, title, PROP_COMMENT, HF::LVariant::EmptyString(), 40);
        HF::AddPropertyTo(made, HF::CATEGORY_INFORMATION, PROP_COUNT_FIELDS, HF::LVariant::EmptyLong(), 16777217);
        return made;
    }();
    list.AssignProperties(properties);
}

QList<HF::LQueryNode> orbDuckDB_ModelView::GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object,
                                                         HF::ELQueryKind kind, int property,
                                                         const HF::LVariant& value) const
{
    HF::LQueryNode node = MakeNode(object, kind, property, value);
    const auto comment = [&] {
        if (const QString text = object->GetString(PROP_COMMENT); !text.isEmpty())
            node.children +=
                object->get_DatabaseEngine()->GetQueryNodes(object, HF::KIND_CHANGE_PROPERTY, PROP_COMMENT, text);
    };
    if (kind == HF::KIND_CREATE) {
        node.sql = ScriptWithName(object, object->GetString(PROP_DEFINITION), false, ViewPattern);
        comment();
    } else if (kind == HF::KIND_DROP) {
        node.sql = QLatin1String("DROP VIEW IF EXISTS ") + NameOf(object);
    } else if (kind == HF::KIND_CHANGE_PROPERTY && property == PROP_NAME) {
        node.sql = QLatin1String("ALTER VIEW ") + object->get_NameForQuery(true) + QLatin1String(" RENAME TO ")
                   + EngineQuoteName(value.ToString(), object);
    } else if (kind == HF::KIND_CHANGE_PROPERTY && property == PROP_DEFINITION) {
        node.sql = ScriptWithName(object, value.ToString(), true, ViewPattern);
        comment();
    } else if (kind == HF::KIND_CHANGE_PROPERTY && property == PROP_COMMENT) {
        node.sql = CommentStatement(QStringLiteral("VIEW"), ObjectQualifiedName(object), value.ToString()) + u'\n';
    }
    return {node};
}

QString orbDuckDB_ModelView::CheckProperty(const rc::Ref<const HF::I_LSchemaObject>& object,
                                           const rc::Ptr<HF::I_LDatabase>&, int property,
                                           const HF::LVariant& value) const
{
    if (property != PROP_DEFINITION)
        return QString();
    HF::LParser parser(ViewPattern);
    if (!parser.Parse(value.ToString()))
        return parser.get_Error();
    const QString first = parser.get_Ident(QStringLiteral("NAME1"));
    const QString second = parser.get_Ident(QStringLiteral("NAME2"));
    const Qt::CaseSensitivity sensitivity = GetCaseSensitivity(object);
    // Of an object that is being renamed the text may hold either name.
    const QString& name = second.isEmpty() ? first : second;
    if (name.compare(object->get_Name(), sensitivity) != 0 && name.compare(object->GetString(PROP_NAME), sensitivity) != 0)
        return QObject::tr("The name of the view and query don't coincide!");
    if (!second.isEmpty() && first.compare(SchemaNameOf(object), sensitivity) != 0)
        return QObject::tr("The schema of the view and query don't coincide!");
    return QString();
}

void orbDuckDB_ModelView::UpdateDependentProperties(const rc::Ref<HF::I_LSchemaObject>& object, int property) const
{
    const QString name = object->GetString(PROP_NAME);
    const rc::Ptr<const HF::LTreeItem> item(object);
    const bool all = property < 0;
    if ((all || property == PROP_DEFINITION || property == PROP_NAME) && !name.isEmpty()
        && object->GetString(PROP_DEFINITION).isEmpty()) {
        const QString schema = SchemaNameOf(object);
        QString text = QStringLiteral("CREATE VIEW ");
        if (!schema.isEmpty() && schema != QLatin1String("main"))
            text += HF::QuoteName(schema, item) + u'.';
        object->ProcessProperty(PROP_DEFINITION, text + HF::QuoteName(name, item) + QLatin1String(" AS SELECT 1"))
            .Force();
    }
    if (all || property == PROP_NAME || property == PROP_SCHEMA_NAME) {
        const QString Name1 = QStringLiteral("NAME1");
        const QString Name2 = QStringLiteral("NAME2");
        const QString before = object->GetString(PROP_DEFINITION);
        QString text = before;
        const Qt::CaseSensitivity sensitivity = GetCaseSensitivity(object);
        HF::LParser parser(ViewPattern);
        // The last one first: its place does not move then.
        const auto agree = [&](const QString& ident, const QString& wanted) {
            if (parser.get_Ident(ident).compare(wanted, sensitivity) != 0)
                text = ReplaceIdents(text, parser, ident, ident, HF::QuoteName(wanted, item));
        };
        if (!parser.Parse(text))
            return;
        if (parser.get_Ident(Name2).isEmpty()) {
            agree(Name1, name);
        } else {
            agree(Name2, name);
            if (const QString schema = SchemaNameOf(object); !schema.isEmpty())
                agree(Name1, schema);
        }
        if (text != before) {
            HF::FinishQuery(text, 0);
            UpdatePropertyValue(object, PROP_DEFINITION, text);
        }
    }
    if ((all || property == PROP_DEFINITION) && object->HasChildList(HF::TYPE_FIELD))
        object->UpdateChildObjects(HF::TYPE_FIELD);
}

QList<HF::LQueryNode> orbDuckDB_ModelView::GetChangeNodes(const rc::Ref<const HF::I_LModelObject>& object) const
{
    QList<HF::LQueryNode> nodes = LDatabaseModelView::GetChangeNodes(object);
    if (!object->IsPropertyChanged(PROP_NAME) || !object->IsPropertyChanged(PROP_DEFINITION))
        return nodes;
    // The text follows the name; that alone makes no other view of it.
    const HF::LCommittedName committed(object);
    const auto script = [&](const HF::LVariant& text) { return ScriptWithName(object, text.ToString(), true, ViewPattern); };
    const QString before = script(object->get_OriginalValue(PROP_DEFINITION));
    nodes.removeIf([&](const HF::LQueryNode& node) { return node.property == PROP_DEFINITION && node.sql == before; });
    return nodes;
}
