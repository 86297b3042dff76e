// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/text_fidelity.h"

#include "hf/schema_object.h"

#include <QRegularExpression>
#include <QStringList>

namespace {

/// Types whose text needs no quotes anywhere.
bool IsBareSafe(const QString& word)
{
    static const QStringList safe = {
        QStringLiteral("BOOLEAN"),     QStringLiteral("TINYINT"),      QStringLiteral("SMALLINT"),     QStringLiteral("INTEGER"),
        QStringLiteral("BIGINT"),      QStringLiteral("HUGEINT"),      QStringLiteral("UTINYINT"),     QStringLiteral("USMALLINT"),
        QStringLiteral("UINTEGER"),    QStringLiteral("UBIGINT"),      QStringLiteral("UHUGEINT"),     QStringLiteral("FLOAT"),
        QStringLiteral("DOUBLE"),      QStringLiteral("DATE"),         QStringLiteral("TIME"),         QStringLiteral("TIME_NS"),
        QStringLiteral("TIMESTAMP"),   QStringLiteral("TIMESTAMP_S"),  QStringLiteral("TIMESTAMP_MS"), QStringLiteral("TIMESTAMP_NS"),
        QStringLiteral("ZONE"),        QStringLiteral("INTERVAL"),     QStringLiteral("UUID"),         QStringLiteral("BIT"),
        QStringLiteral("DECIMAL"),     QStringLiteral("STRUCT"),       QStringLiteral("MAP"),          QStringLiteral("[]"),
    };
    return safe.contains(word);
}

/// Reads a type text once, noting what makes its values' texts ambiguous.
class Scan
{
public:
    Scan(const QString& text, qsizetype from) : m_text(text)
    {
        for (m_at = from; m_at < m_text.size();)
            Step();
    }

    bool lossy = false;
    qsizetype lastBareArray = -1; ///< where the last "[n]" with elements without quotes stands
    int bareArrays = 0;

private:
    void Step()
    {
        const QChar c = m_text[m_at];
        if (c == u'"' || c == u'\'') {
            Skip(c);
        } else if (c.isLetterOrNumber() || c == u'_') {
            Word();
        } else if (c == u'(') {
            m_open.append(m_last);
            lossy = lossy || m_last == QLatin1String("UNION");
            ++m_at;
        } else if (c == u')') {
            m_last = m_open.isEmpty() ? QString() : m_open.takeLast();
            ++m_at;
        } else if (c == u'[') {
            Brackets();
        } else {
            ++m_at;
        }
    }
    void Skip(QChar quote)
    {
        m_last.clear();
        for (++m_at; m_at < m_text.size() && m_text[m_at] != quote; ++m_at) {
        }
        ++m_at; // a doubled one opens the rest
    }
    void Word()
    {
        const qsizetype start = m_at;
        while (m_at < m_text.size() && (m_text[m_at].isLetterOrNumber() || m_text[m_at] == u'_'))
            ++m_at;
        m_last = m_text.mid(start, m_at - start).toUpper();
        lossy = lossy || m_last == QLatin1String("VARIANT");
    }
    void Brackets()
    {
        const bool isList = m_text.mid(m_at, 2) == QLatin1String("[]");
        lossy = lossy || m_last == QLatin1String("JSON");
        if (!isList && !IsBareSafe(m_last)) {
            lastBareArray = m_at;
            ++bareArrays;
        }
        m_last = QStringLiteral("[]");
        const qsizetype close = m_text.indexOf(u']', m_at);
        m_at = close < 0 ? m_text.size() : close + 1;
    }

    const QString& m_text;
    qsizetype m_at = 0;
    QString m_last; ///< word, or what the last bracket closed
    QStringList m_open;
};

} // namespace

TextFidelity FidelityOf(const QString& typeText)
{
    // The members of a union are told by their texts, but for one inside something else.
    const bool isUnion = typeText.startsWith(QLatin1String("UNION(")) && typeText.endsWith(u')');
    const Scan scan(typeText, isUnion ? 6 : 0);
    if (scan.lossy)
        return TextFidelity::Lossy;
    if (scan.bareArrays == 0)
        return TextFidelity::Exact;
    const bool isAll = !isUnion && scan.bareArrays == 1 && typeText.indexOf(u']', scan.lastBareArray) == typeText.size() - 1;
    return isAll ? TextFidelity::PlainElements : TextFidelity::Lossy;
}

TextFidelity FidelityOf(const HF::I_LField& column)
{
    const QString arguments = column.GetString(PROP_TYPE_ARGUMENTS), element = column.GetString(PROP_ELEMENT_TYPE);
    switch (column.get_Type().Force()) {
    case HF::FIELD_LIST: return FidelityOf(element + QLatin1String("[]"));
    case HF::FIELD_ARRAY: return FidelityOf(QStringLiteral("%1[%2]").arg(element, column.GetString(PROP_ARRAY_SIZE)));
    case HF::FIELD_STRUCT: return FidelityOf(QLatin1String("STRUCT(") + arguments + u')');
    case HF::FIELD_MAP: return FidelityOf(QLatin1String("MAP(") + arguments + u')');
    case HF::FIELD_UNION: return FidelityOf(QLatin1String("UNION(") + arguments + u')');
    case HF::FIELD_UNKNOWN: return FidelityOf(column.GetString(PROP_TYPE_NAME));
    default: return TextFidelity::Exact;
    }
}

bool IsPlainArrayText(const QString& text, int elements)
{
    if (text.size() < 2 || !text.startsWith(u'[') || !text.endsWith(u']'))
        return false;
    static const QRegularExpression plain(QStringLiteral("^[^\\s\"'\\\\\\[\\](){},]+( +[^\\s\"'\\\\\\[\\](){},]+)*$"));
    const QStringList parts = text.mid(1, text.size() - 2).split(QLatin1String(", "));
    if (parts.size() != elements)
        return false;
    for (const QString& part : parts)
        if (!plain.match(part).hasMatch() || part.compare(QLatin1String("NULL"), Qt::CaseInsensitive) == 0)
            return false;
    return true;
}
