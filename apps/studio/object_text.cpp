// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/object_text.h"

#include "hf/schema_item_list.h"

namespace {
constexpr int MostInfo = 80;
}

QString FieldTypeText(const HF::LHasProperties& field)
{
    const QString type = field.GetString(PROP_TYPE_NAME);
    if (type.endsWith(u')')) // whole by itself
        return type;
    if (type == u"Array")
        return QStringLiteral("%1[%2]").arg(field.GetString(PROP_ELEMENT_TYPE), field.GetString(PROP_ARRAY_SIZE));
    if (type == u"List")
        return field.GetString(PROP_ELEMENT_TYPE) + QLatin1String("[]");
    if (type == u"Decimal" && field.GetLongOr(PROP_PRECISION, -1) >= 0)
        return QStringLiteral("Decimal(%1, %2)").arg(field.GetLong(PROP_PRECISION)).arg(field.GetLongOr(PROP_SCALE, 0));
    if (const QString arguments = field.GetString(PROP_TYPE_ARGUMENTS); !arguments.isEmpty())
        return QStringLiteral("%1(%2)").arg(type, arguments);
    return type;
}

QString TreeText(const HF::LTreeItem& item)
{
    QString text = item.get_NameForViews();
    QString info;
    switch (item.get_ObjectType()) {
    case HF::TYPE_FIELD:
    case HF::TYPE_METHOD:
        if (const auto* properties = dynamic_cast<const HF::LHasProperties*>(&item))
            info = FieldTypeText(*properties);
        break;
    case HF::TYPE_LIST:
        if (const auto* list = dynamic_cast<const HF::LSchemaItemList*>(&item); list && list->IsBuilt())
            info = QString::number(list->get_Count());
        break;
    case HF::TYPE_FUNCTION:
        if (const auto* properties = dynamic_cast<const HF::LHasProperties*>(&item))
            info = properties->GetString(PROP_FUNCTION_TYPE);
        break;
    default:
        if (const auto lazy = item.get_Info(); lazy.IsResolved())
            info = lazy.Force();
    }
    info = info.simplified();
    if (info.size() > MostInfo)
        info = info.left(MostInfo) + QChar(0x2026);
    return info.isEmpty() ? text : text + QLatin1String("  ") + info;
}
