// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/object_name.h"

#include "hf/design.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace orbis {

std::optional<ObjectName> ParseObjectName(const QString& text)
{
    const qsizetype colon = text.indexOf(u':');
    if (colon <= 0)
        return std::nullopt;
    ObjectName result{text.left(colon), {}};
    if (colon + 1 == text.size())
        return result;
    QString name;
    bool quoted = false;
    for (qsizetype at = colon + 1; at < text.size(); ++at) {
        const QChar c = text[at];
        if (quoted && c == u'"' && at + 1 < text.size() && text[at + 1] == u'"') {
            name += c;
            ++at;
        } else if (c == u'"') {
            quoted = !quoted;
        } else if (c == u'.' && !quoted) {
            result.names.append(name);
            name.clear();
        } else {
            name += c;
        }
    }
    if (quoted)
        return std::nullopt;
    result.names.append(name);
    return result;
}

HF::ELObjectType KindByWord(const QString& word)
{
    static const QHash<QString, HF::ELObjectType> kinds{
        {QStringLiteral("database"), HF::TYPE_DATABASE}, {QStringLiteral("schema"), HF::TYPE_SCHEMA},
        {QStringLiteral("table"), HF::TYPE_TABLE},       {QStringLiteral("view"), HF::TYPE_VIEW},
        {QStringLiteral("function"), HF::TYPE_FUNCTION}, {QStringLiteral("sequence"), HF::TYPE_SEQUENCE},
        {QStringLiteral("link"), HF::TYPE_LINK},         {QStringLiteral("field"), HF::TYPE_FIELD},
        {QStringLiteral("method"), HF::TYPE_METHOD},     {QStringLiteral("index"), HF::TYPE_INDEX},
        {QStringLiteral("unique"), HF::TYPE_UNIQUE},     {QStringLiteral("check"), HF::TYPE_CHECK},
    };
    return kinds.value(word, HF::TYPE_NONE);
}

HF::ELObjectType OwnerKind(HF::ELObjectType kind)
{
    switch (kind) {
    case HF::TYPE_SCHEMA: return HF::TYPE_DATABASE;
    case HF::TYPE_TABLE:
    case HF::TYPE_VIEW:
    case HF::TYPE_FUNCTION:
    case HF::TYPE_SEQUENCE:
    case HF::TYPE_LINK: return HF::TYPE_SCHEMA;
    case HF::TYPE_FIELD:
    case HF::TYPE_METHOD:
    case HF::TYPE_INDEX:
    case HF::TYPE_UNIQUE:
    case HF::TYPE_CHECK: return HF::TYPE_TABLE;
    default: return HF::TYPE_NONE;
    }
}

HF::LVariant PropertyValue(const HF::LProperty& property, const QString& text)
{
    switch (property.value.get_Type()) {
    case HF::LVariant::Bool: return text.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0 || text == u"1";
    case HF::LVariant::StringList: {
        const QJsonDocument json = QJsonDocument::fromJson(text.toUtf8());
        if (json.isArray())
            return json.array().toVariantList().isEmpty() ? QStringList() : QVariant(json.array().toVariantList()).toStringList();
        return text.isEmpty() ? QStringList() : text.split(u',');
    }
    case HF::LVariant::Long:
    case HF::LVariant::ULong: return HF::ValueFor(property, text);
    default: return text;
    }
}

std::optional<int> PropertyNumber(const HF::LHasProperties& object, const QString& text)
{
    bool number = false;
    const int id = text.toInt(&number);
    if (number)
        return id;
    for (const HF::LProperty& property : object.get_Properties())
        if (HF::LPropertyID::GetPropertyName(property.id).compare(text, Qt::CaseInsensitive) == 0)
            return property.id;
    return std::nullopt;
}

} // namespace orbis
