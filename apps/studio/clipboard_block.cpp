// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/clipboard_block.h"

#include "hf/values.h"

#include <QDataStream>
#include <QIODevice>
#include <QMimeData>

namespace {

const QString Format = QStringLiteral("application/x-orbis-cells");

QList<QVariantList> FromText(QString text)
{
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    if (text.endsWith(u'\n'))
        text.chop(1);
    QList<QVariantList> rows{{}};
    QString cell;
    for (qsizetype at = 0; at <= text.size(); ++at) {
        const QChar c = at < text.size() ? text[at] : QChar();
        if (c == u'"' && cell.isEmpty()) {
            // Spreadsheets quote a cell that holds tabs or line feeds.
            qsizetype end = at + 1;
            QString quoted;
            while (end < text.size()) {
                if (text[end] != u'"')
                    quoted += text[end++];
                else if (end + 1 < text.size() && text[end + 1] == u'"')
                    quoted += u'"', end += 2;
                else
                    break;
            }
            const bool closes = end < text.size() && (end + 1 == text.size() || text[end + 1] == u'\t' || text[end + 1] == u'\n');
            if (closes) {
                cell = quoted;
                at = end;
                continue;
            }
        }
        if (at == text.size() || c == u'\t' || c == u'\n') {
            rows.last().append(cell);
            cell.clear();
            if (c == u'\n' && at < text.size())
                rows.append(QVariantList());
            continue;
        }
        cell += c;
    }
    return rows;
}

} // namespace

void PutBlock(QMimeData& data, const CellSource& cells, const QList<int>& rows, const QList<int>& columns)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << qint32(rows.size()) << qint32(columns.size());
    for (const int row : rows)
        for (const int column : columns) {
            const rc::Ptr<HF::I_LSqlValue> value = cells.Value(row, column);
            if (!value || value->get_IsNull())
                out << QVariant();
            else if (dynamic_cast<const HF::LValueByteArray*>(value.get()))
                out << QVariant(value->get_Data());
            else
                out << QVariant(value->get_String());
        }
    data.setData(Format, bytes);
}

QList<QVariantList> TakeBlock(const QMimeData& data)
{
    if (!data.hasFormat(Format))
        return data.hasText() ? FromText(data.text()) : QList<QVariantList>();
    QDataStream in(data.data(Format));
    qint32 rows = 0, columns = 0;
    in >> rows >> columns;
    QList<QVariantList> block;
    for (qint32 row = 0; row < rows && in.status() == QDataStream::Ok; ++row) {
        QVariantList cells;
        for (qint32 column = 0; column < columns; ++column) {
            QVariant value;
            in >> value;
            cells.append(value);
        }
        block.append(cells);
    }
    return in.status() == QDataStream::Ok ? block : QList<QVariantList>();
}
