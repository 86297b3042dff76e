// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/text_helpers.h"

#include "hf/connection.h"
#include "hf/engine.h"

namespace {

QString Quoted(QString text, QChar quote)
{
    text.replace(quote, QString(2, quote));
    return quote + text + quote;
}

QString NameOfSchema(const rc::Ptr<HF::LTreeItem>& item)
{
    return item && item->get_ObjectType() == HF::TYPE_SCHEMA ? item->get_Name() : QString();
}

} // namespace

QString QuoteIdent(const QString& name)
{
    return Quoted(name, u'"');
}

QString QuoteStringLiteral(const QString& text)
{
    return Quoted(text, u'\'');
}

QString QualifiedName(const QString& schema, const QString& name)
{
    return schema.isEmpty() ? QuoteIdent(name) : QuoteIdent(schema) + u'.' + QuoteIdent(name);
}

QString SchemaNameOf(const rc::Ref<const HF::I_LSchemaObject>& object)
{
    if (object->GetBool(PROP_TEMPORARY))
        return QString();
    QString name = object->GetString(PROP_SCHEMA_NAME);
    if (!name.isEmpty())
        return name;
    const rc::Ptr<HF::LTreeItem> parent = object->get_ParentObject();
    name = NameOfSchema(parent);
    return name.isEmpty() && parent ? NameOfSchema(parent->get_ParentObject()) : name;
}

QString ObjectQualifiedName(const rc::Ref<const HF::I_LSchemaObject>& object)
{
    const QString name = object->GetString(PROP_NAME);
    return QualifiedName(SchemaNameOf(object), name.isEmpty() ? object->get_Name() : name);
}

QString WrapSingleOperation(const QString& script)
{
    return QStringLiteral("BEGIN; --SO--\n\n") + script.trimmed() + QStringLiteral("\n\nEND; --SO--\n");
}

QString EngineQuoteName(const QString& name, const rc::Ref<const HF::I_LSchemaObject>& object)
{
    const HF::LDatabaseEngine* const engine = object->get_DatabaseEngine();
    return engine ? engine->QuoteName(name, object->get_Connection()) : QuoteIdent(name);
}

QString PendingNameForQuery(const rc::Ref<const HF::I_LSchemaObject>& object)
{
    const QString name = object->GetString(PROP_NAME);
    if (name.isEmpty() || name == object->get_Name())
        return object->GetBool(PROP_TEMPORARY) ? object->get_NameQuoted() : object->get_NameForQuery(true);
    const QString schema = SchemaNameOf(object);
    const QString quoted = EngineQuoteName(name, object);
    return schema.isEmpty() ? quoted : EngineQuoteName(schema, object) + u'.' + quoted;
}

QString CommentStatement(const QString& kind, const QString& name, const QString& comment)
{
    return QLatin1String("COMMENT ON ") + kind + u' ' + name + QLatin1String(" IS ")
           + (comment.isEmpty() ? QStringLiteral("NULL") : QuoteStringLiteral(comment)) + u';';
}
