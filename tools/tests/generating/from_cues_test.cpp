// SPDX-License-Identifier: MIT
// Cues become closed captions, and are read back by the decoder.
#include "generating/from_cues.h"

#include <gtest/gtest.h>

#include "generating/caption_rows.h"
#include "generating/characters.h"
#include "generating/writers.h"
#include "reading/subtitles.h"
#include "support/tool.h"

using namespace caption;
using namespace caption::encoding;

using Said = std::vector<std::string>;

static std::string RowText(const CaptionRow &row)
{
    std::string text;
    for (const CaptionCell &cell : row.cells) text += char(cell.code);
    return text;
}

static Said Wrapped(const std::vector<std::string> &lines)
{
    Cue cue;
    Said rows;
    caption::Block block;

    for (const std::string &line : lines) block.lines.push_back({{line, {}}});
    cue.blocks = {block};
    const CaptionPage page = PageOf({&cue});
    for (const CaptionRow &row : page.groups[std::size_t(Vertical::BOTTOM)]) rows.push_back(RowText(row));
    return rows;
}

// What each source shows of a subtitle text, as "start-end row,column text | row,column text".
static Said Shown(const std::string &srt, const std::string &service, const std::string &format = "ccd",
                  Notices *notices = nullptr)
{
    const Folder folder;
    Notices own;
    const Subtitles subtitles = ReadSubtitles({folder.Write("a.srt", srt)});
    const bool scc = format == "scc";
    const Recording recording = FromCues(
        "a", subtitles.cues, scc ? CaptionKinds::CEA_608 : CaptionKinds::BOTH, notices ? *notices : own);
    const std::string text = scc               ? SccText(recording)
                             : format == "mcc" ? MccText(recording)
                                               : CcdText(recording);
    SourceOptions options = {folder.Write("a." + format, text)};
    options.service = Kova_Captions_SourceByName(service.c_str());
    Said shown;

    for (const ListedCue &cue : ListCues(options).cues) {
        std::string line = std::to_string(cue.start) + "-" + (cue.end ? std::to_string(*cue.end) : "") + " ";
        for (const ListedLine &row : cue.lines) {
            line += (&row == &cue.lines.front() ? "" : " | ") + std::to_string(row.row.value_or(-1)) + "," +
                    std::to_string(row.column.value_or(-1)) + " " + row.text;
        }
        shown.push_back(line);
    }
    return shown;
}

static std::string Srt(int number, const std::string &times, const std::string &text)
{
    return std::to_string(number) + "\n" + times + "\n" + text + "\n\n";
}

TEST(Characters608, AreThemselvesOrAlike)
{
    EXPECT_EQ(In608(U'a'), U"a");
    EXPECT_EQ(In608(U'\u00E9'), U"\u00E9");
    EXPECT_EQ(In608(U'\''), U"\u2019");
    EXPECT_EQ(In608(U'\u2026'), U"...");
    EXPECT_EQ(In608(U'\u0151'), U"o") << "o with double acute";
    EXPECT_EQ(In608(U'\u0416'), std::nullopt) << "Cyrillic";
    EXPECT_EQ(In608(U'\u4E2D'), std::nullopt);
}

// Sent as a letter that every decoder has, then the character that replaces it.
TEST(Characters608, ArePairsOfTheStandard)
{
    const auto pairs = [](const std::u32string &text) {
        PairWriter writer;
        for (const char32_t character : text) writer.Put(character);
        return writer.Finish();
    };

    EXPECT_EQ(pairs(U"abc"), (Pairs{{0x61, 0x62}, {0xE3, 0x80}}));
    EXPECT_EQ(pairs(U"\u00E9"), (Pairs{{0xDC, 0x80}}));
    EXPECT_EQ(pairs(U"a\u266A"), (Pairs{{0x61, 0x80}, {0x91, 0x37}, {0x91, 0x37}}));
    EXPECT_EQ(pairs(U"\u00C1"), (Pairs{{0xC1, 0x80}, {0x92, 0x20}, {0x92, 0x20}})) << "A, then A acute";
    EXPECT_EQ(pairs(U"b\u00DF"), (Pairs{{0x62, 0x73}, {0x13, 0x34}, {0x13, 0x34}})) << "s, then sharp s";
}

TEST(Characters708, AreInTheirSets)
{
    EXPECT_EQ(In708(U'A'), (ByteString{0x41}));
    EXPECT_EQ(In708(U'\u00E9'), (ByteString{0xE9}));
    EXPECT_EQ(In708(U'\u266A'), (ByteString{0x7F}));
    EXPECT_EQ(In708(U'\u2026'), (ByteString{0x10, 0x25}));
    EXPECT_EQ(In708(U'\u0416'), (ByteString{0x18, 0x04, 0x16}));
    EXPECT_EQ(In708(U'\U0001F600'), std::nullopt);
}

TEST(Rows, BreakAtSpacesAfterAtMost32Columns)
{
    EXPECT_EQ(Wrapped({"short"}), Said{"short"});
    EXPECT_EQ(Wrapped({"exactly thirty-two columns here."}), Said{"exactly thirty-two columns here."});
    EXPECT_EQ(Wrapped({"exactly thirty-three columns her."}), (Said{"exactly thirty-three columns", "her."}));
    EXPECT_EQ(Wrapped({"  blanks   are   one  "}), Said{"blanks are one"});
    EXPECT_EQ(Wrapped({std::string(70, 'x')}), (Said{std::string(32, 'x'), std::string(32, 'x'), "xxxxxx"}));
}

TEST(Rows, JoinLinesThatRunOnWhereOneIsTooLong)
{
    EXPECT_EQ(Wrapped({"one", "two"}), (Said{"one", "two"}));
    EXPECT_EQ(Wrapped({"A line that is longer than thirty-two", "columns, and another."}),
              (Said{"A line that is longer than", "thirty-two columns, and another."}));
    EXPECT_EQ(Wrapped({"- A line that is longer than thirty-two", "- Yes."}),
              (Said{"- A line that is longer than", "thirty-two", "- Yes."}));
}

TEST(Rows, AreFifteenAtMost)
{
    Cue cue;
    caption::Block block;
    for (int i = 0; i < 17; ++i) block.lines.push_back({{"x", {}}});
    cue.blocks = {block};
    const CaptionPage page = PageOf({&cue});

    EXPECT_EQ(page.RowCount(), 15u);
    EXPECT_EQ(page.lost, 2u);
}

// A code takes the place of a space where there is one, else a cell of its own.
TEST(Rows, HaveRoomForAttributeCodes)
{
    Style italic;
    italic.italic = true;
    Cue cue;
    caption::Block first, second;
    first.lines = {{{"12345 ", {}}, {"12345678901234567890123456", italic}}};
    second.lines = {{{"123456", italic}, {"78901234567890123456789012", {}}}};
    cue.blocks = {first, second};
    const CaptionPage page = PageOf({&cue});
    const auto &rows = page.groups[std::size_t(Vertical::BOTTOM)];

    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(RowText(rows[0]), "12345 12345678901234567890123456") << "32 columns, the space is the code";
    EXPECT_EQ(RowText(rows[1]), "123456789012345678901234567890") << "30 letters and two codes";
    EXPECT_EQ(RowText(rows[2]), "12");
}

// 1 s is nearest to frame 30, at 1.001 s; 2 s to frame 60, at 2.002 s.
TEST(FromCues, ShowsTheSameTextsAtTheSameFrames)
{
    const std::string srt = Srt(1, "00:00:01,500 --> 00:00:03,000", "Hello,\nworld") +
                            Srt(2, "00:00:03,000 --> 00:00:05,000", "{\\an8}At the top") +
                            Srt(3, "00:00:06,000 --> 00:00:08,000", "Right.");
    // Frames 45, 90, 150, 180, 240. Rows of six, five, ten and six letters in 32 columns.
    const Said cc1 = {"1502-3003 14,13 Hello, | 15,13 world", "3003-5005 1,11 At the top",
                      "6006-8008 15,13 Right."};
    // In windows as wide as their longest row.
    const Said s1 = {"1502-3003 0,0 Hello, | 1,0 world", "3003-5005 0,0 At the top", "6006-8008 0,0 Right."};

    EXPECT_EQ(Shown(srt, "cc1", "scc"), cc1);
    EXPECT_EQ(Shown(srt, "cc1", "mcc"), cc1);
    EXPECT_EQ(Shown(srt, "cc1"), cc1);
    EXPECT_EQ(Shown(srt, "cc1", "ts"), cc1);
    EXPECT_EQ(Shown(srt, "s1", "mcc"), s1);
    EXPECT_EQ(Shown(srt, "s1"), s1);
    EXPECT_EQ(Shown(srt, "s1", "ts"), s1);
}

TEST(FromCues, KeepsTheTimesOfALongFileWithinAFrame)
{
    std::string srt;
    Said expected;
    const auto time = [](int ms) {
        char text[40];
        std::snprintf(text, sizeof text, "%02d:%02d:%02d,%03d", ms / 3600000, ms / 60000 % 60, ms / 1000 % 60,
                      ms % 1000);
        return std::string(text);
    };

    // Odd steps, so that starts lie anywhere between two frames; up to more than an hour.
    for (int i = 0; i < 400; ++i) {
        const int start = 2000 + i * 10007;
        srt += Srt(i + 1, time(start) + " --> " + time(start + 4003), "Caption " + std::to_string(i));
    }
    for (const std::string service : {"cc1", "s1"}) {
        const Said shown = Shown(srt, service, "mcc");
        ASSERT_EQ(shown.size(), 400u);
        for (int i = 0; i < 400; ++i) {
            long start = 0, end = 0;
            ASSERT_EQ(std::sscanf(shown[std::size_t(i)].c_str(), "%ld-%ld", &start, &end), 2);
            EXPECT_NEAR(double(start), 2000 + i * 10007, 17) << service << " " << i;
            EXPECT_NEAR(double(end), 2000 + i * 10007 + 4003, 17) << service << " " << i;
            EXPECT_EQ(shown[std::size_t(i)].substr(shown[std::size_t(i)].find("Caption")),
                      "Caption " + std::to_string(i));
        }
    }
}

TEST(FromCues, ShowsOverlappingCuesTogether)
{
    const std::string srt =
        Srt(1, "00:00:02,002 --> 00:00:06,006", "one") + Srt(2, "00:00:04,004 --> 00:00:08,008", "two");

    EXPECT_EQ(Shown(srt, "cc1"),
              (Said{"2002-4004 15,14 one", "4004-6006 14,14 one | 15,14 two", "6006-8008 15,14 two"}));
}

TEST(FromCues, IsLateWhereTheBandwidthDoesNotSuffice)
{
    // 96 letters take 48 frames, 1.6 s, and the codes before them some more.
    const std::string full = "12345678901234567890123456789012";
    const std::string srt = Srt(1, "00:00:00,100 --> 00:00:01,000", full + "\n" + full + "\n" + full);
    Notices notices;
    const Said shown = Shown(srt, "cc1", "scc", &notices);

    // RCL, ENM and three preambles once each, 48 pairs: EOC in frame 53. The caption stays for half a second.
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].substr(0, 9), "1768-2269") << shown[0];
    // Frame 3 was meant: 50 frames.
    EXPECT_EQ(notices.said(),
              Said{"CEA-608: captions that appear late for lack of bandwidth: 1, by up to 1668 ms"});
}

TEST(FromCues, NamesCharactersThatAreMissingOnce)
{
    const std::string srt = Srt(1, "00:00:02,000 --> 00:00:04,000", "\u0416\u0416 \U0001F600") +
                            Srt(2, "00:00:05,000 --> 00:00:06,000", "\u0416");
    Notices notices;
    const Said cc1 = Shown(srt, "cc1", "mcc", &notices);
    const Said s1 = Shown(srt, "s1", "mcc");

    EXPECT_EQ(
        notices.said(),
        (Said{"characters that CEA-608 does not have are question marks there: \u0416 (U+0416), \U0001F600 "
              "(U+1F600)",
              "characters that CEA-708 does not have are underscores there: \U0001F600 (U+1F600)"}));
    ASSERT_EQ(cc1.size(), 2u);
    EXPECT_EQ(cc1[0].substr(cc1[0].find(' ')), " 15,14 ?? ?");
    EXPECT_EQ(s1[0].substr(s1[0].find(' ')), " 0,0 \u0416\u0416 _");
}

TEST(FromCues, KeepsItalicsUnderlineAndColours)
{
    const Folder folder;
    const std::string srt = Srt(1, "00:00:02,000 --> 00:00:04,000",
                                "<i>Italic</i> <u>under</u> <font color=\"#FF0000\">red</font>");
    Notices notices;
    const Subtitles subtitles = ReadSubtitles({folder.Write("a.srt", srt)});
    const Recording recording = FromCues("a", subtitles.cues, CaptionKinds::BOTH, notices);
    SourceOptions options = {folder.Write("a.ccd", CcdText(recording))};
    std::string commands;

    for (const char *const service : {"cc1", "s1"}) {
        options.service = Kova_Captions_SourceByName(service);
        for (const CaptionCommand &command : ListCommands(options).commands) commands += command.text + "\n";
    }

    // 17 columns: a code, "Italic", a code, "under", a code, "red"; centred from column 7.
    EXPECT_NE(commands.find("ResumeCaptionLoading\n"
                            "EraseNonDisplayedMemory\n"
                            "Preamble row=15 indent=4 color=white underline=0\n"
                            "TabOffset columns=3\n"
                            "MidRow italics=1 underline=0\n"
                            "Text \"Italic\"\n"
                            "MidRow color=white italics=0 underline=1\n"
                            "Text \"under\"\n"
                            "MidRow color=red italics=0 underline=0\n"
                            "Text \"red\"\n"
                            "EndOfCaption\n"
                            "EraseDisplayedMemory\n"),
              std::string::npos)
        << commands;
    // Spaces between words are not underlined.
    EXPECT_NE(
        commands.find(
            "SetPenAttributes tag=0 offset=normal size=standard italics=1 underline=0 edge=none font=0\n"
            "SetPenColor foreground=2,2,2 foreground_opacity=solid background=0,0,0 "
            "background_opacity=solid edge=0,0,0\n"
            "Text \"Italic \"\n"
            "SetPenAttributes tag=0 offset=normal size=standard italics=0 underline=1 edge=none font=0\n"
            "SetPenColor foreground=2,2,2 foreground_opacity=solid background=0,0,0 "
            "background_opacity=solid edge=0,0,0\n"
            "Text \"under\"\n"
            "SetPenAttributes tag=0 offset=normal size=standard italics=0 underline=0 edge=none font=0\n"
            "SetPenColor foreground=2,0,0 foreground_opacity=solid background=0,0,0 "
            "background_opacity=solid edge=0,0,0\n"
            "Text \" red\"\n"),
        std::string::npos)
        << commands;
}

TEST(FromCues, NeedsText)
{
    Notices notices;

    EXPECT_THROW(FromCues("a", {}, CaptionKinds::BOTH, notices), std::exception);
}
