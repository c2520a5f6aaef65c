// SPDX-License-Identifier: MIT
#include "reading/charset.h"

#include <gtest/gtest.h>

#include "base/failure.h"

using caption::LooksLikeText;
using caption::Notices;
using caption::ToUtf8;
using Said = std::vector<std::string>;

static const std::string g_text = "1\n00:00:01,000 --> 00:00:02,000\nD\u00E9j\u00E0 \u4E2D \U0001F600\n";

static std::string Wide(const std::u16string &text, bool bigEndian)
{
    std::string bytes;
    for (const char16_t unit : text) {
        const char high = char(unit >> 8);
        const char low = char(unit & 0xFF);
        bytes += bigEndian ? std::string{high, low} : std::string{low, high};
    }
    return bytes;
}

static std::string Wider(const std::u32string &text, bool bigEndian)
{
    std::string bytes;
    for (const char32_t unit : text) {
        std::string one = {char(unit & 0xFF), char(unit >> 8 & 0xFF), char(unit >> 16 & 0xFF),
                           char(unit >> 24)};
        bytes += bigEndian ? std::string(one.rbegin(), one.rend()) : one;
    }
    return bytes;
}

static const std::u16string g_wide = u"1\n00:00:01,000 --> 00:00:02,000\nD\u00E9j\u00E0 \u4E2D \U0001F600\n";
static const std::u32string g_wider = U"1\n00:00:01,000 --> 00:00:02,000\nD\u00E9j\u00E0 \u4E2D \U0001F600\n";

static void ExpectQuietly(const std::string &bytes, const std::string &text)
{
    Notices notices;
    EXPECT_TRUE(LooksLikeText(bytes));
    EXPECT_EQ(ToUtf8(bytes, "", notices), text);
    EXPECT_EQ(notices.said(), Said{});
}

TEST(Charset, KeepsUtf8AndDropsItsMark)
{
    ExpectQuietly(g_text, g_text);
    ExpectQuietly("\xEF\xBB\xBF" + g_text, g_text);
    ExpectQuietly("plain\n", "plain\n");
}

TEST(Charset, ReadsWideCharactersWithAMarkAndWithout)
{
    for (const bool bigEndian : {false, true}) {
        ExpectQuietly(Wide(u"\uFEFF" + g_wide, bigEndian), g_text);
        ExpectQuietly(Wide(g_wide, bigEndian), g_text);
        ExpectQuietly(Wider(U"\uFEFF" + g_wider, bigEndian), g_text);
        ExpectQuietly(Wider(g_wider, bigEndian), g_text);
    }
}

TEST(Charset, GuessesALegacySetAndSaysSo)
{
    // "Привет, как дела? Спасибо, хорошо." and a sentence of Shift JIS, "日本語の字幕です。".
    const std::string cyrillic =
        "\xCF\xF0\xE8\xE2\xE5\xF2, \xEA\xE0\xEA \xE4\xE5\xEB\xE0? \xD1\xEF\xE0\xF1\xE8\xE1"
        "\xEE, \xF5\xEE\xF0\xEE\xF8\xEE.";
    const std::string japanese = "\x93\xFA\x96\x7B\x8C\xEA\x82\xCC\x8E\x9A\x96\x8B\x82\xC5\x82\xB7\x81\x42";
    Notices notices;

    EXPECT_EQ(ToUtf8(cyrillic, "", notices), "Привет, как дела? Спасибо, хорошо.");
    EXPECT_EQ(ToUtf8(japanese, "", notices), "日本語の字幕です。");
    EXPECT_EQ(notices.said(), (Said{"character set detected as WINDOWS-1251; if that is wrong, set --charset",
                                    "character set detected as SHIFT_JIS; if that is wrong, set --charset"}));
}

TEST(Charset, ReadsJapaneseOfSevenBits)
{
    Notices notices;
    EXPECT_EQ(ToUtf8("\x1B$BF|K\\8l$N;zKk$G$9\x1B(B\n", "", notices), "日本語の字幕です\n");
}

TEST(Charset, TakesTheSetThatIsNamed)
{
    Notices notices;
    EXPECT_EQ(ToUtf8("\xC1\xE8", "KOI8-R", notices), "аХ");
    EXPECT_EQ(ToUtf8("\xC1\xE8", "ISO-8859-7", notices), "Αθ");
    EXPECT_EQ(ToUtf8(Wide(u"\uFEFF\u00E9", false), "UTF-16", notices), "é");
    EXPECT_EQ(notices.said(), Said{});
}

TEST(Charset, RefusesANameThatNobodyKnows)
{
    Notices notices;
    EXPECT_THROW(ToUtf8("a", "KOI9", notices), caption::Failure);
}

TEST(Charset, ReplacesWhatMeansNothingAndNamesItsLine)
{
    Notices notices;
    EXPECT_EQ(ToUtf8("one\ntw\xFFo \u00E9\u00E9\u00E9\u00E9\n", "", notices), "one\ntw\uFFFDo éééé\n");
    EXPECT_EQ(ToUtf8("a\xD0\n\xE9", "UTF-8", notices), "a\uFFFD\n\uFFFD");
    EXPECT_EQ(ToUtf8(std::string("a\0b\n", 4), "", notices), "a\uFFFDb\n");
    EXPECT_EQ(notices.said(), (Said{"line 2: 1 place of invalid UTF-8, shown as U+FFFD; if the file has "
                                    "another character set, name it with --charset",
                                    "from line 1: 2 places of invalid UTF-8, shown as U+FFFD; if the file "
                                    "has another character set, name it with --charset",
                                    "line 1: 1 place of invalid UTF-8, shown as U+FFFD; if the file has "
                                    "another character set, name it with --charset"}));
}

TEST(Charset, ReplacesHalfAPairOfSurrogates)
{
    Notices notices;
    std::string bytes = Wide(u"\uFEFFab\n", false);
    bytes += Wide(std::u16string(1, char16_t(0xD83D)), false) + Wide(u"c\n", false);

    EXPECT_EQ(ToUtf8(bytes, "", notices), "ab\n\uFFFDc\n");
    EXPECT_EQ(notices.said().size(), 1u);
}

TEST(Charset, KnowsThatOtherFilesAreNoText)
{
    std::string counting;
    for (int i = 0; i < 1024; ++i) counting += char(i);

    EXPECT_FALSE(LooksLikeText(counting));
    EXPECT_FALSE(LooksLikeText(std::string(1000, '\0')));
    EXPECT_TRUE(LooksLikeText(std::string("1\n00:00:01,000 --> 00:00:02,000\na\0b\n", 36)));
    EXPECT_TRUE(LooksLikeText("caf\xE9\n"));
}
