// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/text_width.h"

#include <gtest/gtest.h>

using namespace orbis;

TEST(TextWidth, CountsTerminalColumns)
{
    const struct
    {
        const char16_t* text;
        int width;
    } cases[] = {
        {u"", 0},
        {u"abc", 3},
        {u"Köln", 4},
        {u"Ko\u0308ln", 4},          // a combining mark joins its letter
        {u"京都", 4},                // ideographs
        {u"カフェ", 6},
        {u"한국", 4},
        {u"\u1112\u1161\u11ab", 2},  // one syllable of three letters
        {u"Ａ", 2},                  // full-width letter
        {u"ｱ", 1},                   // half-width one
        {u"😀", 2},
        {u"❤", 1},
        {u"a\u200bb", 2},            // zero-width space
        {u"a\u00adb", 2},            // soft hyphen
        {u"\U00020000", 2},
        {u"½€—", 3},
        {u"\u0627\u0644", 2},
        {u"\u3099", 0},              // combining although it stands among the wide ones
    };
    for (const auto& c : cases)
        EXPECT_EQ(TextWidth(QStringView(c.text)), c.width) << QString::fromUtf16(c.text).toStdString();
    const char16_t lone[] = {u'a', 0xD83D, 0};
    EXPECT_EQ(TextWidth(QStringView(lone)), 2);
}

TEST(VisibleText, ShowsControlCharacters)
{
    EXPECT_EQ(VisibleText("plain Ö 京"), "plain Ö 京");
    EXPECT_EQ(VisibleText("a\nb\tc\r"), QString("a␊b␉c␍"));
    EXPECT_EQ(VisibleText(QString("\x1b[31mred\x7f")), QString("␛[31mred␡"));
    EXPECT_EQ(VisibleText(QString(QChar(0))), QString("␀"));
    EXPECT_EQ(VisibleText(QString(QChar(0x9B))), QString(QChar(QChar::ReplacementCharacter)));
}
