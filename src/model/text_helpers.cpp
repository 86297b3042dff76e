// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/text_helpers.h"

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
