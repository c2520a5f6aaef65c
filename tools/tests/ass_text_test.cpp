#include "ass_text.h"

#include <gtest/gtest.h>

using caption::FromAss;
using caption::Line;
using Lines = std::vector<Line>;

TEST(FromAss, BreaksLinesAtCapitalN)
{
    EXPECT_EQ(FromAss("one\\Ntwo"), (Lines{{{"one", {}}}, {{"two", {}}}}));
}

TEST(FromAss, TakesASoftBreakForASpaceAndAHardSpaceForOne)
{
    EXPECT_EQ(FromAss("one\\ntwo\\hthree"), (Lines{{{"one two\u00A0three", {}}}}));
}

TEST(FromAss, KnowsItalics)
{
    EXPECT_EQ(FromAss("a{\\i1}b{\\i0}c"), (Lines{{{"a", {}}, {"b", {true}}, {"c", {}}}}));
}

TEST(FromAss, CarriesItalicsOverALineBreak)
{
    EXPECT_EQ(FromAss("{\\i1}a\\Nb"), (Lines{{{"a", {true}}}, {{"b", {true}}}}));
}

TEST(FromAss, EndsItalicsWhenTheStyleIsReset)
{
    EXPECT_EQ(FromAss("{\\i1}a{\\r}b{\\i}c"), (Lines{{{"a", {true}}, {"bc", {}}}}));
}

TEST(FromAss, PassesOverOtherTagsThatBeginAlike)
{
    EXPECT_EQ(FromAss("{\\iclip(1,1,2,2)\\pos(3,4)\\b1\\c&H00FF00&}text"), (Lines{{{"text", {}}}}));
}

TEST(FromAss, LeavesDrawingsOut)
{
    EXPECT_EQ(FromAss("{\\p1}m 0 0 l 9 9{\\p0}after"), (Lines{{{"after", {}}}}));
}

TEST(FromAss, KeepsEscapedAndUnclosedBraces)
{
    EXPECT_EQ(FromAss("\\{a\\} {b"), (Lines{{{"{a} {b", {}}}}));
}

TEST(FromAss, KeepsABackslashThatIsMeantAsOne)
{
    EXPECT_EQ(FromAss("C:\\\u2060N \\x \\"), (Lines{{{"C:\\N \\x \\", {}}}}));
}
