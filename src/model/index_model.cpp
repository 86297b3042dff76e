// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/index_model.h"

#include "hf/engine.h"
#include "hf/object_kinds.h"
#include "hf/sql_text.h"
#include "model/table_script.h"
#include "model/text_helpers.h"

#include <QObject>

void orbDuckDB_ModelIndex::CreateProperties(HF::LHasProperties::Properties& list) const
{
    static const QList<HF::LProperty> properties = [] {
        const QString title = QObject::tr("DuckDB Index");
        const QString settings = QString::fromLatin1(HF::CATEGORY_SETTINGS);
        QList<HF::LProperty> made;
        HF::AddPropertyTo(made, title, PROP_NAME, HF::LVariant::EmptyString(), 134);
        HF::AddPropertyTo(made, title, PROP_SQL_TEXT, HF::LVariant::EmptyString(), 4129);
        HF::AddPropertyTo(made, title, PROP_COMMENT, HF::LVariant::EmptyString(), 40);
        HF::AddPropertyTo(made, settings, PROP_COLUMNS, HF::LVariant::EmptyStringList(), 12320);
        HF::AddPropertyTo(made, settings, PROP_UNIQUE, HF::LVariant::EmptyBool(), 160);
        return made;
    }();
    list.AssignProperties(properties);
}

bool orbDuckDB_ModelIndex::IsRecreatingProperty(const rc::Ref<const HF::I_LSchemaObject>&, int property) const
{
    return property == PROP_COLUMNS || property == PROP_NAME || property == PROP_UNIQUE;
}

QList<HF::LQueryNode> orbDuckDB_ModelIndex::GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object,
                                                          HF::ELQueryKind kind, int property,
                                                          const HF::LVariant& value) const
{
    HF::LQueryNode node = MakeNode(object, kind, property, value);
    if (kind == HF::KIND_CREATE) {
        node.sql = IndexText(DescribeIndex(object));
        HF::FinishQuery(node.sql, 1);
        if (const QString comment = object->GetString(PROP_COMMENT); !comment.isEmpty())
            node.children = object->get_DatabaseEngine()->GetQueryNodes(object, HF::KIND_CHANGE_PROPERTY, PROP_COMMENT,
                                                                        comment);
    } else if (kind == HF::KIND_DROP) {
        node.sql = WrapSingleOperation(QLatin1String("DROP INDEX IF EXISTS ") + ObjectQualifiedName(object)
                                       + QLatin1String(";\n"));
    } else if (kind == HF::KIND_CHANGE_PROPERTY && property == PROP_COMMENT) {
        node.sql = CommentStatement(QStringLiteral("INDEX"), PendingNameForQuery(object), value.ToString());
    } else if (kind == HF::KIND_CHANGE_PROPERTY && IsRecreatingProperty(object, property)) {
        IndexDescription description = DescribeIndex(object);
        if (property == PROP_COLUMNS)
            description.columns = value.ToStringList();
        else if (property == PROP_NAME)
            description.name = value.ToString();
        else
            description.unique = value.ToBool();
        QList<HF::LQueryNode> nodes = GetQueryNodes(object, HF::KIND_DROP, -1, HF::LVariant());
        HF::LQueryNode create = MakeNode(object, HF::KIND_CREATE, -1, HF::LVariant());
        create.sql = IndexText(description);
        HF::FinishQuery(create.sql, 2);
        create.sql = WrapSingleOperation(create.sql);
        // The comment went with the old index.
        if (!description.comment.isEmpty()) {
            HF::LQueryNode comment = MakeNode(object, HF::KIND_CHANGE_PROPERTY, PROP_COMMENT, description.comment);
            comment.sql =
                CommentStatement(QStringLiteral("INDEX"), QualifiedName(description.schema, description.name),
                                 description.comment);
            create.children.append(comment);
        }
        nodes.append(create);
        return nodes;
    }
    return {node};
}

HF::LVariant orbDuckDB_ModelIndex::ShowPropertyEditor(const rc::Ref<HF::I_LSchemaObject>& object, int property,
                                                      const rc::Ptr<HF::I_LDatabase>& database, QPoint position) const
{
    if (property != PROP_SQL_TEXT)
        return LDatabaseModelIndex::ShowPropertyEditor(object, property, database, position);
    if (const QString text = object->GetString(PROP_SQL_TEXT); !text.isEmpty())
        HF::ShowSqlViewer(text, database);
    return {};
}
