// SPDX-License-Identifier: MIT
#include "generating/patterns.h"

#include <algorithm>

namespace caption
{

const std::vector<Pattern> &Patterns()
{
    using namespace patterns;
    static const std::vector<Pattern> table = {
        {"window-styles", "predefined window styles 1 to 7 (CEA-708)",
         "In each style four lines follow one another in a window of three rows, so that the first scrolls "
         "out: on the "
         "left (1, 2, 4, 5) or centred (3, 6), on solid black or, in 2 and 5, without a fill. Style 7 prints "
         "columns "
         "from the top down, which move to the left.",
         WindowStyles},
        {"window-fills", "fill colours and opacities of windows (CEA-708)",
         "Four red windows: solid, flashing, translucent, transparent.", WindowFills},
        {"borders", "border types of windows (CEA-708)",
         "Six blue windows with yellow borders: none, raised, depressed, uniform, shadow on the left, shadow "
         "on the "
         "right.",
         Borders},
        {"pen-styles", "predefined pen styles 1 to 7 (CEA-708)",
         "Seven rows: five fonts on black backgrounds, then two with a black edge and without a background.",
         PenStyles},
        {"fonts", "font styles, italics and underline (CEA-708)",
         "Eight rows in eight fonts that can be told apart, then italics, underlined text, and both.", Fonts},
        {"edges", "edge types and colours of letters (CEA-708)",
         "White letters without a background in six rows: no edge, raised, depressed, uniform, shadow on the "
         "left, "
         "shadow on the right. The edges are black, then red, then blue.",
         Edges},
        {"color-cube", "64 colours of letters and backgrounds (CEA-708)",
         "Eight rows of eight colours, first of letters (solid blocks), then of backgrounds. The video shows "
         "the same "
         "colours beside them.",
         ColorCube},
        {"opacities", "opacities of letters and backgrounds (CEA-708)",
         "Yellow letters, then blue backgrounds, each solid, flashing, translucent and transparent.",
         Opacities},
        {"flashing", "flashing letters, backgrounds and windows (CEA-708)",
         "Letters, a background and a window's fill flash in step, at least once a second.", Flashing},
        {"sizes", "pen sizes (CEA-708)", "A row of small, one of standard and one of large letters.",
         PenSizes},
        {"offsets", "subscript and superscript (CEA-708)", "H2O with a lowered 2, x2 + y2 with raised ones.",
         PenOffsets},
        {"characters-708", "character sets G0, G1, G2, G3 and P16 (CEA-708)",
         "ASCII and Latin-1 in six rows. Then G2, the CC sign of G3, Greek, Cyrillic and Hangul; characters "
         "that a "
         "set lacks may be replaced. In the last row A, a gap of two cells without background, B, two "
         "underscores.",
         Characters708},
        {"anchors", "nine anchor points, absolute positions (CEA-708)",
         "A window hangs by each of its nine points from a cross in the middle. Then eight windows lie at "
         "the corners "
         "and sides of the safe title area. Outlines in the video show each place.",
         Anchors},
        {"relative-anchors", "positions in hundredths of the picture (CEA-708)",
         "Eight windows at the corners and sides of the safe title area, then two at a quarter and at three "
         "quarters "
         "of it.",
         RelativeAnchors},
        {"priorities", "overlapping windows (CEA-708)",
         "Red covers green, green covers blue; then the other way round; then green covers both, blue covers "
         "red.",
         Priorities},
        {"directions", "print and scroll directions (CEA-708)",
         "In each of the eight pairs of directions four lines come in a window of three, so that the first "
         "scrolls "
         "out.",
         Directions},
        {"justification", "justification (CEA-708)",
         "Four windows of two rows: left, right, centred, full. Full may look like left.", Justification},
        {"effects", "display effects and their speeds (CEA-708)",
         "A window comes and goes by snap, by fades of half a second and of two seconds, and by wipes of two "
         "seconds in "
         "four directions. The last one stays.",
         Effects},
        {"window-commands", "commands that show, hide, clear, delete and write (CEA-708)",
         "Two windows, changed by one command at a time; the video says what must be left.", WindowCommands},
        {"delays", "delays, their end, and the input buffer (CEA-708)",
         "TWO comes two seconds after ONE, FOUR one second after THREE. FIVE goes after a second, SIX never "
         "comes. One "
         "second after SEVEN come rows of X and the word FULL.",
         Delays},
        {"services", "services 1 to 6, 7 and 63, service blocks and packets (CEA-708)",
         "Each service shows its own number, then the words ONE PACKET. In service 1 the word WHOLE replaces "
         "them.",
         Services},
        {"pop-on", "pop-on captions (CEA-608, CC1)",
         "Two rows appear at once, then four full rows in their place, then nothing, then the two rows "
         "again.",
         PopOn},
        {"roll-up", "roll-up captions (CEA-608, CC1)",
         "Lines roll up in 2, 3 and 4 rows at the bottom. Then they jump to rows 5 to 8, go on there, and "
         "two rows are "
         "left.",
         RollUp},
        {"paint-on", "paint-on captions, backspace, deletion (CEA-608, CC1)",
         "Letters appear one after the other; in the end PRINTED in row 14 and SECOND WORD in row 15.",
         PaintOn},
        {"rows", "rows, indents and tab offsets (CEA-608, CC1)",
         "The numbers 01 to 15 in rows 1 to 15, each two columns further to the right. Then the four "
         "corners, and A B C D "
         "with gaps of one, two and three columns.",
         Rows},
        {"attributes-608", "colours, backgrounds, italics, underline, flash (CEA-608, CC1)",
         "Seven colours and italics, then eight backgrounds, solid and translucent, one row without a "
         "background and one "
         "with black letters, then flashing text.",
         Attributes608},
        {"characters-608", "character sets (CEA-608, CC1)",
         "The basic set in three rows and the special characters below, one of them a gap without a "
         "background. Then the "
         "extended characters; no x is left.",
         Characters608},
        {"channels-608", "channels CC1 to CC4 and T1 to T4 (CEA-608)",
         "Each channel shows its own name. Then CC1 and CC2 get ONE and TWO at the end of their rows.",
         Channels608},
        {"damaged-608", "parity errors, lost repetitions, unknown codes (CEA-608, CC1)",
         "A block in L_TTER, then COMMAND in row 14, ONCE, SINGLE, ABC, FILLERS, blocks that go away, "
         "RECOVERED.",
         Damaged608},
        {"damaged-708", "lost, repeated and short packets, unknown codes (CEA-708)",
         "BEFORE THE GAP goes after a second. Then SAME NUMBER TWICE, SHORT PACKET, SKIPPED, CUT, BLOCK, "
         "END.",
         Damaged708},
    };
    return table;
}

const Pattern *FindPattern(const std::string &name)
{
    const std::vector<Pattern> &table = Patterns();
    const auto found = std::find_if(table.begin(), table.end(),
                                    [&](const Pattern &pattern) { return pattern.name == name; });

    return found == table.end() ? nullptr : &*found;
}

Recording Record(const Pattern &pattern)
{
    Script script(pattern.name);

    script.Hold(1);
    pattern.write(script);
    return script.Finish();
}

} // namespace caption
