// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/text_width.h"

#include <QChar>

#include <algorithm>
#include <iterator>

namespace orbis {

namespace {

struct Range
{
    char32_t first;
    char32_t last;
};

// Characters that terminals draw two columns wide: East Asian wide and full
// width, and the pictographs. Ascending.
constexpr Range WideRanges[] = {
    {0x1100, 0x115F},   {0x231A, 0x231B},   {0x2329, 0x232A},   {0x23E9, 0x23EC},   {0x23F0, 0x23F0},
    {0x23F3, 0x23F3},   {0x25FD, 0x25FE},   {0x2614, 0x2615},   {0x2648, 0x2653},   {0x267F, 0x267F},
    {0x2693, 0x2693},   {0x26A1, 0x26A1},   {0x26AA, 0x26AB},   {0x26BD, 0x26BE},   {0x26C4, 0x26C5},
    {0x26CE, 0x26CE},   {0x26D4, 0x26D4},   {0x26EA, 0x26EA},   {0x26F2, 0x26F3},   {0x26F5, 0x26F5},
    {0x26FA, 0x26FA},   {0x26FD, 0x26FD},   {0x2705, 0x2705},   {0x270A, 0x270B},   {0x2728, 0x2728},
    {0x274C, 0x274C},   {0x274E, 0x274E},   {0x2753, 0x2755},   {0x2757, 0x2757},   {0x2795, 0x2797},
    {0x27B0, 0x27B0},   {0x27BF, 0x27BF},   {0x2B1B, 0x2B1C},   {0x2B50, 0x2B50},   {0x2B55, 0x2B55},
    {0x2E80, 0x2E99},   {0x2E9B, 0x2EF3},   {0x2F00, 0x2FD5},   {0x2FF0, 0x2FFB},   {0x3000, 0x303E},
    {0x3041, 0x3096},   {0x3099, 0x30FF},   {0x3105, 0x312F},   {0x3131, 0x318E},   {0x3190, 0x31E3},
    {0x31F0, 0x321E},   {0x3220, 0x3247},   {0x3250, 0x4DBF},   {0x4E00, 0xA48C},   {0xA490, 0xA4C6},
    {0xA960, 0xA97C},   {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE10, 0xFE19},   {0xFE30, 0xFE52},
    {0xFE54, 0xFE66},   {0xFE68, 0xFE6B},   {0xFF01, 0xFF60},   {0xFFE0, 0xFFE6},   {0x16FE0, 0x16FE4},
    {0x17000, 0x18CD5}, {0x18D00, 0x18D08}, {0x1B000, 0x1B2FB}, {0x1F004, 0x1F004}, {0x1F0CF, 0x1F0CF},
    {0x1F18E, 0x1F18E}, {0x1F191, 0x1F19A}, {0x1F200, 0x1F265}, {0x1F300, 0x1F320}, {0x1F32D, 0x1F335},
    {0x1F337, 0x1F37C}, {0x1F37E, 0x1F393}, {0x1F3A0, 0x1F3CA}, {0x1F3CF, 0x1F3D3}, {0x1F3E0, 0x1F3F0},
    {0x1F3F4, 0x1F3F4}, {0x1F3F8, 0x1F43E}, {0x1F440, 0x1F440}, {0x1F442, 0x1F4FC}, {0x1F4FF, 0x1F53D},
    {0x1F54B, 0x1F54E}, {0x1F550, 0x1F567}, {0x1F57A, 0x1F57A}, {0x1F595, 0x1F596}, {0x1F5A4, 0x1F5A4},
    {0x1F5FB, 0x1F64F}, {0x1F680, 0x1F6C5}, {0x1F6CC, 0x1F6CC}, {0x1F6D0, 0x1F6D2}, {0x1F6D5, 0x1F6D7},
    {0x1F6DC, 0x1F6DF}, {0x1F6EB, 0x1F6EC}, {0x1F6F4, 0x1F6FC}, {0x1F7E0, 0x1F7EB}, {0x1F7F0, 0x1F7F0},
    {0x1F90C, 0x1F93A}, {0x1F93C, 0x1F945}, {0x1F947, 0x1F9FF}, {0x1FA70, 0x1FAF8}, {0x20000, 0x2FFFD},
    {0x30000, 0x3FFFD},
};

bool IsWide(char32_t character)
{
    if (character < WideRanges[0].first)
        return false;
    const auto next = std::upper_bound(std::begin(WideRanges), std::end(WideRanges), character,
                                       [](char32_t value, const Range& range) { return value < range.first; });
    return character <= std::prev(next)->last;
}

} // namespace

int CharacterWidth(char32_t character)
{
    if (character < 0x300)
        return character == 0xAD ? 0 : 1;
    switch (QChar::category(character)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:
        return 0;
    default:
        break;
    }
    if (character >= 0x1160 && character <= 0x11FF)
        return 0; // the vowels and finals of a Hangul syllable join its initial
    return IsWide(character) ? 2 : 1;
}

int TextWidth(QStringView text)
{
    int width = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        if (QChar::isHighSurrogate(unit) && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            width += CharacterWidth(QChar::surrogateToUcs4(unit, text[++i].unicode()));
        else
            width += CharacterWidth(unit);
    }
    return width;
}

QString VisibleText(const QString& text)
{
    const auto isControl = [](QChar c) { return c.unicode() < 0x20 || (c.unicode() >= 0x7F && c.unicode() < 0xA0); };
    if (std::none_of(text.begin(), text.end(), isControl))
        return text;
    QString result = text;
    for (QChar& c : result) {
        if (c.unicode() < 0x20)
            c = QChar(0x2400 + c.unicode());
        else if (c.unicode() == 0x7F)
            c = QChar(0x2421);
        else if (isControl(c))
            c = QChar(QChar::ReplacementCharacter);
    }
    return result;
}

} // namespace orbis
