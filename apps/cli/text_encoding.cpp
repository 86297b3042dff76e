// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/text_encoding.h"

#include <QObject>

namespace orbis {

void AppendUtf8(std::string& out, QStringView text)
{
    const char16_t* p = text.utf16();
    const char16_t* const end = p + text.size();
    while (p != end) {
        const char16_t unit = *p++;
        if (unit < 0x80) {
            out.push_back(static_cast<char>(unit));
        } else if (unit < 0x800) {
            out.push_back(static_cast<char>(0xC0 | (unit >> 6)));
            out.push_back(static_cast<char>(0x80 | (unit & 0x3F)));
        } else if (QChar::isHighSurrogate(unit) && p != end && QChar::isLowSurrogate(*p)) {
            const char32_t code = QChar::surrogateToUcs4(unit, *p++);
            out.push_back(static_cast<char>(0xF0 | (code >> 18)));
            out.push_back(static_cast<char>(0x80 | ((code >> 12) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
        } else {
            const char16_t good = QChar::isSurrogate(unit) ? 0xFFFD : unit;
            out.push_back(static_cast<char>(0xE0 | (good >> 12)));
            out.push_back(static_cast<char>(0x80 | ((good >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (good & 0x3F)));
        }
    }
}

namespace {

/// Length of the well-formed UTF-8 sequence at `p`; 0 when there is none.
int SequenceLength(const unsigned char* p, qsizetype left)
{
    const auto follows = [&](int index, unsigned char low = 0x80, unsigned char high = 0xBF) {
        return index < left && p[index] >= low && p[index] <= high;
    };
    const unsigned char first = p[0];
    if (first < 0x80)
        return 1;
    if (first >= 0xC2 && first <= 0xDF)
        return follows(1) ? 2 : 0;
    if (first >= 0xE0 && first <= 0xEF) {
        const unsigned char low = first == 0xE0 ? 0xA0 : 0x80;
        const unsigned char high = first == 0xED ? 0x9F : 0xBF; // no surrogates
        return follows(1, low, high) && follows(2) ? 3 : 0;
    }
    if (first >= 0xF0 && first <= 0xF4) {
        const unsigned char low = first == 0xF0 ? 0x90 : 0x80;
        const unsigned char high = first == 0xF4 ? 0x8F : 0xBF;
        return follows(1, low, high) && follows(2) && follows(3) ? 4 : 0;
    }
    return 0;
}

} // namespace

DecodedText DecodeUtf8(const QByteArray& bytes)
{
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.constData());
    qsizetype start = 0;
    if (bytes.startsWith("\xEF\xBB\xBF"))
        start = 3;
    qsizetype line = 1;
    for (qsizetype i = start; i < bytes.size();) {
        const int length = SequenceLength(data + i, bytes.size() - i);
        if (length == 0)
            return {{}, QObject::tr("line %1: not valid UTF-8").arg(line)};
        if (data[i] == 0)
            return {{}, QObject::tr("line %1: a zero byte").arg(line)};
        if (data[i] == '\n')
            ++line;
        i += length;
    }
    return {QString::fromUtf8(bytes.constData() + start, bytes.size() - start), {}};
}

std::optional<QByteArray> DecodeHex(const QString& text)
{
    QByteArray bytes;
    bytes.reserve(text.size() / 2);
    int high = -1;
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        int digit;
        if (unit >= '0' && unit <= '9')
            digit = unit - '0';
        else if ((unit | 0x20) >= 'a' && (unit | 0x20) <= 'f')
            digit = (unit | 0x20) - 'a' + 10;
        else if (unit == ' ' && high < 0)
            continue;
        else
            return std::nullopt;
        if (high < 0) {
            high = digit;
        } else {
            bytes.append(static_cast<char>(high << 4 | digit));
            high = -1;
        }
    }
    if (high >= 0)
        return std::nullopt;
    return bytes;
}

QString BytesText(const QByteArray& bytes)
{
    static constexpr char Digits[] = "0123456789ABCDEF";
    QString text;
    text.reserve(bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        // Quotes and the backslash stay unambiguous when the text is cast back.
        if (byte >= 0x20 && byte < 0x7F && byte != '\\' && byte != '\'' && byte != '"') {
            text += QLatin1Char(c);
        } else {
            text += QLatin1String("\\x");
            text += QLatin1Char(Digits[byte >> 4]);
            text += QLatin1Char(Digits[byte & 15]);
        }
    }
    return text;
}

} // namespace orbis
