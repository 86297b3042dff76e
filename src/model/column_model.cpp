// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/column_model.h"

#include "hf/connection.h"
#include "hf/engine.h"
#include "hf/services.h"
#include "model/column_text.h"
#include "model/scoped_value.h"
#include "model/text_helpers.h"

namespace {

constexpr int TypeProperties[] = {PROP_ELEMENT_TYPE, PROP_ARRAY_SIZE, PROP_PRECISION, PROP_SCALE, PROP_TYPE_NAME};

} // namespace

namespace ColumnModel {

QMap<int, int> PropertiesGroups()
{
    static const QMap<int, int> groups = [] {
        QMap<int, int> made;
        for (const int property : TypeProperties)
            made.insert(property, 0);
        return made;
    }();
    return groups;
}

bool IsTypeProperty(int property)
{
    return std::find(std::begin(TypeProperties), std::end(TypeProperties), property) != std::end(TypeProperties);
}

void AddTypeProperties(QList<HF::LProperty>& list)
{
    const QString settings = QString::fromLatin1(HF::CATEGORY_SETTINGS);
    HF::AddPropertyTo(list, settings, PROP_PRECISION, -1, 176);
    HF::AddPropertyTo(list, settings, PROP_SCALE, -1, 176);
    HF::AddPropertyTo(list, settings, PROP_ARRAY_SIZE, HF::LVariant::EmptyString(), 180);
    HF::AddPropertyTo(list, settings, PROP_ELEMENT_TYPE, HF::LVariant::EmptyString(), 180);
    HF::AddPropertyTo(list, settings, PROP_TYPE_ARGUMENTS, HF::LVariant::EmptyString(), 52);
}

QString ChangeStatement(const rc::Ref<const HF::I_LSchemaObject>& field, int property, const HF::LVariant& value)
{
    const rc::Ptr<HF::I_LSchemaObject> table = TableOfColumn(field);
    if (!table)
        return QString();
    if (IsTypeProperty(property)) {
        const orbDuckDB_ScopedValue pending(field, property, value);
        return ChangeTypeStatement(field);
    }
    switch (property) {
    case PROP_NAME:
        return QLatin1String("ALTER TABLE ") + table->get_NameForQuery(true) + QLatin1String(" RENAME ")
               + field->get_NameQuoted() + QLatin1String(" TO ") + EngineQuoteName(value.ToString(), field);
    case PROP_COMMENT: return ColumnCommentStatement(field, value.ToString());
    case PROP_INDEXED: return QStringLiteral("-- Will be changed by indexes\n");
    case PROP_UNIQUE: return QStringLiteral("-- Will be changed by uniques\n");
    default: return QString();
    }
}

HF::LVariant ShowTypeEditor(const rc::Ref<HF::I_LSchemaObject>& object, QPoint position)
{
    const HF::LDatabaseEngine* const engine = object->get_DatabaseEngine();
    if (!engine)
        return {};
    QStringList names;
    for (const HF::LFieldInfo& type : engine->GetFieldTypes())
        names.append(type.name);
    const QString current = object->GetString(PROP_TYPE_NAME);
    if (!current.isEmpty() && !names.contains(current))
        names << QString() << current;
    return HF::SelectFromList(position, names, current);
}

void UpdateFlags(const rc::Ref<HF::I_LSchemaObject>& object, const rc::Ptr<HF::I_LDatabase>& database)
{
    QString type = object->GetString(PROP_TYPE_NAME);
    if (type.isEmpty() && database) {
        type = HF::ApplicationSettings().value(QStringLiteral("/Plugins/DuckDB/LastFieldType"), QString()).toString();
        if (type.isEmpty())
            type = QStringLiteral("VarChar");
        HF::LDatabaseModelObject::UpdatePropertyValue(object, PROP_TYPE_NAME, type);
    }
    const auto is = [&](const char* name) { return type.compare(QLatin1String(name), Qt::CaseInsensitive) == 0; };
    static const QStringList withArguments{QStringLiteral("Enum"), QStringLiteral("Map"), QStringLiteral("Struct"),
                                           QStringLiteral("Union")};
    for (const int property : {PROP_PRECISION, PROP_SCALE})
        object->SetPropertyFlag(property, HF::PROPERTY_HIDDEN, !is("Decimal"));
    object->SetPropertyFlag(PROP_ARRAY_SIZE, HF::PROPERTY_HIDDEN, !is("Array"));
    object->SetPropertyFlag(PROP_ELEMENT_TYPE, HF::PROPERTY_HIDDEN, !is("Array") && type != QLatin1String("List"));
    object->SetPropertyFlag(PROP_TYPE_ARGUMENTS, HF::PROPERTY_HIDDEN, !withArguments.contains(type));
    object->NotifyPropertyChangedLater(-1);
}

void UpdateDependent(const rc::Ref<HF::I_LSchemaObject>& object, int property)
{
    if ((property == PROP_INDEXED || property < 0) && object->GetBool(PROP_UNIQUE))
        HF::LDatabaseModelObject::UpdatePropertyValue(object, PROP_INDEXED, true);
    if ((property == PROP_TYPE_NAME || property < 0) && object->GetString(PROP_TYPE_NAME).isEmpty())
        object->ProcessProperty(PROP_TYPE_NAME, QStringLiteral("VarChar")).Force();
}

} // namespace ColumnModel
