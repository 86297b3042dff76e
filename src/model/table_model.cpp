// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/table_model.h"

#include "hf/engine.h"
#include "hf/model_object.h"
#include "hf/object_kinds.h"
#include "hf/sql_text.h"
#include "model/column_text.h"
#include "model/table_changes.h"
#include "model/table_script.h"
#include "model/text_helpers.h"

#include <QObject>

namespace {

using Object = rc::Ref<const HF::I_LSchemaObject>;

RcList<HF::I_LSchemaObject> ChildrenOf(const Object& table, int type)
{
    return table->get_ChildObjects(type).Force();
}

/// The columns and constraints of a new table, from the objects themselves.
QString CreateBody(const Object& table)
{
    QString body;
    const auto add = [&body](const QString& item) {
        if (!body.isEmpty())
            body += u',';
        body += QLatin1String("\n\t") + item;
    };
    for (const rc::Ref<HF::I_LSchemaObject>& field : ChildrenOf(table, HF::TYPE_FIELD))
        add(ColumnDefinition(field, false));
    for (const rc::Ref<HF::I_LSchemaObject>& method : ChildrenOf(table, HF::TYPE_METHOD))
        add(method->get_NameQuoted() + u' ' + FieldTypeText(method) + QLatin1String(" AS ( ")
            + method->GetString(PROP_METHOD_EXPRESSION) + QLatin1String(" )"));
    if (const QStringList key = table->GetStringList(PROP_KEY_COLUMNS); !key.isEmpty())
        body += QLatin1String(",\n\tPRIMARY KEY ( ") + HF::JoinIdentifiers(key, rc::Ptr<const HF::LTreeItem>(table))
                + QLatin1String(" )");
    for (const rc::Ref<HF::I_LSchemaObject>& unique : ChildrenOf(table, HF::TYPE_UNIQUE))
        add(UniqueText(unique));
    for (const rc::Ref<HF::I_LSchemaObject>& check : ChildrenOf(table, HF::TYPE_CHECK))
        add((check->get_Name().isEmpty() ? QString()
                                         : QLatin1String("CONSTRAINT ") + check->get_NameQuoted() + u' ')
            + QLatin1String("CHECK ( ") + check->GetString(PROP_CHECK_EXPRESSION) + QLatin1String(" )"));
    return body;
}

void FillCreate(const Object& table, HF::LQueryNode& node)
{
    const QString head = table->GetBool(PROP_TEMPORARY)
                             ? QLatin1String("TEMPORARY TABLE ") + QuoteIdent(table->GetString(PROP_NAME))
                             : QLatin1String("TABLE ") + ObjectQualifiedName(table);
    node.sql = QLatin1String("CREATE ") + head + QLatin1String(" ( ") + CreateBody(table) + QLatin1String(" );\n ");
    const HF::LDatabaseEngine& engine = *table->get_DatabaseEngine();
    for (const rc::Ref<HF::I_LSchemaObject>& index : ChildrenOf(table, HF::TYPE_INDEX))
        node.children += engine.GetQueryNodes(index, HF::KIND_CREATE, -1, HF::LVariant());
    const auto comment = [&](const Object& object) {
        if (const QString text = object->GetString(PROP_COMMENT); !text.isEmpty())
            node.children += engine.GetQueryNodes(object, HF::KIND_CHANGE_PROPERTY, PROP_COMMENT, text);
    };
    comment(table);
    for (const int type : {HF::TYPE_FIELD, HF::TYPE_METHOD})
        for (const rc::Ref<HF::I_LSchemaObject>& column : ChildrenOf(table, type))
            comment(column);
}

QString RenameScript(const Object& table, const QString& name)
{
    const orbDuckDB_DescTable description = DescribeTable(table);
    // The engine would leave the tables that this one refers to with its old name.
    if (!description.OwnLinks().isEmpty())
        return WrapSingleOperation(RebuildScript(description, name));
    return QLatin1String("ALTER TABLE ") + ObjectQualifiedName(table) + QLatin1String(" RENAME TO ")
           + HF::QuoteName(name, rc::Ptr<const HF::LTreeItem>(table)) + u';';
}

/// Whether a child that is made with its table came, went or changed.
bool NeedsRebuild(const Object& child, int property)
{
    if (!child->Evaluate(HF::EVAL_EXISTS).ToBool())
        return true;
    const auto* const model = dynamic_cast<const HF::I_LModelObject*>(child.get());
    return model && (model->IsMarkedDropped() || model->IsPropertyChanged(property));
}

} // namespace

void orbDuckDB_ModelTable::CreateProperties(HF::LHasProperties::Properties& list) const
{
    static const QList<HF::LProperty> properties = [] {
        const QString title = QObject::tr("DuckDB Table");
        const QString information = QString::fromLatin1(HF::CATEGORY_INFORMATION);
        QList<HF::LProperty> made;
        HF::AddPropertyTo(made, title, PROP_NAME, HF::LVariant::EmptyString(), 134);
        HF::AddPropertyTo(made, title, PROP_OBJECT_ID, HF::LVariant::EmptyLong(), 16777217);
        HF::AddPropertyTo(made, title, PROP_SCHEMA_NAME, HF::LVariant::EmptyString(), 4097);
        HF::AddPropertyTo(made, title, PROP_SQL_TEXT, HF::LVariant::EmptyString(), 4261);
        HF::AddPropertyTo(made, title, PROP_TEMPORARY, HF::LVariant::EmptyBool(), 161);
        HF::AddPropertyTo(made, title, PROP_COMMENT, HF::LVariant::EmptyString(), 40);
        HF::AddPropertyTo(made, QString::fromLatin1(HF::CATEGORY_SETTINGS), PROP_KEY_COLUMNS,
                          HF::LVariant::EmptyStringList(), 12422);
        for (const int count : {PROP_COUNT_CHECKS, PROP_COUNT_FIELDS, PROP_COUNT_METHODS})
            HF::AddPropertyTo(made, information, count, HF::LVariant::EmptyLong(), 16777217);
        HF::AddPropertyTo(made, information, PROP_RECORD_COUNT, HF::LVariant::EmptyString(), 16777249);
        for (const int count : {PROP_COUNT_INDEXES, PROP_COUNT_LINKS, PROP_COUNT_UNIQUES})
            HF::AddPropertyTo(made, information, count, HF::LVariant::EmptyLong(), 16777217);
        return made;
    }();
    list.AssignProperties(properties);
}

QList<HF::LQueryNode> orbDuckDB_ModelTable::GetQueryNodes(const Object& object, HF::ELQueryKind kind, int property,
                                                          const HF::LVariant& value) const
{
    HF::LQueryNode node = MakeNode(object, kind, property, value);
    switch (kind) {
    case HF::KIND_CREATE: FillCreate(object, node); break;
    case HF::KIND_DROP:
        node.sql = QLatin1String("DROP TABLE IF EXISTS ") + object->get_NameForQuery(true) + QLatin1String(";\n");
        break;
    case HF::KIND_REBUILD: node.sql = WrapSingleOperation(RebuildScript(DescribeTable(object))); break;
    case HF::KIND_CHANGE_PROPERTY:
        if (property == PROP_NAME) {
            node.sql = RenameScript(object, value.ToString());
        } else if (property == PROP_COMMENT) {
            const QString name =
                object->GetBool(PROP_TEMPORARY) ? object->get_NameQuoted() : object->get_NameForQuery(true);
            node.sql = CommentStatement(QStringLiteral("TABLE"), name, value.ToString());
        } else if (property == PROP_KEY_COLUMNS) {
            orbDuckDB_DescTable description = DescribeTable(object);
            description.primaryKey = value.ToStringList();
            node.sql = RebuildScript(description);
        }
        break;
    default: break;
    }
    return {node};
}

bool orbDuckDB_ModelTable::IsRebuildRequired(const Object& object) const
{
    for (const auto& [type, property] : {std::pair(int(HF::TYPE_METHOD), int(PROP_METHOD_EXPRESSION)),
                                         {HF::TYPE_CHECK, PROP_CHECK_EXPRESSION},
                                         {HF::TYPE_UNIQUE, PROP_COLUMNS}})
        for (const rc::Ref<HF::I_LSchemaObject>& child : ChildrenOf(object, type))
            if (NeedsRebuild(child, property))
                return true;
    return false;
}

HF::LVariant orbDuckDB_ModelTable::ShowPropertyEditor(const rc::Ref<HF::I_LSchemaObject>& object, int property,
                                                      const rc::Ptr<HF::I_LDatabase>& database, QPoint) const
{
    if (property == PROP_SQL_TEXT)
        if (const QString text = object->GetString(PROP_SQL_TEXT); !text.isEmpty())
            HF::ShowSqlViewer(text, database);
    return {};
}

QList<HF::LQueryNode> orbDuckDB_ModelTable::GetChangeNodes(const rc::Ref<const HF::I_LModelObject>& object) const
{
    return GetChangeNodesOf({rc::Ref<HF::I_LModelObject>(const_cast<HF::I_LModelObject&>(*object))});
}

QList<HF::LQueryNode> orbDuckDB_ModelTable::GetChangeNodesOf(const RcList<HF::I_LModelObject>& objects) const
{
    return orbDuckDB_TableChanges(objects).Nodes();
}

QStringList orbDuckDB_ModelTable::GetChangeProblems(const rc::Ref<const HF::I_LModelObject>& object) const
{
    return LDatabaseModelTable::GetChangeProblems(object) + TableChangeProblems(object);
}

QStringList orbDuckDB_ModelTable::GetChangeWarnings(const rc::Ref<const HF::I_LModelObject>& object) const
{
    return TableChangeWarnings(object);
}
