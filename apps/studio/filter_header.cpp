// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/filter_header.h"

#include "hf/sql_text.h"

#include <QLineEdit>
#include <QScrollBar>

QString FilterCondition(const QString& column, const QString& typed, bool number)
{
    const QString text = typed.trimmed();
    if (text.isEmpty())
        return {};
    if (text.compare(u"null", Qt::CaseInsensitive) == 0)
        return column + QLatin1String(" IS NULL");
    if (text.compare(u"!null", Qt::CaseInsensitive) == 0)
        return column + QLatin1String(" IS NOT NULL");
    for (const char* sign : {"<=", ">=", "<>", "!=", "=", "<", ">"})
        if (text.startsWith(QLatin1String(sign)))
            return QStringLiteral("%1 %2 %3").arg(
                column, QLatin1String(sign), HF::QuoteText(text.mid(qsizetype(qstrlen(sign))).trimmed()));
    bool isNumber = false;
    text.toDouble(&isNumber);
    if (number && isNumber)
        return QStringLiteral("%1 = %2").arg(column, HF::QuoteText(text));
    return QStringLiteral("contains( lower( CAST( %1 AS VARCHAR ) ), lower( %2 ) )").arg(column, HF::QuoteText(text));
}

FilterHeader::FilterHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent)
{
    setSectionsClickable(true);
    setHighlightSections(false);
    setDefaultAlignment(Qt::AlignLeft | Qt::AlignTop);
    connect(this, &QHeaderView::sectionResized, this, &FilterHeader::Place);
    connect(this, &QHeaderView::sectionCountChanged, this, &FilterHeader::Place);
}

void FilterHeader::SetColumns(int count)
{
    while (m_fields.size() > count)
        delete m_fields.takeLast();
    while (m_fields.size() < count) {
        auto* field = new QLineEdit(this);
        field->setPlaceholderText(tr("Filter"));
        field->setToolTip(tr("A part of the text, or =, <, >, <=, >=, <> and a value; NULL or !NULL"));
        field->setClearButtonEnabled(true);
        connect(field, &QLineEdit::returnPressed, this, &FilterHeader::FilterChanged);
        connect(field, &QLineEdit::textChanged, this, [this](const QString& text) {
            if (text.isEmpty())
                emit FilterChanged(); // the button of the field has cleared it
        });
        field->show();
        m_fields.append(field);
    }
    Place();
}

QSize FilterHeader::sizeHint() const
{
    QSize size = QHeaderView::sizeHint();
    if (!m_fields.isEmpty())
        size.setHeight(size.height() + m_fields.first()->sizeHint().height() + 2);
    return size;
}

void FilterHeader::updateGeometries()
{
    setViewportMargins(0, 0, 0, m_fields.isEmpty() ? 0 : m_fields.first()->sizeHint().height() + 2);
    QHeaderView::updateGeometries();
    Place();
}

void FilterHeader::Place()
{
    const int top = viewport()->geometry().bottom() + 2; // the viewport ends above the fields' line
    for (int i = 0; i < m_fields.size(); ++i) {
        QLineEdit* field = m_fields[i];
        const int height = field->sizeHint().height();
        field->setGeometry(sectionViewportPosition(i), top, sectionSize(i) - 1, height);
        field->setVisible(!isSectionHidden(i));
    }
}
