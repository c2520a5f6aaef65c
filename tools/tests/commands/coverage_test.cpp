// SPDX-License-Identifier: MIT
// Which characters no font has.
#include <gtest/gtest.h>

#include "support/tool.h"

static const std::string g_dejavu = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
static const std::string g_gothic = "/usr/share/fonts/truetype/noto/NotoSansGothic-Regular.ttf";

static std::string TwoCues(const Folder &folder)
{
    return folder.Write("two.srt", "1\n00:00:01,000 --> 00:00:02,000\nhello \U00010330\n\n"
                                   "2\n00:00:03,000 --> 00:00:04,500\n<i>日</i> \U00010330\n");
}

TEST(Coverage, ListsEachMissingCharacterWithItsCueAndName)
{
    const Folder folder;

    const Outcome outcome = RunTool("coverage '" + TwoCues(folder) + "' --font " + g_dejavu);

    EXPECT_EQ(outcome.exit, 1);
    EXPECT_EQ(outcome.out, "cue 1  00:00:01.000 --> 00:00:02.000  U+10330  \U00010330  GOTHIC LETTER AHSA\n"
                           "cue 2  00:00:03.000 --> 00:00:04.500  U+65E5  日  CJK UNIFIED IDEOGRAPH-65E5\n"
                           "cue 2  00:00:03.000 --> 00:00:04.500  U+10330  \U00010330  GOTHIC LETTER AHSA\n");
    // h e l o, the space, and the two that are missing.
    EXPECT_EQ(outcome.err, "kova-caption: 2 of 7 characters have no glyph; add a font with --fallback.\n");
}

TEST(Coverage, TakesAFallbackFontIntoAccount)
{
    const Folder folder;
    const std::string file = TwoCues(folder);

    const Outcome one = RunTool("coverage '" + file + "' --font " + g_dejavu + " --fallback " + g_gothic);
    EXPECT_EQ(one.exit, 1);
    EXPECT_EQ(one.out.find("GOTHIC"), std::string::npos);
    EXPECT_NE(one.out.find("U+65E5"), std::string::npos);

    const Outcome two = RunTool("coverage --fallback " + g_gothic + " --fallback " +
                                "/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc" + " '" + file + "'");
    EXPECT_EQ(two.exit, 0) << two.err;
    EXPECT_EQ(two.out, "all 7 characters have a glyph\n");
    EXPECT_EQ(two.err, "");
}

TEST(Coverage, LooksThroughTheMachineWhereNoFontIsNamed)
{
    const Folder folder;
    const std::string odd = folder.Write("odd.srt", "1\n00:00:01,000 --> 00:00:02,000\n\U0010ABCD\n");

    EXPECT_EQ(RunTool("coverage '" + TwoCues(folder) + "'").exit, 0);
    const Outcome outcome = RunTool("coverage '" + odd + "'");
    EXPECT_EQ(outcome.exit, 1);
    EXPECT_NE(outcome.out.find("U+10ABCD"), std::string::npos) << outcome.out;
}

// A font may have a letter and not the forms in which it joins others.
TEST(Coverage, IsOfTheFormsThatAreDrawn)
{
    const Folder folder;
    const std::string text = folder.Write("beh.srt", "1\n00:00:01,000 --> 00:00:02,000\n\u0628\u0628\n");

    const Outcome outcome = RunTool("coverage '" + text + "' --font " + g_gothic);

    EXPECT_EQ(outcome.exit, 1);
    EXPECT_NE(outcome.out.find("U+FE91  \uFE91  ARABIC LETTER BEH INITIAL FORM"), std::string::npos)
        << outcome.out;
    EXPECT_EQ(outcome.out.find("U+0628"), std::string::npos) << outcome.out;
}

TEST(Coverage, RefusesWhatIsNoFont)
{
    const Folder folder;

    const Outcome outcome =
        RunTool("coverage '" + TwoCues(folder) + "' --fallback '" + folder / "two.srt" + "'");

    EXPECT_EQ(outcome.exit, 1);
    EXPECT_NE(outcome.err.find("--fallback " + folder / "two.srt" + ": not a usable font"), std::string::npos)
        << outcome.err;
}
