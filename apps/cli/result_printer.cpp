// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/result_printer.h"

#include "cli/json_printer.h"
#include "cli/text_printers.h"

#include <QSet>

namespace orbis {

QStringList ResultFormats()
{
    return {QStringLiteral("table"), QStringLiteral("csv"), QStringLiteral("json"), QStringLiteral("ndjson"),
            QStringLiteral("markdown")};
}

std::unique_ptr<ResultPrinter> MakeResultPrinter(const QString& format, Output& output, Note note, bool color)
{
    if (format == QLatin1String("table"))
        return std::make_unique<TablePrinter>(output, std::move(note), color);
    if (format == QLatin1String("csv"))
        return std::make_unique<CsvPrinter>(output);
    if (format == QLatin1String("json"))
        return std::make_unique<JsonPrinter>(output);
    if (format == QLatin1String("ndjson"))
        return std::make_unique<NdjsonPrinter>(output);
    if (format == QLatin1String("markdown"))
        return std::make_unique<MarkdownPrinter>(output, std::move(note));
    return nullptr;
}

QStringList DistinctNames(const QList<Column>& columns)
{
    QSet<QString> given;
    for (const Column& column : columns)
        given.insert(column.name);
    QSet<QString> used;
    QStringList names;
    for (const Column& column : columns) {
        QString name = column.name;
        for (int number = 1; used.contains(name) || (number > 1 && given.contains(name)); ++number)
            name = QStringLiteral("%1_%2").arg(column.name).arg(number);
        used.insert(name);
        names.append(name);
    }
    return names;
}

} // namespace orbis
