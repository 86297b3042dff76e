// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/script_with_name.h"

#include "hf/sql_text.h"
#include "model/text_helpers.h"

const QString ViewPattern = QStringLiteral(
    "CREATE [ OR REPLACE ] [ TEMP ] [ TEMPORARY ] VIEW [ IF NOT EXISTS ] %NAME1 [ . %NAME2 ] [ ( #COLUMNS ) ] AS @STOP");
const QString FunctionPattern = QStringLiteral(
    "CREATE [ OR REPLACE ] [ TEMPORARY ] [ TEMP ] [ MACRO ] [ FUNCTION ] %NAME1 [ . %NAME2 ] ( #PARAMS @STOP");

QString ReplaceIdents(const QString& text, const HF::LParser& parsed, const QString& first, const QString& last,
                      const QString& name)
{
    qsizetype start = parsed.get_IdentPosition(first);
    const qsizetype end = parsed.get_IdentEndPosition(last);
    if (start > 0 && text[start - 1] == u'"')
        --start;
    return text.left(start) + name + text.mid(end);
}

QString ScriptWithName(const rc::Ref<const HF::I_LSchemaObject>& object, const QString& text, bool orReplace,
                       const QString& pattern)
{
    const QString Name1 = QStringLiteral("NAME1");
    const QString Name2 = QStringLiteral("NAME2");
    HF::LParser parser(pattern);
    if (!parser.Parse(text))
        return QString();
    const QString name = object->GetString(PROP_NAME);
    const QString schema = SchemaNameOf(object);
    const QString first = parser.get_Ident(Name1);
    const QString second = parser.get_Ident(Name2);
    const auto same = [](const QString& one, const QString& other) {
        return one.compare(other, Qt::CaseInsensitive) == 0;
    };
    const bool temporaryView = object->get_ObjectType() == HF::TYPE_VIEW && object->GetBool(PROP_TEMPORARY);
    QString result = text;
    if (!first.isEmpty() && !second.isEmpty()) {
        if (!same(first, schema) || !same(second, name))
            result = ReplaceIdents(text, parser, Name1, Name2,
                                   temporaryView ? EngineQuoteName(name, object) : QualifiedName(schema, name));
    } else if (!same(first, name)) {
        result = ReplaceIdents(text, parser, Name1, Name1, EngineQuoteName(name, object));
    }
    const qsizetype create = parser.get_TokenPosition(QStringLiteral("CREATE"));
    if (orReplace && parser.get_TokenPosition(QStringLiteral("REPLACE")) < 0 && create >= 0)
        result.insert(create + 6, QLatin1String(" OR REPLACE"));
    HF::FinishQuery(result, 1);
    return result;
}
