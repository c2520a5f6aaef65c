// SPDX-License-Identifier: MIT
// Text: fonts and their slots, sizes, edges, offsets, underlines, and characters that a font lacks.
#include "states.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <unistd.h>

static KovaCaptionsPen PenOf(uint8_t font)
{
    KovaCaptionsPen pen = PenStyle1();
    pen.font = font;
    return pen;
}

static KovaCaptionsScreen ScreenWithEightFonts()
{
    static const char *const names[8] = {"/none/mono0", "/none/mono1", "/none/prop2", "/none/mono3",
                                         "/none/prop4", "/none/prop5", "/none/prop6", "/none/prop7"};
    KovaCaptionsScreen screen = GivenScreen();
    std::copy(names, names + 8, screen.fonts);
    return screen;
}

// What is drawn of one character with this pen, in cell 0, 0 of a window of 4 rows.
static DrawnText TextOf(const KovaCaptionsPen &pen, const KovaCaptionsScreen &screen = GivenScreen(),
                        const KovaCaptionsSettings &settings = Defaults(), const std::u16string &text = u"H")
{
    ServiceState state;
    Stage stage(screen, 2100, 750);
    stage.Set(settings);
    state.Define(0, 0, 0, 4, 20);
    state.Print(0, 0, 0, text, pen);
    stage.Draw(state);
    EXPECT_EQ(stage.display->texts.size(), 1u);
    return stage.display->texts.empty() ? DrawnText() : stage.display->texts[0];
}

TEST(FontStyles, HaveTheirFiles)
{
    Requirement("C49");
    const KovaCaptionsScreen screen = ScreenWithEightFonts();

    for (uint8_t font = 0; font < 8; ++font) EXPECT_EQ(TextOf(PenOf(font), screen).font, screen.fonts[font]);
}

TEST(FontStyles, WithoutAFileHaveThatOfStyle0)
{
    Requirement("E19");
    EXPECT_EQ(TextOf(PenOf(KOVA_CAPTIONS_FONT_CURSIVE)).font, "/none/mono");
    KovaCaptionsScreen screen = GivenScreen();
    screen.fonts[0] = nullptr;
    EXPECT_EQ(TextOf(PenOf(KOVA_CAPTIONS_FONT_CURSIVE), screen).font, "/none/prop");
}

TEST(FontStyles, AreChosenByTheViewer)
{
    Requirement("D6");
    const KovaCaptionsScreen screen = ScreenWithEightFonts();
    KovaCaptionsSettings settings = Defaults();

    settings.font = KOVA_CAPTIONS_FONT_CASUAL;
    EXPECT_EQ(TextOf(PenOf(KOVA_CAPTIONS_FONT_SERIF), screen, settings).font, "/none/prop5");
    // A file for one style; the others keep theirs.
    settings = Defaults();
    snprintf(settings.fonts[KOVA_CAPTIONS_FONT_SERIF], sizeof settings.fonts[0], "/none/mono1");
    EXPECT_EQ(TextOf(PenOf(KOVA_CAPTIONS_FONT_SERIF), screen, settings).font, "/none/mono1");
    EXPECT_EQ(TextOf(PenOf(KOVA_CAPTIONS_FONT_SANS), screen, settings).font, "/none/prop4");
    snprintf(settings.fonts[KOVA_CAPTIONS_FONT_SANS], sizeof settings.fonts[0], "/none/mono of the viewer");
    EXPECT_EQ(TextOf(PenOf(KOVA_CAPTIONS_FONT_SANS), GivenScreen(), settings).font,
              "/none/mono of the viewer");
}

TEST(FontSlots, HoldEightStylesWithSizesAndItalics)
{
    Requirement("E16", "C50");
    ServiceState state;
    Stage stage(ScreenWithEightFonts(), 2100, 750);
    state.Define(0, 0, 0, 8, 20);
    for (unsigned row = 0; row < 8; ++row) {
        KovaCaptionsPen pen = PenOf(uint8_t(row));
        for (uint8_t size = 0; size < 3; ++size) {
            pen.size = size;
            for (uint8_t italics = 0; italics < 2; ++italics) {
                pen.italics = italics;
                state.Print(0, row, unsigned(size * 2 + italics), u"H", pen);
            }
        }
    }

    stage.Draw(state);

    std::map<std::string, std::set<std::pair<unsigned, bool>>> seen;
    for (const DrawnText &text : stage.display->texts) seen[text.font].insert({text.height, text.italics});
    EXPECT_EQ(seen.size(), 8u);
    for (const auto &[font, looks] : seen) EXPECT_EQ(looks.size(), 6u) << font;
    // Each look is opened once for measuring what is proportional, and once for drawing.
    EXPECT_LE(stage.display->openings, 8 * (3 + 2 * 6) + 8 * 8);
}

TEST(Italics, AreAFontOfTheirOwnOrSlanted)
{
    Requirement("B24", "C50");
    KovaCaptionsScreen screen = ScreenWithEightFonts();
    KovaCaptionsPen pen = PenOf(KOVA_CAPTIONS_FONT_SANS);
    pen.italics = 1;
    EXPECT_TRUE(TextOf(pen, screen).italics);
    EXPECT_EQ(TextOf(pen, screen).font, "/none/prop4");
    screen = GivenScreen();
    screen.italic_fonts[KOVA_CAPTIONS_FONT_SANS] = "/none/prop italics";
    EXPECT_FALSE(TextOf(pen, screen).italics);
    EXPECT_EQ(TextOf(pen, screen).font, "/none/prop italics");
    // Another file for the style has no italics of its own.
    KovaCaptionsSettings settings = Defaults();
    snprintf(settings.fonts[KOVA_CAPTIONS_FONT_SANS], sizeof settings.fonts[0], "/none/mono");
    EXPECT_TRUE(TextOf(pen, screen, settings).italics);
    EXPECT_EQ(TextOf(pen, screen, settings).font, "/none/mono");
}

TEST(FontSlots, SurviveAFileThatCannotBeOpened)
{
    Requirement("E19");
    ServiceState state;
    Stage stage(ScreenWithEightFonts(), 1050, 375);
    stage.display->missing = {"/none/prop4"};
    state.Define(0, 0, 0, 4, 20);
    state.Print(0, 0, 0, u"one", PenOf(KOVA_CAPTIONS_FONT_SANS));
    state.Print(0, 1, 0, u"two");

    EXPECT_EQ(stage.Draw(state), 1);

    std::map<std::string, int> letters;
    for (const DrawnText &text : stage.display->texts) letters[text.font] += int(text.text.size());
    EXPECT_EQ(letters["/none/mono0"], 6);
}

TEST(FontSlots, AllMissingLeaveBackgrounds)
{
    Requirement("E19");
    ServiceState state;
    Stage stage;
    stage.display->missing = {"/none/mono", "/none/prop"};
    state.Define(0, 0, 0, 1, 10);
    state.Print(0, 0, 0, u"text");

    EXPECT_EQ(stage.Draw(state), 1);

    EXPECT_EQ(stage.display->strings, 0);
    EXPECT_EQ(stage.display->Ink(), CellBox(0, 0, 1, 10));
}

TEST(PenSize, HasThreeHeights)
{
    Requirement("C48");
    KovaCaptionsPen pen = PenStyle1();
    const unsigned standard = TextOf(pen).height;

    pen.size = KOVA_CAPTIONS_PEN_SMALL;
    EXPECT_EQ(TextOf(pen).height, standard * 80 / 100);
    pen.size = KOVA_CAPTIONS_PEN_LARGE;
    EXPECT_EQ(TextOf(pen).height, standard * 120 / 100);
}

TEST(PenSize, FollowsTheViewersSize)
{
    Requirement("D5");
    KovaCaptionsSettings settings = Defaults();
    std::map<unsigned, double> heights;

    for (const unsigned percent : {50u, 75u, 100u, 150u, 200u}) {
        settings.size = uint8_t(percent);
        heights[percent] = TextOf(PenStyle1(), GivenScreen(), settings).height;
    }
    for (const auto &[percent, height] : heights) {
        EXPECT_NEAR(height, heights[100] * percent / 100, 0.5) << percent;
    }
}

TEST(PenSize, KeepsStandardTextInsideItsRowAndCell)
{
    Requirement("E13", "E14", "E15");

    for (const char *font : {"/none/mono", "/none/prop"}) {
        for (const uint8_t aspect : {KOVA_CAPTIONS_WIDE, KOVA_CAPTIONS_NARROW}) {
            for (const uint8_t size : {KOVA_CAPTIONS_PEN_STANDARD, KOVA_CAPTIONS_PEN_LARGE}) {
                KovaCaptionsPen pen = PenStyle1();
                KovaCaptionsScreen screen = GivenScreen();
                pen.size = size;
                screen.fonts[0] = font;
                screen.aspect = aspect;
                const DrawnText text = TextOf(pen, screen, Defaults(), u"W");
                // The safe area is 1680 by 600: rows of 40, cells of 40 or 52.5.
                EXPECT_LT(text.width, aspect == KOVA_CAPTIONS_WIDE ? 40 : 53);
                if (size == KOVA_CAPTIONS_PEN_STANDARD) {
                    EXPECT_LE(text.height * 120 / 100, 40u);
                }
            }
        }
    }
}

TEST(PenOffset, RaisesAndLowersSmallerText)
{
    Requirement("C51");
    const DrawnText normal = TextOf(PenStyle1());
    const int base_line = normal.y + int(normal.height) * 96 / 100;

    for (const uint8_t offset : {KOVA_CAPTIONS_SUBSCRIPT, KOVA_CAPTIONS_SUPERSCRIPT}) {
        KovaCaptionsPen pen = PenStyle1();
        pen.offset = offset;
        const DrawnText text = TextOf(pen);
        const int base = text.y + int(text.height) * 96 / 100;
        EXPECT_EQ(text.height, normal.height * 60 / 100);
        EXPECT_NEAR(base, offset == KOVA_CAPTIONS_SUPERSCRIPT ? base_line - 10 : base_line + 5, 1);
    }
}

TEST(Underline, IsWhereTheFontHasIt)
{
    Requirement("E18", "C50");
    for (const uint8_t font : {KOVA_CAPTIONS_FONT_DEFAULT, KOVA_CAPTIONS_FONT_SANS}) {
        ServiceState state;
        Stage stage(2100, 750);
        KovaCaptionsPen pen = PenOf(font);
        pen.underline = 1;
        pen.foreground = KOVA_CAPTIONS_YELLOW;
        state.Define(0, 0, 0, 4, 20);
        state.Print(0, 1, 2, u"HHHH", pen);
        stage.display->underline_top = 2;
        stage.display->underline_thickness = 3;
        stage.Draw(state);

        // Rows are 40 pixels high: the base line of row 1 is 32 below its top.
        const int y = 2 * TOP + 1 + 40 + 32 + 2;
        const Box line = stage.display->Around(Solid(KOVA_CAPTIONS_YELLOW));
        EXPECT_EQ(line.bottom, y + 3);
        EXPECT_EQ(stage.display->Count(Solid(KOVA_CAPTIONS_YELLOW), {line.left, y, line.right, y + 3}),
                  (line.right - line.left) * 3);
        if (font == KOVA_CAPTIONS_FONT_DEFAULT) {
            EXPECT_EQ(line.right - line.left, 4 * 40);
        }
    }
}

TEST(Underline, OfAFontWithoutMetricsIsAtLeastAPixel)
{
    Requirement("E18");
    ServiceState state;
    Stage stage(210, 120);
    KovaCaptionsPen pen = PenStyle1();
    pen.underline = 1;
    stage.display->underline_top = stage.display->underline_thickness = 0;
    state.Define(0, 0, 0, 1, 4);
    state.Print(0, 0, 0, u" ", pen);

    stage.Draw(state);

    const Box line = stage.display->Around(Solid(0x2A));
    EXPECT_EQ(line.bottom - line.top, 1);
}

TEST(Edges, LeaveTheLettersWhereTheyAre)
{
    Requirement("E12", "D8");
    const DrawnText plain = TextOf(PenStyle1());
    const KovaTextEdgeType_e types[] = {KOVA_TEXT_ENONE,           KOVA_TEXT_ERAISED,
                                        KOVA_TEXT_EDEPRESSED,      KOVA_TEXT_EUNIFORM,
                                        KOVA_TEXT_ELEFTDROPSHADOW, KOVA_TEXT_ERIGTHDROPSHADOW};

    for (uint8_t edge = 0; edge < 6; ++edge) {
        KovaCaptionsPen pen = PenStyle1();
        pen.edge_type = edge;
        pen.edge_color = KOVA_CAPTIONS_RED;
        const DrawnText text = TextOf(pen);
        EXPECT_EQ(text.edge, int(types[edge]));
        EXPECT_EQ(text.x, plain.x) << int(edge);
        EXPECT_EQ(text.y, plain.y) << int(edge);
    }
}

TEST(Edges, HaveTypeAndColourApart)
{
    Requirement("C55");

    for (uint8_t edge = 1; edge < 6; ++edge) {
        for (const uint8_t color : {KOVA_CAPTIONS_BLACK, KOVA_CAPTIONS_RED, KOVA_CAPTIONS_CYAN}) {
            KovaCaptionsPen pen = PenStyle1();
            pen.edge_type = edge;
            pen.edge_color = color;
            EXPECT_EQ(TextOf(pen).edge_color, Solid(color));
            EXPECT_EQ(TextOf(pen).color, Solid(0x2A));
        }
    }
}

TEST(LongRows, AreDrawnInStringsThatTheDisplayTakes)
{
    Requirement("E17");
    ServiceState state;
    Stage stage;
    state.Define(0, 0, 0, 2, 42);
    state.Print(0, 0, 0, std::u16string(42, u'\uAC00'), PenOf(KOVA_CAPTIONS_FONT_SANS));
    state.Print(0, 1, 0, std::u16string(42, u'\uAC00'));

    stage.Draw(state);

    size_t characters = 0;
    for (const DrawnText &text : stage.display->texts) {
        EXPECT_LE(text.bytes, 255);
        characters += CharactersOf(text.text).size();
    }
    EXPECT_EQ(characters, 84u);
}

// ------------------------------------------------------------------------------------------------- Missing characters

static void Append16(std::string &bytes, unsigned value)
{
    bytes += char(value >> 8);
    bytes += char(value);
}

static void Append32(std::string &bytes, unsigned value)
{
    Append16(bytes, value >> 16);
    Append16(bytes, value & 0xFFFF);
}

// A font file of nothing but a character map of format 4 (one segment for each range) or 12.
class FontFile
{
public:
    using Ranges = std::vector<std::pair<unsigned, unsigned>>;

    FontFile(const std::string &name, const Ranges &ranges, unsigned format = 4, bool collection = false)
        : m_name(::testing::TempDir() + name + "." + std::to_string(getpid()))
    {
        std::string map;
        Append16(map, 0);
        Append16(map, 1);
        Append16(map, 3);
        Append16(map, format == 4 ? 1 : 10);
        Append32(map, 12);
        map += format == 4 ? Segments(ranges) : Groups(ranges);

        // 1000 units; the line's top is 700 above the base line, its end 300 below; an underline 100 below, 50 thick.
        std::string head(18, 0), lines(4, 0), post(8, 0);
        Append16(head, 1000);
        Append16(lines, 700);
        Append16(lines, 0x10000 - 300);
        Append16(post, 0x10000 - 100);
        Append16(post, 50);
        const std::pair<const char *, std::string> tables[] = {
            {"cmap", map}, {"head", head}, {"hhea", lines}, {"post", post}};

        std::string file;
        if (collection) {
            file += "ttcf";
            for (const unsigned word : {0x10000u, 1u, 16u}) Append32(file, word);
        }
        auto start = unsigned(file.size() + 12 + 16 * std::size(tables));
        Append32(file, 0x10000);
        for (const unsigned word : {unsigned(std::size(tables)), 64u, 2u, 0u}) Append16(file, word);
        for (const auto &[tag, table] : tables) {
            file += tag;
            for (const unsigned word : {0u, start, unsigned(table.size())}) Append32(file, word);
            start += unsigned(table.size());
        }
        for (const auto &[tag, table] : tables) file += table;
        std::ofstream(m_name, std::ios::binary) << file;
    }
    ~FontFile()
    {
        std::remove(m_name.c_str());
    }
    FontFile(const FontFile &) = delete;
    FontFile &operator=(const FontFile &) = delete;

    const char *Name() const
    {
        return m_name.c_str();
    }
    void Cut(size_t bytes) const
    {
        EXPECT_EQ(truncate(Name(), long(bytes)), 0);
    }

private:
    static std::string Segments(Ranges ranges)
    {
        std::string table;
        ranges.push_back({0xFFFF, 0xFFFF});
        Append16(table, 4);
        Append16(table, unsigned(16 + 8 * ranges.size()));
        Append16(table, 0);
        Append16(table, unsigned(2 * ranges.size()));
        for (int i = 0; i < 3; ++i) Append16(table, 0);
        for (const auto &range : ranges) Append16(table, range.second);
        Append16(table, 0);
        for (const auto &range : ranges) Append16(table, range.first);
        for (const auto &range : ranges) Append16(table, (1 - range.first) & 0xFFFF);
        for (size_t i = 0; i < ranges.size(); ++i) Append16(table, 0);
        return table;
    }
    static std::string Groups(const Ranges &ranges)
    {
        std::string table;
        Append16(table, 12);
        Append16(table, 0);
        Append32(table, unsigned(16 + 12 * ranges.size()));
        Append32(table, 0);
        Append32(table, unsigned(ranges.size()));
        for (const auto &range : ranges) {
            Append32(table, range.first);
            Append32(table, range.second);
            Append32(table, 1);
        }
        return table;
    }

    std::string m_name;
};

static std::string Shown(const KovaCaptionsScreen &screen, char16_t character)
{
    return TextOf(PenStyle1(), screen, Defaults(), std::u16string(1, character)).text;
}

TEST(MissingCharacters, OfG2AreReplacedByTheirSubstitutes)
{
    Requirement("C3");
    const FontFile ascii("ascii", {{0x20, 0x7E}, {0xA0, 0xFF}});
    KovaCaptionsScreen screen = GivenScreen();
    screen.fonts[0] = ascii.Name();
    const struct {
        char16_t character;
        const char *shown;
    } rows[] = {{u'…', "_"}, {u'‘', "'"}, {u'’', "'"}, {u'“', "\""}, {u'”', "\""}, {u'•', "·"},
                {u'⅛', "%"}, {u'⅜', "%"}, {u'⅝', "%"}, {u'⅞', "%"},  {u'│', "|"},  {u'┐', "-"},
                {u'└', "-"}, {u'─', "-"}, {u'┘', "-"}, {u'┌', "-"},  {u'é', "é"},  {u'\u6F22', "_"}};

    for (const auto &row : rows) EXPECT_EQ(Shown(screen, row.character), row.shown);
}

TEST(MissingCharacters, AreTakenFromTheFirstFallbackThatHasThem)
{
    Requirement("E19");
    for (const unsigned format : {4u, 12u}) {
        const FontFile ascii("ascii", {{0x20, 0x7E}}), hangul("hangul", {{0xAC00, 0xD7A3}}, format, true),
            more("more", {{0x2605, 0x2606}, {0xAC00, 0xAC00}}, format);
        KovaCaptionsScreen screen = GivenScreen();
        screen.fonts[0] = ascii.Name();
        screen.fallbacks[0] = hangul.Name();
        screen.fallbacks[1] = more.Name();
        const auto fontOf = [&](char16_t character) {
            return TextOf(PenStyle1(), screen, Defaults(), std::u16string(1, character)).font;
        };

        EXPECT_EQ(fontOf(u'A'), ascii.Name());
        EXPECT_EQ(fontOf(u'\uAC00'), hangul.Name());
        EXPECT_EQ(fontOf(u'\u2606'), more.Name());
        EXPECT_EQ(Shown(screen, u'\u2607'), "_");
        // A substitute comes before a fallback.
        EXPECT_EQ(fontOf(u'“'), ascii.Name());
    }
}

TEST(MissingCharacters, ADamagedFileCountsAsComplete)
{
    Requirement("E19");

    for (size_t size = 0; size < 130; ++size) {
        const FontFile file("cut", {{0x20, 0x7E}, {0x100, 0x200}});
        file.Cut(size);
        KovaCaptionsScreen screen = GivenScreen();
        screen.fonts[0] = file.Name();
        // Whatever could be read of it, something is shown.
        EXPECT_NE(Shown(screen, u'A'), "");
        if (size < 76) {
            EXPECT_EQ(Shown(screen, u'\u2607'), "☇");
        }
    }
}

TEST(MissingCharacters, RangesOutOfOrderEndTheMap)
{
    Requirement("E19");
    for (const unsigned format : {4u, 12u}) {
        const FontFile file("order", {{0x20, 0x7E}, {0x2600, 0x2610}, {0x2500, 0x2510}}, format);
        KovaCaptionsScreen screen = GivenScreen();
        screen.fonts[0] = file.Name();
        EXPECT_EQ(Shown(screen, u'\u2605'), "★");
        EXPECT_EQ(Shown(screen, u'\u2505'), "_");
    }
}

TEST(FontFiles, SayWhereBaseLinesAndUnderlinesAre)
{
    Requirement("E18");
    const FontFile file("metrics", {{0x20, 0x7E}});
    KovaCaptionsScreen screen = GivenScreen();
    KovaCaptionsPen pen = PenStyle1();
    ServiceState state;
    screen.fonts[0] = file.Name();
    pen.underline = 1;
    state.Define(0, 0, 0, 1, 4);
    state.Print(0, 0, 0, u"H   ", pen);
    Stage stage(screen, 5250, 1875);
    stage.display->underline_top = stage.display->underline_thickness = 0;

    stage.Draw(state);

    // The row is 100 pixels high, its base line 80 below its top, which is 187 or 188.
    ASSERT_EQ(stage.display->texts.size(), 1u);
    const auto height = int(stage.display->texts[0].height);
    EXPECT_NEAR(stage.display->texts[0].y, 187 + 80 - height * 120 / 100 * 7 / 10, 1);
    const Box line = stage.display->Around(Solid(0x2A));
    EXPECT_NEAR(line.bottom, 187 + 80 + height * 150 / 1000, 2);
    EXPECT_EQ(stage.display->Count(Solid(0x2A), {line.right - 100, line.top, line.right, line.bottom}) / 100,
              height * 50 / 1000);
}

TEST(SpecialCharacters, AreDrawnWithoutTheFont)
{
    ServiceState state;
    Stage stage;
    state.Define(0, 0, 0, 1, 4);
    state.Print(0, 0, 0, u"\u2588\uE9A0");

    stage.Draw(state);

    EXPECT_EQ(stage.display->Count(Solid(0x2A), CellBox(0, 0)), CELL * CELL);
    ASSERT_EQ(stage.display->texts.size(), 1u);
    EXPECT_EQ(stage.display->texts[0].text, "CC");
    EXPECT_LE(stage.display->texts[0].width, CELL);
}

TEST(SmallCapitals, AreMadeOfAnotherStylesFont)
{
    const unsigned standard = TextOf(PenStyle1()).height;
    const auto shown = [](const KovaCaptionsScreen &screen, const std::u16string &text) {
        return TextOf(PenOf(KOVA_CAPTIONS_FONT_SMALL_CAPITALS), screen, Defaults(), text);
    };

    EXPECT_EQ(shown(GivenScreen(), u"q").text, "Q");
    EXPECT_EQ(shown(GivenScreen(), u"é").text, "É");
    EXPECT_EQ(shown(GivenScreen(), u"q").height, standard * 80 / 100);
    EXPECT_EQ(shown(GivenScreen(), u"Q").height, standard);
    EXPECT_EQ(shown(ScreenWithEightFonts(), u"q").text, "q");
}

TEST(ProportionalText, IsNarrowedWhereItDoesNotFit)
{
    const DrawnText fits = TextOf(PenOf(KOVA_CAPTIONS_FONT_SANS), GivenScreen(), Defaults(), u"iiiiii");
    EXPECT_EQ(fits.scale, 65536u);
    const DrawnText narrow = TextOf(PenOf(KOVA_CAPTIONS_FONT_SANS), GivenScreen(), Defaults(), u"WWWWWW");
    EXPECT_LT(narrow.width, 6 * 2 * CELL);
}
