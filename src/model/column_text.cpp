// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/column_text.h"

#include "hf/engine.h"
#include "model/text_helpers.h"

namespace {

/// "( p, s )" with what is set of it, behind a blank.
QString DecimalArguments(const rc::Ref<const HF::I_LSchemaObject>& object)
{
    QStringList arguments;
    for (const int id : {PROP_PRECISION, PROP_SCALE})
        if (const long number = object->GetLongOr(id, -1); number > 0)
            arguments.append(QString::number(number));
    return arguments.isEmpty() ? QString()
                               : QLatin1String("( ") + arguments.join(QLatin1String(", ")) + QLatin1String(" )");
}

} // namespace

QString FieldTypeText(const rc::Ref<const HF::I_LSchemaObject>& object)
{
    const QString name = object->GetString(PROP_TYPE_NAME);
    const HF::LDatabaseEngine* const engine = object->get_DatabaseEngine();
    // A name that brings its arguments along is whole.
    if (!engine || name.endsWith(u')'))
        return name;
    switch (engine->GetFieldTypeByName(name)) {
    case HF::FIELD_DECIMAL: return name + DecimalArguments(object);
    case HF::FIELD_ARRAY:
        return object->GetString(PROP_ELEMENT_TYPE) + u'[' + object->GetString(PROP_ARRAY_SIZE) + u']';
    case HF::FIELD_LIST: return object->GetString(PROP_ELEMENT_TYPE) + QLatin1String("[]");
    case HF::FIELD_ENUM:
    case HF::FIELD_MAP:
    case HF::FIELD_STRUCT:
    case HF::FIELD_UNION:
        return name + QLatin1String("( ") + object->GetString(PROP_TYPE_ARGUMENTS) + QLatin1String(" )");
    default: return name;
    }
}

QString ColumnDefinition(const rc::Ref<const HF::I_LSchemaObject>& object, bool omitNotNull)
{
    QString text = object->get_NameQuoted() + u' ' + FieldTypeText(object);
    const QString otherwise = object->GetString(PROP_DEFAULT);
    if (!otherwise.isEmpty())
        text += QLatin1String(" DEFAULT ") + DefaultLiteral(otherwise);
    if (!omitNotNull && !object->GetBoolOr(PROP_NULLABLE, false))
        text += QLatin1String(" NOT NULL");
    return text;
}

rc::Ptr<HF::I_LSchemaObject> TableOfColumn(const rc::Ref<const HF::I_LSchemaObject>& field)
{
    return rc::cast<HF::I_LSchemaObject>(field->get_ParentObject());
}

QString ChangeTypeStatement(const rc::Ref<const HF::I_LSchemaObject>& field)
{
    const rc::Ptr<HF::I_LSchemaObject> table = TableOfColumn(field);
    if (!table)
        return QString();
    return QLatin1String("ALTER TABLE ") + table->get_NameForQuery(true) + QLatin1String(" ALTER COLUMN ")
           + field->get_NameQuoted() + QLatin1String(" TYPE ") + FieldTypeText(field);
}

QString ColumnCommentStatement(const rc::Ref<const HF::I_LSchemaObject>& field, const QString& comment)
{
    const rc::Ptr<HF::I_LSchemaObject> table = TableOfColumn(field);
    if (!table)
        return QString();
    const QString tableName =
        table->GetBool(PROP_TEMPORARY) ? table->get_NameQuoted() : table->get_NameForQuery(true);
    return CommentStatement(QStringLiteral("COLUMN"), tableName + u'.' + field->get_NameQuoted(), comment);
}
