// SPDX-License-Identifier: MIT
#include "text/wrap.h"

#include <gtest/gtest.h>

#include "base/utf8.h"

using caption::Letters;
using caption::Line;
using caption::Span;

// Every letter is one wide, and accents are nothing.
static int Count(const Letters &letters, Span span, int)
{
    int count = 0;
    for (std::size_t i = span.begin; i < span.end; ++i) count += !caption::IsAccent(letters[i]);
    return count;
}

static std::vector<std::string> Folded(const std::string &text, int width)
{
    const Letters letters = caption::Prepare({{text, {}}});
    std::vector<std::string> lines;
    for (const Span span : caption::Wrap(letters, width, Count)) {
        lines.emplace_back();
        for (std::size_t i = span.begin; i < span.end; ++i) {
            lines.back() += caption::Utf8(letters[i].code);
        }
    }
    return lines;
}

using Lines = std::vector<std::string>;

TEST(Wrap, LeavesALineThatFits)
{
    EXPECT_EQ(Folded("just fits", 9), Lines{"just fits"});
}

TEST(Wrap, BreaksAtAWordAndDropsTheSpace)
{
    EXPECT_EQ(Folded("just fits", 8), (Lines{"just", "fits"}));
}

TEST(Wrap, MakesLinesAboutEquallyLongInNoMoreLinesThanNeeded)
{
    // Filled up it would be "one two three" and "four".
    EXPECT_EQ(Folded("one two three four", 13), (Lines{"one two", "three four"}));
}

TEST(Wrap, BreaksAWordInsideThatIsTooLongForALine)
{
    EXPECT_EQ(Folded("abcdefghij", 4), (Lines{"abcd", "efgh", "ij"}));
}

TEST(Wrap, BreaksNoWordThatFitsALineForTheSakeOfEqualLines)
{
    EXPECT_EQ(Folded("abcdefgh ij", 8), (Lines{"abcdefgh", "ij"}));
}

TEST(Wrap, KeepsAtLeastOneCharacterALine)
{
    EXPECT_EQ(Folded("ab", 0), (Lines{"a", "b"}));
}

TEST(Wrap, MakesNoLinesOfNothing)
{
    EXPECT_EQ(Folded("", 10), Lines{});
    EXPECT_EQ(Folded("   ", 10), Lines{});
}

TEST(Wrap, CountsCharactersAndNotBytes)
{
    EXPECT_EQ(Folded("äöüß éèê", 8), Lines{"äöüß éèê"});
    EXPECT_EQ(Folded("äöüßéèêë", 4), (Lines{"äöüß", "éèêë"}));
}

TEST(Wrap, BreaksJapaneseBetweenCharactersButNotBeforeAFullStop)
{
    EXPECT_EQ(Folded("今夜も光る。", 5), (Lines{"今夜も", "光る。"}));
    EXPECT_EQ(Folded("今夜。", 2), (Lines{"今", "夜。"}));
}

TEST(Wrap, KeepsAccentsWithTheirLetterInABrokenWord)
{
    // No character is an x with an acute accent, so the two stay two.
    EXPECT_EQ(Folded("x\u0301x\u0301x\u0301", 2), (Lines{"x\u0301x\u0301", "x\u0301"}));
}

TEST(Wrap, BreaksKoreanAtItsSpacesAlone)
{
    EXPECT_EQ(Folded("고양이는 배를", 5), (Lines{"고양이는", "배를"}));
}

TEST(Wrap, DoesNotBreakAtAHardSpace)
{
    EXPECT_EQ(Folded("aa 3\u00A0km", 5), (Lines{"aa", "3\u00A0km"}));
}

TEST(Wrap, DropsWhatIsInvisible)
{
    EXPECT_EQ(Folded("a\u200Bb\u202Ac\uFEFF", 3), Lines{"abc"});
}
