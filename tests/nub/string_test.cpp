// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/exception.h"
#include "nub/string.h"

#include <gtest/gtest.h>

#include <random>

namespace nub::test {
namespace {

TEST(String, WellFormedTextComesBack)
{
    std::mt19937 random(4711);
    for (int round = 0; round < 3000; ++round) {
        // Runs of ASCII of all lengths around the width of the fast path, with others between.
        std::u32string codes;
        const int parts = 1 + static_cast<int>(random() % 4);
        for (int part = 0; part < parts; ++part) {
            codes.append(random() % 40, static_cast<char32_t>(random() % 0x80));
            const char32_t bounds[][2] = {{0x80, 0x7FF}, {0x800, 0xD7FF}, {0xE000, 0xFFFF}, {0x10000, 0x10FFFF}};
            const auto& bound = bounds[random() % 4];
            codes.append(random() % 3, bound[0] + static_cast<char32_t>(random()) % (bound[1] - bound[0] + 1));
        }
        std::string utf8;
        std::u16string utf16;
        for (char32_t c : codes) {
            if (c < 0x80) {
                utf8 += static_cast<char>(c);
            } else {
                const int more = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
                const unsigned char leads[] = {0, 0xC0, 0xE0, 0xF0};
                utf8 += static_cast<char>(leads[more] | c >> 6 * more);
                for (int i = more - 1; i >= 0; --i)
                    utf8 += static_cast<char>(0x80 | (c >> 6 * i & 0x3F));
            }
            if (c < 0x10000)
                utf16 += static_cast<char16_t>(c);
            else {
                utf16 += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
                utf16 += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
            }
        }
        const String text = String::FromUtf8(utf8);
        ASSERT_EQ(text.view(), utf16);
        ASSERT_EQ(text.ToUtf8(), utf8);
        std::u16string appended = u"<";
        AppendUtf8(appended, utf8.data(), utf8.size());
        ASSERT_EQ(appended, u"<" + utf16);
    }
}

TEST(String, MalformedTextIsReplaced)
{
    const std::pair<std::string, std::u16string> cases[] = {
        {"a\x80z", u"a\uFFFDz"},                     // a lone continuation
        {"\xC0\xAF", u"\uFFFD\uFFFD"},               // overlong
        {"\xE2\x82", u"\uFFFD"},                     // cut short
        {"\xE2\x82z", u"\uFFFDz"},                   //
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},     // a surrogate
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"}, // above the last code
        {"\xFF" "ab", u"\uFFFD" u"ab"},
        {"", u""},
    };
    for (const auto& [utf8, utf16] : cases)
        EXPECT_EQ(String::FromUtf8(utf8).view(), utf16);
    EXPECT_EQ(String(u"a\xD800z").ToUtf8(), "a\uFFFDz");
    EXPECT_EQ(String(u"\xDC00").ToUtf8(), "\uFFFD");
    EXPECT_EQ(String(u"\xD83D").ToUtf8(), "\uFFFD");
}

TEST(String, Trimming)
{
    EXPECT_EQ(String(u" \t\r\n\u00A0x y\v\f ").Trimmed().view(), u"x y");
    EXPECT_EQ(String(u" \n ").Trimmed().view(), u"");
    EXPECT_EQ(String(u"x").Trimmed().view(), u"x");
}

TEST(Exception, CarriesItsTextBothWays)
{
    try {
        throw xException("Größe");
    } catch (const std::exception& error) {
        EXPECT_STREQ(error.what(), "Größe");
        EXPECT_EQ(dynamic_cast<const xException&>(error).get_Message().view(), u"Größe");
    }
}

} // namespace
} // namespace nub::test
