// SPDX-License-Identifier: MIT
// What becomes of text before the operation sees it, which draws character after character from the left.
#include "base/utf8.h"
#include "text/letters.h"
#include "text/visual_order.h"

#include <gtest/gtest.h>

#include "text/fonts.h"

using caption::Letters;

static std::string Text(const Letters &letters)
{
    std::string text;
    for (const auto &letter : letters) text += caption::Utf8(letter.code);
    return text;
}

static std::string Seen(const std::string &text)
{
    const Letters letters = caption::Prepare({{text, {}}});
    return Text(caption::InVisualOrder(letters, 0, letters.size()));
}

TEST(Letters, OfLatinTextStayAsTheyAre)
{
    EXPECT_EQ(Seen("Où (est) 12?"), "Où (est) 12?");
}

TEST(Letters, OfHebrewStandFromRightToLeft)
{
    EXPECT_EQ(Seen("אבג"), "גבא");
}

TEST(Letters, KeepNumbersAndLatinWordsInHebrewTheWayTheyAreRead)
{
    EXPECT_EQ(Seen("אב 12 cd גד"), "דג cd 12 בא");
}

TEST(Letters, KeepHebrewWordsInLatinTextTheWayTheyAreRead)
{
    EXPECT_EQ(Seen("ab גד 12"), "ab 12 דג");
}

TEST(Letters, TurnBracketsRoundFromRightToLeft)
{
    // Read from the right: an opening bracket, alef, bet, a closing one.
    EXPECT_EQ(Seen("(אב)"), "(בא)");
}

TEST(Letters, TakeTheDirectionOfTheFirstStrongOne)
{
    EXPECT_EQ(Seen("- אב!"), "!בא -");
    EXPECT_EQ(Seen("- ab!"), "- ab!");
}

TEST(Letters, ObeyDirectionMarksAndDropThem)
{
    EXPECT_EQ(Seen("\u202Eabc\u202C"), "cba");
    EXPECT_EQ(Seen("\u202Dאב\u202C"), "אב");
    EXPECT_EQ(Seen("a\u200Fb\u200Ec"), "abc");
}

TEST(Letters, OfArabicTakeTheFormsThatJoin)
{
    // Beh at the beginning, yeh in the middle, teh at the end; seen from the left.
    EXPECT_EQ(Seen("\u0628\u064A\u062A"), "\uFE96\uFEF4\uFE91");
    // Dal joins nothing behind it, so the beh after it stands alone.
    EXPECT_EQ(Seen("\u062F\u0628"), "\uFE8F\uFEA9");
}

TEST(Letters, LamAndAlefBecomeOne)
{
    EXPECT_EQ(Seen("\u0644\u0627"), "\uFEFB");
}

TEST(Letters, DoNotJoinAcrossANonJoiner)
{
    EXPECT_EQ(Seen("\u0628\u200C\u0628"), "\uFE8F\uFE8F");
}

TEST(Letters, AreComposedWithTheirAccents)
{
    EXPECT_EQ(Seen("e\u0301o\u0308"), "éö");
    EXPECT_EQ(Seen("x\u0302"), "x\u0302") << "which is no character of its own";
}

TEST(Letters, SurviveMalformedText)
{
    EXPECT_EQ(Seen("a\xFF"
                   "e\u0301"),
              "a\uFFFDé");
}

// DejaVu draws the points of Hebrew rightwards, and a circumflex leftwards.
TEST(Letters, HaveTheirAccentsOnTheSideFromWhichTheFontDrawsThem)
{
    caption::Options options;
    options.font = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
    caption::Fonts fonts(options, caption::Fonts::Reserve::NONE);
    std::vector<Letters> lines = {caption::Prepare({{"ב\u05B8ר", {}}}), caption::Prepare({{"x\u0302y", {}}})};
    fonts.Choose(lines);

    EXPECT_EQ(Text(caption::InVisualOrder(lines[0], 0, lines[0].size())), "ר\u05B8ב");
    EXPECT_EQ(Text(caption::InVisualOrder(lines[1], 0, lines[1].size())), "x\u0302y");
}

TEST(Letters, KeepTheirStyleWhereverTheyGo)
{
    caption::Style red;
    red.color = caption::Color{255, 0, 0};
    const Letters letters = caption::Prepare({{"אב", {}}, {"גד", red}});
    const Letters seen = caption::InVisualOrder(letters, 0, letters.size());

    ASSERT_EQ(Text(seen), "דגבא");
    EXPECT_TRUE(seen[0].style == red);
    EXPECT_TRUE(seen[1].style == red);
    EXPECT_TRUE(seen[2].style == caption::Style());
}

static bool NeedsShaping(const std::string &text)
{
    return caption::NeedsShaping(caption::Prepare({{text, {}}}));
}

TEST(NeedsShaping, IsSaidOfScriptsWithoutFormsAlone)
{
    EXPECT_TRUE(NeedsShaping("नमस्ते")) << "Devanagari stacks";
    EXPECT_TRUE(NeedsShaping("ܫܠܡܐ")) << "Syriac joins and has no forms";
    EXPECT_TRUE(NeedsShaping("\u0628\u08A1\u0628")) << "an Arabic letter that has no forms";
    EXPECT_FALSE(NeedsShaping("سلام שלום hello"));
}
