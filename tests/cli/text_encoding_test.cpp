// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/text_encoding.h"

#include <gtest/gtest.h>

using namespace orbis;

TEST(DecodeUtf8, TakesWellFormedText)
{
    const QByteArray texts[] = {
        "", "abc", "Köln", "\xE4\xBA\xAC", "\xF0\x9F\x98\x80", "\xED\x9F\xBF", "\xEE\x80\x80", "\xF4\x8F\xBF\xBF", "\xC2\x80",
    };
    for (const QByteArray& text : texts) {
        const DecodedText decoded = DecodeUtf8(text);
        EXPECT_EQ(decoded.error, QString()) << text.toHex().toStdString();
        EXPECT_EQ(decoded.text.toUtf8(), text);
    }
    EXPECT_EQ(DecodeUtf8("\xEF\xBB\xBFSELECT 1").text, "SELECT 1");
    EXPECT_EQ(DecodeUtf8("\xEF\xBB\xBF").text, "");
}

TEST(DecodeUtf8, NamesTheLineOfWhatIsMalformed)
{
    const struct
    {
        QByteArray text;
        const char* line;
    } cases[] = {
        {"\x80", "line 1"},                    // a tail byte alone
        {"a\nb\n\xC3", "line 3"},              // cut short
        {"\n\xC0\xAF", "line 2"},              // longer than needed
        {"\xE0\x80\xAF", "line 1"},
        {"\xF0\x80\x80\xAF", "line 1"},
        {"\xED\xA0\x80", "line 1"},            // a surrogate
        {"\xF4\x90\x80\x80", "line 1"},        // beyond the last character
        {"\xF5\x80\x80\x80", "line 1"},
        {"\xFF\xFE", "line 1"},                // UTF-16
        {"\n\n\xE4\xBA", "line 3"},
        {"\xEF\xBB\xBF\n\xFF", "line 2"},
        {QByteArray("a\n\0b", 4), "line 2"},
    };
    for (const auto& c : cases) {
        const DecodedText decoded = DecodeUtf8(c.text);
        EXPECT_TRUE(decoded.error.startsWith(c.line))
            << c.text.toHex().toStdString() << ": " << decoded.error.toStdString();
        EXPECT_TRUE(decoded.text.isEmpty());
    }
}

TEST(AppendUtf8, AgreesWithQt)
{
    QString all;
    for (char32_t c = 1; c < 0x30000; c += c < 0x900 ? 1 : 37) {
        if (QChar::isSurrogate(c))
            continue;
        all += QString::fromUcs4(&c, 1);
    }
    std::string bytes;
    AppendUtf8(bytes, all);
    EXPECT_EQ(QByteArray::fromStdString(bytes), all.toUtf8());
    const struct
    {
        QString text;
        const char* bytes;
    } lone[] = {
        {QString(QChar(0xD800)), "\xEF\xBF\xBD"},
        {QString(QChar(0xDC00)) + "x", "\xEF\xBF\xBDx"},
        {QString(QChar(0xD800)) + QChar(0xD83D) + QChar(0xDE00), "\xEF\xBF\xBD\xF0\x9F\x98\x80"},
    };
    for (const auto& c : lone) {
        bytes.clear();
        AppendUtf8(bytes, c.text);
        EXPECT_EQ(bytes, c.bytes);
    }
}

TEST(DecodeHex, TakesPairsOnly)
{
    EXPECT_EQ(DecodeHex(""), QByteArray());
    EXPECT_EQ(DecodeHex("00fFa1"), QByteArray("\0\xFF\xA1", 3));
    EXPECT_EQ(DecodeHex("00 ff"), QByteArray("\0\xFF", 2));
    for (const char* bad : {"0", "0x00", "0g", "0 0", "00f", "-1", "00\n"})
        EXPECT_FALSE(DecodeHex(bad)) << bad;
}

TEST(BytesText, IsTheEnginesText)
{
    EXPECT_EQ(BytesText("abc"), "abc");
    EXPECT_EQ(BytesText(QByteArray("\0\xFF\\'\"~ ", 7)), "\\x00\\xFF\\x5C\\x27\\x22~ ");
}
