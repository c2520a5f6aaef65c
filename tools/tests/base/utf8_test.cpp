// SPDX-License-Identifier: MIT
#include "base/utf8.h"

#include <gtest/gtest.h>

static std::u32string Codes(const std::string &text)
{
    std::u32string codes;
    for (const caption::Character &character : caption::Characters(text)) codes += character.code;
    return codes;
}

TEST(Characters, ReplaceEachMalformedByte)
{
    EXPECT_EQ(Codes("a\xFF\xE2\x82z"), U"a\uFFFD\uFFFD\uFFFDz");
}

TEST(Characters, RejectSurrogatesOverlongFormsAndCodesAboveTheLast)
{
    EXPECT_EQ(Codes("\xED\xA0\x80"), U"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(Codes("\xE0\x80\xAF"), U"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(Codes("\xF4\x90\x80\x80"), U"\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(Codes("\xEF\xBF\xBD"), U"\uFFFD");
}

TEST(Characters, ReadFourBytesAsOneCharacter)
{
    const auto characters = caption::Characters("\U00020BB7");

    ASSERT_EQ(characters.size(), 1u);
    EXPECT_EQ(characters[0].code, char32_t(0x20BB7));
    EXPECT_EQ(characters[0].text, "\xF0\xA0\xAE\xB7");
}

TEST(Utf8, GivesTheReplacementForACodeThatIsNoCharacter)
{
    EXPECT_EQ(caption::Utf8(0x20AC), "\xE2\x82\xAC");
    EXPECT_EQ(caption::Utf8(0xD800), "\xEF\xBF\xBD");
    EXPECT_EQ(caption::Utf8(0x110000), "\xEF\xBF\xBD");
}
