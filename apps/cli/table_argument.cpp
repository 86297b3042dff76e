// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/table_argument.h"

#include "cli/console.h"

#include "hf/table_lookup.h"

#include <QObject>

namespace orbis {

namespace {

/// The name at the beginning, in double quotes; `rest` is what stands behind.
/// False when the text does not begin so.
bool ReadQuotedName(const QString& text, QString& name, QString& rest)
{
    if (!text.startsWith(u'"'))
        return false;
    name.clear();
    for (qsizetype at = 1; at < text.size(); ++at) {
        if (text[at] != u'"') {
            name += text[at];
        } else if (at + 1 < text.size() && text[at + 1] == u'"') {
            name += u'"';
            ++at;
        } else {
            rest = text.mid(at + 1);
            return !name.isEmpty();
        }
    }
    return false;
}

ColumnText WithValue(const QString& column, const QString& value)
{
    if (value.startsWith(QLatin1String("@@")))
        return {column, ColumnText::Text, value.mid(1)};
    if (value.startsWith(u'@'))
        return {column, ColumnText::File, value.mid(1)};
    return {column, ColumnText::Text, value};
}

} // namespace

OpenedTable OpenTable(const CommandLine& line)
{
    OpenedTable opened;
    opened.exitCode = ExitCannotOpen;
    opened.session = HostSession::Load(line);
    if (!opened.session)
        return opened;
    opened.session->ReadWordsAhead();
    const rc::Ptr<HF::I_LDatabase> database = opened.session->Open(line.arguments[0]);
    if (!database)
        return opened;
    const QString& name = line.arguments[1];
    if (const rc::Ptr<HF::I_LSchemaObject> table = HF::FindTable(rc::Ref<HF::I_LDatabase>(database), name, true))
        opened.cursor = table->OpenCursor(0, line.Has(QStringLiteral("row-id")), true, false);
    opened.exitCode = opened.cursor ? ExitDone : ExitRefused;
    if (!opened.cursor)
        Console::Instance().Error(QObject::tr("there is no table or view \"%1\"").arg(name));
    return opened;
}

std::optional<ColumnText> ParseColumnText(const QString& text)
{
    QString name, rest;
    if (ReadQuotedName(text, name, rest)) {
        if (rest == QLatin1String(":null"))
            return ColumnText{name, ColumnText::Null, {}};
        if (rest.startsWith(u'='))
            return WithValue(name, rest.mid(1));
        return std::nullopt;
    }
    const qsizetype equals = text.indexOf(u'=');
    if (equals > 0)
        return WithValue(text.left(equals), text.mid(equals + 1));
    if (equals < 0 && text.size() > 5 && text.endsWith(QLatin1String(":null"), Qt::CaseInsensitive))
        return ColumnText{text.chopped(5), ColumnText::Null, {}};
    return std::nullopt;
}

std::optional<HF::LSortField> ParseSortField(const QString& text)
{
    QString name, rest;
    if (!ReadQuotedName(text, name, rest)) {
        const qsizetype colon = text.lastIndexOf(u':');
        name = colon < 0 ? text : text.left(colon);
        rest = colon < 0 ? QString() : text.mid(colon);
    }
    const QString direction = rest.toLower();
    if (name.isEmpty() || !(direction.isEmpty() || direction == QLatin1String(":asc") || direction == QLatin1String(":desc")))
        return std::nullopt;
    return HF::LSortField{name, direction == QLatin1String(":desc")};
}

} // namespace orbis
