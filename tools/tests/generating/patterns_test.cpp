// SPDX-License-Identifier: MIT
// Every pattern is decoded, and must say and show what its table and the standards say.
#include "generating/patterns.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <map>
#include <memory>

#include "generating/writers.h"
#include "kova/kova_captions.h"
#include "reading/subtitles.h"
#include "support/tool.h"

using namespace caption;

using Texts = std::vector<std::string>;

namespace
{

// What a decoder has to show of a pattern.
struct Expected {
    const char *pattern;
    const char *service;
    Texts texts; // of cues, lines joined by " / ": in this order among the pattern's cues, the last one last
};

class PatternTexts : public testing::TestWithParam<std::size_t>
{
};

} // namespace

static const std::string g_full = "12345678901234567890123456789012";
static const std::string g_x(28, 'X');

static Texts Styles()
{
    Texts texts;

    for (int style = 1; style <= 7; ++style) {
        const std::string first = "STYLE " + std::to_string(style);
        texts.insert(texts.end(), {first, first + " / LINE TWO", first + " / LINE TWO / LINE THREE",
                                   "LINE TWO / LINE THREE / LINE FOUR"});
    }
    return texts;
}

static Texts ColorNumbers()
{
    Texts texts = {""};

    for (int row = 0; row < 8; ++row) {
        for (int i = 0; i < 16; ++i) texts[0] += "\u2588";
        if (row < 7) texts[0] += " / ";
    }
    std::string numbers;
    for (int color = 0; color < 64; ++color) {
        char number[8];
        std::snprintf(number, sizeof number, "%02X", unsigned(color));
        numbers += std::string(color > 0 && color % 8 == 0 ? " / " : "") + number;
    }
    texts.push_back(numbers);
    return texts;
}

static const std::vector<Expected> g_expected = {
    {"window-styles", "s1", Styles()},
    {"window-fills", "s1", {"SOLID / FLASHING / TRANSLUCENT / TRANSPARENT"}},
    {"borders", "s1", {"NONE / RAISED / DEPRESSED / UNIFORM / SHADOW LEFT / SHADOW RIGHT"}},
    {"pen-styles",
     "s1",
     {"1 DEFAULT / 2 MONO SERIF / 3 SERIF / 4 MONO SANS / 5 SANS / 6 MONO SANS, OUTLINED / 7 SANS, "
      "OUTLINED"}},
    {"fonts",
     "s1",
     {"0 default / 1 mono serif / 2 serif / 3 mono sans / 4 sans / 5 casual / 6 cursive / 7 small capitals / "
      "italics / "
      "underlined / both"}},
    {"edges", "s1", Texts(3, "No edge / Raised / Depressed / Uniform / Shadow left / Shadow right")},
    {"color-cube", "s1", ColorNumbers()},
    // Transparent letters are not seen.
    {"opacities",
     "s1",
     {"LETTERS SOLID / LETTERS FLASHING / LETTERS TRANSLUCENT / BACKGROUND SOLID / BACKGROUND FLASHING / "
      "BACKGROUND "
      "TRANSLUCENT / BACKGROUND TRANSPARENT"}},
    {"flashing", "s1", {"LETTERS / BACKGROUND / WINDOW"}},
    {"sizes", "s1", {"Small 0123456789 / Standard 0123456789 / Large 0123456789"}},
    {"offsets", "s1", {"H2O / x2 + y2"}},
    // `list` leaves out the blank that row 1 begins with and the no-break space of row 4, and writes transparent spaces
    // as blanks.
    {"characters-708",
     "s1",
     {"!\"#$%&'()*+,-./0123456789:;<=>? / @ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_ / "
      "`abcdefghijklmnopqrstuvwxyz{|}~\u266A / "
      "¡¢£¤¥¦§¨©ª«¬\u00AD®¯°±²³´µ¶·¸¹º»¼½¾¿ / ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞß / "
      "àáâãäåæçèéêëìíîïðñòóôõö÷øùúûüýþÿ",
      "…ŠŒ█‘’“”•™šœ℠Ÿ / ⅛⅜⅝⅞ / │┐└─┘┌ / \uE9A0 / ΑΒΓΩ / АБВЯ 한국어 / A  B__"}},
    {"anchors",
     "s1",
     {"TOP LEFT", "TOP", "TOP RIGHT", "LEFT", "CENTRE", "RIGHT", "BOTTOM LEFT", "BOTTOM", "BOTTOM RIGHT",
      "TOP LEFT / TOP / TOP RIGHT / LEFT / RIGHT / BOTTOM LEFT / BOTTOM / BOTTOM RIGHT"}},
    {"relative-anchors",
     "s1",
     {"TOP LEFT / TOP / TOP RIGHT / LEFT / RIGHT / BOTTOM LEFT / BOTTOM / BOTTOM RIGHT", "25 % / 75 %"}},
    {"priorities", "s1", {"RED / GREEN / BLUE"}},
    // In reading order, top to bottom. Rows that follow upward stand in reverse; columns are listed in their order.
    {"directions",
     "s1",
     {"ONE / TWO / THREE", "TWO / THREE / FOUR", "THREE / TWO / ONE", "FOUR / THREE / TWO",
      "ONE / TWO / THREE", "TWO / THREE / FOUR", "THREE / TWO / ONE", "FOUR / THREE / TWO",
      "TWO / THREE / FOUR", "TWO / THREE / FOUR", "TWO / THREE / FOUR", "TWO / THREE / FOUR"}},
    {"justification",
     "s1",
     {"LEFT / A LONGER ROW / RIGHT / A LONGER ROW / CENTRE / A LONGER ROW / FULL / A LONGER ROW"}},
    {"effects", "s1", {"EFFECT 1", "EFFECT 2", "EFFECT 3", "EFFECT 4", "EFFECT 5", "EFFECT 6", "EFFECT 7"}},
    {"window-commands",
     "s1",
     {"FIRST / SECOND", "SECOND", "FIRST", "FIRST / SECOND", "SECOND", "FIRST / MORE / SECOND",
      "FIRST / MORE", "FIRST / MOST", "FIRST / LAST", "NEW", "NEW / END"}},
    {"delays",
     "s1",
     {"ONE", "ONE TWO", "THREE", "THREE FOUR", "FIVE", "SEVEN",
      "SEVEN / " + g_x + " / " + g_x + " / " + g_x + " / " + g_x + " / FULL"}},
    {"services", "s1", {"SERVICE 1", "SERVICE 1 / ONE PACKET", "SERVICE 1 / WHOLE"}},
    {"services", "s6", {"SERVICE 6", "SERVICE 6 / ONE PACKET"}},
    {"services", "s7", {"SERVICE 7", "SERVICE 7 / ONE PACKET"}},
    {"services", "s63", {"SERVICE 63", "SERVICE 63 / ONE PACKET"}},
    {"pop-on",
     "cc1",
     {"POP-ON CAPTION 1 / LOADED FIRST", g_full + " / " + g_full + " / " + g_full + " / " + g_full,
      "POP-ON CAPTION 1 / LOADED FIRST"}},
    {"roll-up",
     "cc1",
     {"LINE 1", "LINE 1 / LINE 2", "LINE 2 / LINE 3", "LINE 4 / LINE 5 / LINE 6",
      "LINE 9 / LINE 10 / LINE 11 / LINE 12", "LINE 11 / LINE 12 / LINE 13 / LINE 14", "LINE 13 / LINE 14"}},
    {"paint-on",
     "cc1",
     {"PAINT-ON CAPTION", "PRINTED  CAPTION / SECOND ROW", "PRINTED / SECOND ROW", "PRINTED / SECOND WORD"}},
    {"rows",
     "cc1",
     {"01 / 02 / 03 / 04 / 05 / 06 / 07 / 08 / 09 / 10 / 11 / 12 / 13 / 14 / 15",
      "1" + std::string(30, ' ') + "2 / A B  C   D / 3" + std::string(30, ' ') + "4"}},
    {"attributes-608",
     "cc1",
     {"WHITE UNDERLINED / GREEN UNDERLINED / BLUE UNDERLINED / CYAN UNDERLINED / RED UNDERLINED / YELLOW "
      "UNDERLINED / "
      "MAGENTA UNDERLINED / ITALICS UNDERLINED",
      "WHITE TRANSLUCENT / GREEN TRANSLUCENT / BLUE TRANSLUCENT / CYAN TRANSLUCENT / RED TRANSLUCENT / "
      "YELLOW "
      "TRANSLUCENT / MAGENTA TRANSLUCENT / BLACK TRANSLUCENT / NO BACKGROUND / BLACK ON WHITE",
      "STEADY FLASHING / RED ITALIC UNDERLINED"}},
    {"characters-608",
     "cc1",
     {"!\"#$%&’()á+,-./0123456789:;<=>? / @ABCDEFGHIJKLMNOPQRSTUVWXYZ[é]íó / "
      "úabcdefghijklmnopqrstuvwxyzç÷Ññ█ / "
      "®°½¿™¢£♪à èâêîôû",
      "ÁÉÓÚÜü‘¡*'—©℠•“”ÀÂÇÈÊËëÎÏïÔÙùÛ«» / ÃãÍÌìÒòÕõ{}\\^_|~ÄäÖöß¥¤│ÅåØø┌┐└┘"}},
    {"channels-608", "cc1", {"CAPTIONS CC1", "CAPTIONS CC1 ONE"}},
    {"channels-608", "cc2", {"CAPTIONS CC2", "CAPTIONS CC2 TWO"}},
    {"channels-608", "cc3", {"CAPTIONS CC3"}},
    {"channels-608", "cc4", {"CAPTIONS CC4"}},
    {"channels-608", "t1", {"TEXT T1 / SECOND LINE"}},
    {"channels-608", "t2", {"TEXT T2 / SECOND LINE"}},
    {"channels-608", "t3", {"TEXT T3 / SECOND LINE"}},
    {"channels-608", "t4", {"TEXT T4 / SECOND LINE"}},
    {"damaged-608",
     "cc1",
     {"L\u2588TTER", "COMMAND", "ONCE", "SINGLE", "ABC", "FILLERS", "\u2588\u2588", "RECOVERED"}},
    {"damaged-708",
     "s1",
     {"BEFORE THE GAP", "SAME NUMBER TWICE", "SHORT PACKET", "SKIPPED", "CUT", "BLOCK", "END"}},
};

static std::string TextOf(const ListedCue &cue)
{
    std::string text;
    for (const ListedLine &line : cue.lines) text += (text.empty() ? "" : " / ") + line.text;
    return text;
}

static std::vector<ListedCue> Listed(const std::string &file, const std::string &service)
{
    SourceOptions options = {file};
    options.service = Kova_Captions_SourceByName(service.c_str());
    return ListCues(options).cues;
}

TEST_P(PatternTexts, AreThoseOfThePatternInEveryFormat)
{
    const Expected &expected = g_expected[GetParam()];
    const Folder folder;
    const Recording recording = Record(*FindPattern(expected.pattern));
    const std::vector<ListedCue> ccd = Listed(folder.Write("a.ccd", CcdText(recording)), expected.service);
    const std::vector<ListedCue> mcc = Listed(folder.Write("a.mcc", MccText(recording)), expected.service);
    std::size_t found = 0;

    for (const ListedCue &cue : ccd) {
        found += found < expected.texts.size() && TextOf(cue) == expected.texts[found];
    }
    EXPECT_EQ(found, expected.texts.size())
        << "not found: " << expected.texts[std::min(found, expected.texts.size() - 1)];
    ASSERT_FALSE(ccd.empty());
    EXPECT_EQ(TextOf(ccd.back()), expected.texts.back());
    ASSERT_EQ(mcc.size(), ccd.size());
    const bool scc = BeyondScc(recording).empty();
    const std::vector<ListedCue> line21 =
        scc ? Listed(folder.Write("a.scc", SccText(recording)), "cc1") : ccd;
    ASSERT_EQ(line21.size(), ccd.size());
    for (std::size_t i = 0; i < ccd.size(); ++i) {
        EXPECT_EQ(mcc[i].lines, ccd[i].lines);
        EXPECT_NEAR(double(mcc[i].start), double(ccd[i].start), 1);
        EXPECT_EQ(line21[i].lines, ccd[i].lines);
        EXPECT_NEAR(double(line21[i].start), double(ccd[i].start), 1);
    }
}

INSTANTIATE_TEST_SUITE_P(Patterns, PatternTexts, testing::Range(std::size_t(0), g_expected.size()),
                         [](const auto &row) {
                             const Expected &expected = g_expected[row.param];
                             std::string name = std::string(expected.pattern) + "_" + expected.service;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(Patterns, AllHaveTheirTextsTested)
{
    std::set<std::string> tested, there;

    for (const Expected &expected : g_expected) tested.insert(expected.pattern);
    for (const Pattern &pattern : Patterns()) there.insert(pattern.name);
    EXPECT_EQ(tested, there);
    EXPECT_EQ(Patterns().size(), there.size()) << "no name twice";
    EXPECT_EQ(FindPattern("none"), nullptr);
}

TEST(Patterns, HoldTheirLastStateForSeconds)
{
    for (const Pattern &pattern : Patterns()) {
        const Recording recording = Record(pattern);
        std::size_t last = 0;
        for (std::size_t i = 0; i < recording.frames.size(); ++i) {
            if (!SentTriplets(recording.frames[i]).empty()) last = i;
        }
        EXPECT_GE(FrameTime(recording.frames.size() - last), 2900000) << pattern.name;
        EXPECT_LT(FrameTime(recording.frames.size()), 60000000) << pattern.name << ": files stay small";
        EXPECT_FALSE(recording.scenes.empty()) << pattern.name;
    }
}

namespace
{

// A decoder that plays a pattern.
class Played
{
public:
    explicit Played(const char *pattern) : recording_(Record(*FindPattern(pattern)))
    {
    }

    const Recording &recording() const
    {
        return recording_;
    }

    // To the end of the frame.
    void RunTo(std::size_t frame)
    {
        for (; now_ <= frame && now_ < recording_.frames.size(); ++now_) {
            const encoding::ByteString triplets = AllTriplets(recording_.frames[now_]);
            Kova_Captions_PushTriplets(decoder_.get(), FrameTime(now_), triplets.data(), triplets.size() / 3);
        }
    }
    void RunToEnd()
    {
        RunTo(recording_.frames.size());
    }
    // Two seconds after the scene began, counted from 0.
    void RunToScene(std::size_t scene)
    {
        RunTo(recording_.scenes.at(scene).first + 60);
    }

    const KovaCaptionsWindow &Window(unsigned window = 0)
    {
        KovaCaptionsService service;
        EXPECT_EQ(Kova_Captions_GetService(decoder_.get(), 1, &service, windows_.data(), 0xFF), 0);
        return windows_[window];
    }
    const KovaCaptionsChannelCell &Cell(unsigned row, unsigned column,
                                        std::uint8_t channel = KOVA_CAPTIONS_CC1)
    {
        EXPECT_EQ(Kova_Captions_GetChannel(decoder_.get(), channel, &channel_), 0);
        return channel_.displayed[row - 1][column];
    }
    KovaCaptionsCounters Counters() const
    {
        KovaCaptionsCounters counters;
        EXPECT_EQ(Kova_Captions_GetCounters(decoder_.get(), &counters), 0);
        return counters;
    }

private:
    struct Destroy {
        void operator()(KovaCaptions *decoder) const
        {
            Kova_Captions_Destroy(decoder);
        }
    };

    Recording recording_;
    std::unique_ptr<KovaCaptions, Destroy> decoder_{Kova_Captions_Create(nullptr)};
    std::size_t now_ = 0;
    std::array<KovaCaptionsWindow, KOVA_CAPTIONS_WINDOWS> windows_ = {};
    KovaCaptionsChannel channel_ = {};
};

} // namespace

TEST(Patterns, AreWithoutErrorsUnlessTheyAreDamaged)
{
    for (const Pattern &pattern : Patterns()) {
        Played played(pattern.name);
        played.RunToEnd();
        const KovaCaptionsCounters counters = played.Counters();
        const bool bad608 = std::string(pattern.name) == "damaged-608";
        const bool bad708 = std::string(pattern.name) == "damaged-708";

        // One letter, the two halves of a preamble, 45 pairs.
        EXPECT_EQ(counters.parity_errors, bad608 ? 48u : 0u) << pattern.name;
        EXPECT_EQ(counters.sequence_gaps, bad708 ? 1u : 0u) << pattern.name;
        EXPECT_EQ(counters.short_packets, bad708 ? 1u : 0u) << pattern.name;
        EXPECT_EQ(counters.stray_data, bad708 ? 1u : 0u) << pattern.name;
        EXPECT_EQ(counters.bad_service_blocks, bad708 ? 1u : 0u) << pattern.name;
        EXPECT_EQ(counters.cut_elements, bad708 ? 1u : 0u) << pattern.name;
        // 11, 19, five codes of C2 and C3 with arguments, one without, 93; two of line 21.
        EXPECT_EQ(counters.unknown_codes, bad708 ? 10u : bad608 ? 2u : 0u) << pattern.name;
        EXPECT_EQ(counters.full_buffers, std::string(pattern.name) == "delays" ? 1u : 0u) << pattern.name;
        EXPECT_EQ(counters.discontinuities + counters.cut_cc_data + counters.timeouts, 0u) << pattern.name;
    }
}

// 47 CFR 79.102(i), table 4.
TEST(Patterns, HaveThePredefinedWindowStyles)
{
    const unsigned solid = 0, transparent = 3, left = 0, center = 2;
    const struct {
        unsigned justify, print, scroll, wrap, fill;
    } styles[] = {{left, 0, 3, 0, solid}, {left, 0, 3, 0, transparent}, {center, 0, 3, 0, solid},
                  {left, 0, 3, 1, solid}, {left, 0, 3, 1, transparent}, {center, 0, 3, 1, solid},
                  {left, 2, 1, 0, solid}};
    Played played("window-styles");

    for (std::size_t i = 0; i < 7; ++i) {
        played.RunToScene(i);
        const KovaCaptionsWindowAttributes &attributes = played.Window().attributes;
        EXPECT_EQ(attributes.justify, styles[i].justify) << i;
        EXPECT_EQ(attributes.print_direction, styles[i].print) << i;
        EXPECT_EQ(attributes.scroll_direction, styles[i].scroll) << i;
        EXPECT_EQ(attributes.word_wrap, styles[i].wrap) << i;
        EXPECT_EQ(attributes.fill_opacity, styles[i].fill) << i;
    }
}

// 47 CFR 79.102(i), table 5.
TEST(Patterns, HaveThePredefinedPenStyles)
{
    static const unsigned fonts[] = {0, 1, 2, 3, 4, 3, 4};
    Played played("pen-styles");

    played.RunToEnd();
    for (unsigned style = 1; style <= 7; ++style) {
        const KovaCaptionsPen &pen = played.Window(style).cells[0][0].pen;
        EXPECT_EQ(pen.font, fonts[style - 1]) << style;
        EXPECT_EQ(pen.edge_type, style >= 6 ? 3 : 0) << style;
        EXPECT_EQ(pen.background_opacity, style >= 6 ? 3 : 0) << style;
        EXPECT_EQ(pen.foreground, 0x2A) << style;
    }
}

TEST(Patterns, HaveEveryColourAndOpacity)
{
    Played cube("color-cube"), opacities("opacities"), fills("window-fills"), borders("borders");

    cube.RunToScene(0);
    for (unsigned color = 0; color < 64; ++color) {
        EXPECT_EQ(cube.Window().cells[color / 8][color % 8 * 2].pen.foreground, color);
    }
    cube.RunToEnd();
    for (unsigned color = 0; color < 64; ++color) {
        EXPECT_EQ(cube.Window().cells[color / 8][color % 8 * 2].pen.background, color);
    }
    for (Played *played : {&opacities, &fills, &borders}) played->RunToEnd();
    for (unsigned opacity = 0; opacity < 4; ++opacity) {
        EXPECT_EQ(opacities.Window().cells[opacity][0].pen.foreground_opacity, opacity);
        EXPECT_EQ(opacities.Window().cells[4 + opacity][0].pen.background_opacity, opacity);
        EXPECT_EQ(fills.Window(opacity).attributes.fill_opacity, opacity);
        EXPECT_EQ(fills.Window(opacity).attributes.fill_color, KOVA_CAPTIONS_RED);
    }
    for (unsigned border = 0; border < 6; ++border) {
        EXPECT_EQ(borders.Window(border).attributes.border_type, border);
        EXPECT_EQ(borders.Window(border).attributes.border_color, KOVA_CAPTIONS_YELLOW);
    }
}

TEST(Patterns, HaveEveryPen)
{
    Played fonts("fonts"), edges("edges"), sizes("sizes"), offsets("offsets");

    for (Played *played : {&fonts, &edges, &sizes, &offsets}) played->RunToEnd();
    for (unsigned font = 0; font < 8; ++font) EXPECT_EQ(fonts.Window().cells[font][0].pen.font, font);
    EXPECT_EQ(fonts.Window().cells[8][0].pen.italics, 1);
    EXPECT_EQ(fonts.Window().cells[8][0].pen.underline, 0);
    EXPECT_EQ(fonts.Window().cells[9][0].pen.italics, 0);
    EXPECT_EQ(fonts.Window().cells[9][0].pen.underline, 1);
    EXPECT_EQ(fonts.Window().cells[10][0].pen.italics, 1);
    for (unsigned edge = 0; edge < 6; ++edge) {
        EXPECT_EQ(edges.Window().cells[edge][0].pen.edge_type, edge);
        EXPECT_EQ(edges.Window().cells[edge][0].pen.edge_color, KOVA_CAPTIONS_BLUE) << "of the last page";
    }
    for (unsigned size = 0; size < 3; ++size) EXPECT_EQ(sizes.Window().cells[size][0].pen.size, size);
    EXPECT_EQ(offsets.Window().cells[0][1].pen.offset, KOVA_CAPTIONS_SUBSCRIPT);
    EXPECT_EQ(offsets.Window().cells[0][2].pen.offset, KOVA_CAPTIONS_NORMAL);
    EXPECT_EQ(offsets.Window().cells[1][1].pen.offset, KOVA_CAPTIONS_SUPERSCRIPT);
}

TEST(Patterns, HaveEveryAnchorPoint)
{
    Played absolute("anchors"), relative("relative-anchors");

    for (std::size_t point = 0; point < 9; ++point) {
        absolute.RunTo(absolute.recording().scenes.at(point).first + 30);
        EXPECT_EQ(absolute.Window().definition.anchor_point, point);
        EXPECT_EQ(absolute.Window().definition.anchor_vertical, 37);
        EXPECT_EQ(absolute.Window().definition.anchor_horizontal, 105);
        EXPECT_EQ(absolute.Window().definition.relative, 0);
    }
    absolute.RunToEnd();
    EXPECT_EQ(absolute.Window(7).definition.anchor_vertical, 74);
    EXPECT_EQ(absolute.Window(7).definition.anchor_horizontal, 209);
    relative.RunToScene(0);
    EXPECT_EQ(relative.Window(7).definition.relative, 1);
    EXPECT_EQ(relative.Window(7).definition.anchor_vertical, 99);
    EXPECT_EQ(relative.Window(7).definition.anchor_horizontal, 99);
}

TEST(Patterns, HaveEveryDirectionJustificationAndEffect)
{
    Played directions("directions"), justification("justification"), effects("effects");
    std::set<std::pair<int, int>> pairs, kinds;

    for (std::size_t i = 0; i < 8; ++i) {
        directions.RunToScene(i);
        const KovaCaptionsWindowAttributes &attributes = directions.Window().attributes;
        pairs.insert({attributes.print_direction, attributes.scroll_direction});
    }
    // CTA-708, table 24: across the print direction.
    EXPECT_EQ(pairs, (std::set<std::pair<int, int>>{
                         {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 0}, {2, 1}, {3, 0}, {3, 1}}));
    justification.RunToEnd();
    for (unsigned justify = 0; justify < 4; ++justify) {
        EXPECT_EQ(justification.Window(justify).attributes.justify, justify);
    }
    for (std::size_t i = 0; i < 7; ++i) {
        effects.RunTo(effects.recording().scenes.at(i).first + 5);
        const KovaCaptionsWindow &window = effects.Window();
        kinds.insert({window.attributes.display_effect, window.attributes.effect_direction});
        const std::int64_t durations[] = {0, 500000, 2000000, 2000000, 2000000, 2000000, 2000000};
        EXPECT_EQ(window.effect.duration, durations[i]) << i;
        EXPECT_EQ(window.effect.showing, i > 0) << i;
    }
    EXPECT_EQ(kinds, (std::set<std::pair<int, int>>{{0, 0}, {1, 0}, {2, 0}, {2, 1}, {2, 2}, {2, 3}}));
}

TEST(Patterns, ChangePrioritiesOfTheSameWindows)
{
    const unsigned priorities[][3] = {{0, 3, 7}, {7, 3, 0}, {7, 0, 3}};
    Played played("priorities");

    for (std::size_t page = 0; page < 3; ++page) {
        played.RunToScene(page);
        for (unsigned window = 0; window < 3; ++window) {
            EXPECT_EQ(played.Window(window).definition.priority, priorities[page][window]);
        }
    }
}

TEST(Patterns, HaveEveryAttributeOfLine21)
{
    // In the order of the preambles. The last is italics, or a black background.
    const unsigned colors[] = {KOVA_CAPTIONS_WHITE,   KOVA_CAPTIONS_GREEN, KOVA_CAPTIONS_BLUE,
                               KOVA_CAPTIONS_CYAN,    KOVA_CAPTIONS_RED,   KOVA_CAPTIONS_YELLOW,
                               KOVA_CAPTIONS_MAGENTA, KOVA_CAPTIONS_WHITE};
    const unsigned lengths[] = {5, 5, 4, 4, 3, 6, 7, 7};
    Played played("attributes-608");

    played.RunToScene(0);
    for (unsigned i = 0; i < 8; ++i) {
        const KovaCaptionsChannelCell first = played.Cell(2 + i, 0);
        const KovaCaptionsChannelCell second = played.Cell(2 + i, lengths[i] + 1);
        EXPECT_EQ(first.foreground, colors[i]) << i;
        EXPECT_EQ(first.italics, i == 7) << i;
        EXPECT_EQ(first.underline, 0) << i;
        EXPECT_EQ(second.character, 'U') << i;
        EXPECT_EQ(second.foreground, colors[i]) << i;
        EXPECT_EQ(second.underline, 1) << i;
    }
    played.RunToScene(1);
    for (unsigned i = 0; i < 8; ++i) {
        const unsigned background = i == 7 ? unsigned(KOVA_CAPTIONS_BLACK) : colors[i];
        const unsigned length = i == 7 ? 5 : lengths[i];
        EXPECT_EQ(played.Cell(2 + i, 1).background, background) << i;
        EXPECT_EQ(played.Cell(2 + i, 1).background_opacity, KOVA_CAPTIONS_SOLID) << i;
        EXPECT_EQ(played.Cell(2 + i, 2 + length).character, 'T') << i;
        EXPECT_EQ(played.Cell(2 + i, 2 + length).background, background) << i;
        EXPECT_EQ(played.Cell(2 + i, 2 + length).background_opacity, KOVA_CAPTIONS_TRANSLUCENT) << i;
    }
    EXPECT_EQ(played.Cell(10, 1).background_opacity, KOVA_CAPTIONS_TRANSPARENT);
    EXPECT_EQ(played.Cell(11, 2).foreground, KOVA_CAPTIONS_BLACK);
    EXPECT_EQ(played.Cell(11, 2).background, KOVA_CAPTIONS_WHITE);
    played.RunToEnd();
    EXPECT_EQ(played.Cell(14, 4).flash, 0);
    EXPECT_EQ(played.Cell(14, 11).flash, 1);
    const KovaCaptionsChannelCell red = played.Cell(15, 7);
    EXPECT_EQ(red.character, 'R');
    EXPECT_EQ(red.foreground, KOVA_CAPTIONS_RED);
    EXPECT_TRUE(red.italics && red.underline && red.flash);
}

// Outlines lie where the standard puts the windows that are visible then.
TEST(Patterns, OutlineTheirWindows)
{
    Played played("anchors");

    played.RunToEnd();
    const std::vector<Box> &boxes = played.recording().scenes.back().second.boxes;
    ASSERT_EQ(boxes.size(), 8u);
    // Top left: 12 of 42 columns and 1 of 15 rows. Bottom right: up to 209/210 and 74/75.
    EXPECT_NEAR(boxes[0].right, 12 / 42.0, 1e-9);
    EXPECT_NEAR(boxes[0].bottom, 1 / 15.0, 1e-9);
    EXPECT_NEAR(boxes[7].right, 209 / 210.0, 1e-9);
    EXPECT_NEAR(boxes[7].bottom, 74 / 75.0, 1e-9);
}
