// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/copy_text.h"

#include "hf/sql_text.h"
#include "hf/values.h"
#include "studio/cell_source.h"

namespace {

using Value = rc::Ptr<HF::I_LSqlValue>;

bool IsNull(const Value& value)
{
    return !value || value->get_IsNull();
}

QString PlainText(const Value& value)
{
    if (IsNull(value))
        return {};
    if (dynamic_cast<const HF::LValueByteArray*>(value.get()))
        return QString::fromLatin1(value->get_Data().toHex());
    return value->get_String();
}

/// Line feeds and tabs would break the rows and columns of the receiver.
QString TabText(const Value& value)
{
    return PlainText(value).replace(u'\t', u' ').replace(QLatin1String("\r\n"), QLatin1String(" ")).replace(u'\n', u' ');
}

QString CsvField(QString text, bool null)
{
    if (null)
        return {};
    const bool quote = text.isEmpty() || text.contains(u',') || text.contains(u'"') || text.contains(u'\n')
                       || text.contains(u'\r');
    return quote ? u'"' + text.replace(u'"', QLatin1String("\"\"")) + u'"' : text;
}

QString Literal(const Value& value)
{
    if (IsNull(value))
        return QStringLiteral("NULL");
    const HF::I_LSqlValue* object = value.get();
    if (dynamic_cast<const HF::LValueByteArray*>(object))
        return QStringLiteral("unhex('%1')").arg(QString::fromLatin1(value->get_Data().toHex()));
    const QString text = value->get_String();
    if (dynamic_cast<const HF::LValueBoolean*>(object) || dynamic_cast<const HF::LValueIntegral*>(object))
        return text;
    return HF::QuoteText(text);
}

} // namespace

QString CopyText(const CellSource& cells, const QList<int>& rows, const QList<int>& columns, CopyForm form,
                 const QString& table)
{
    const rc::Ptr<const HF::LTreeItem> item = cells.get_Item();
    QStringList names;
    for (const int column : columns)
        names.append(cells.ColumnName(column));

    QString text;
    if (form == CopyForm::Csv) {
        QStringList header;
        for (const QString& name : names)
            header.append(CsvField(name, false));
        text += header.join(u',') + u'\n';
    }
    const QString insert = form == CopyForm::Insert ? QStringLiteral("INSERT INTO %1 (%2) VALUES (")
                                                          .arg(table, HF::JoinIdentifiers(names, item))
                                                    : QString();
    for (const int row : rows) {
        QStringList texts;
        for (const int column : columns) {
            const Value value = cells.Value(row, column);
            switch (form) {
            case CopyForm::Text:
                texts.append(TabText(value));
                break;
            case CopyForm::Csv:
                texts.append(CsvField(PlainText(value), IsNull(value)));
                break;
            case CopyForm::Insert:
                texts.append(Literal(value));
                break;
            }
        }
        switch (form) {
        case CopyForm::Text:
            text += texts.join(u'\t') + u'\n';
            break;
        case CopyForm::Csv:
            text += texts.join(u',') + u'\n';
            break;
        case CopyForm::Insert:
            text += insert + texts.join(QLatin1String(", ")) + QLatin1String(");\n");
            break;
        }
    }
    if (form == CopyForm::Text && text.endsWith(u'\n'))
        text.chop(1);
    return text;
}
