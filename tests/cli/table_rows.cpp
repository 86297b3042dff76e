// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/table_rows.h"

#include "cli/text_encoding.h"

#include <QTemporaryFile>

orbis::Cell BytesCell(const QByteArray& bytes)
{
    return {orbis::Cell::Bytes, orbis::BytesText(bytes), bytes};
}

QByteArray Printed(const QString& format, const QList<TableRows*>& results, QStringList* notes, bool color)
{
    QTemporaryFile file;
    if (!file.open())
        return "no temporary file";
    orbis::Output output(file.handle());
    const auto printer = orbis::MakeResultPrinter(
        format, output,
        [notes](const QString& words) {
            if (notes)
                notes->append(words);
        },
        color);
    printer->Begin();
    for (TableRows* rows : results)
        printer->Print({rows ? 1 : 3, rows ? 0 : 2, {}}, rows);
    printer->End();
    output.Flush();
    file.seek(0);
    return file.readAll();
}
