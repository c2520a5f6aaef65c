// SPDX-License-Identifier: MIT
// Closed captions and teletext, made from their definitions.
#include <gtest/gtest.h>

#include <cmath>

#include "base/failure.h"
#include "reading/media.h"
#include "reading/summary.h"
#include "support/tool.h"

using caption::Block;
using caption::Color;
using caption::Cue;
using caption::Horizontal;
using caption::Line;
using caption::StreamKind;
using caption::Style;
using caption::Subtitles;
using caption::Vertical;
using Codes = std::vector<std::uint16_t>;
using Lines = std::vector<Line>;
using Said = std::vector<std::string>;

static Style Boxed(std::optional<Color> color = {}, Color background = {0, 0, 0, 255})
{
    Style style;
    style.color = color;
    style.background = background;
    return style;
}

static const Color g_yellow = {255, 255, 0, 255};
static const Color g_cyan = {0, 255, 255, 255};

// Codes of the first channel.
static const std::uint16_t g_load = media::CaptionCode(0x14, 0x20);
static const std::uint16_t g_flip = media::CaptionCode(0x14, 0x2F);
static const std::uint16_t g_erase = media::CaptionCode(0x14, 0x2C);
static const std::uint16_t g_return = media::CaptionCode(0x14, 0x2D);
static const std::uint16_t g_direct = media::CaptionCode(0x14, 0x29);
static const std::uint16_t g_rollUp3 = media::CaptionCode(0x14, 0x26);

// A row's address goes to its first column, indented by fours.
static std::uint16_t Row1(int indent)
{
    return media::CaptionCode(0x11, 0x50 + indent / 2);
}

static std::uint16_t Row14(int indent)
{
    return media::CaptionCode(0x14, 0x50 + indent / 2);
}

static std::uint16_t Row15(int indent)
{
    return media::CaptionCode(0x14, 0x70 + indent / 2);
}

static Codes Joined(const std::vector<Codes> &parts)
{
    Codes codes;
    for (const Codes &part : parts) codes.insert(codes.end(), part.begin(), part.end());
    return codes;
}

static Codes Text(const std::string &text)
{
    return media::CaptionText(text);
}

// The n-th frame's time in milliseconds.
static std::int64_t Frame(std::size_t n)
{
    return std::llround(double(n) * 1001 / 30);
}

// A time that a file writes as a non-drop time code: its seconds have 30 frames of 1001/30000 s, plus these
// frames.
static std::int64_t AtSecond(std::int64_t second, std::int64_t frame = 0)
{
    return Frame(std::size_t(second * 30 + frame));
}

static std::string SccLine(const std::string &time, const Codes &codes)
{
    std::string line = time + "\t";
    for (const std::uint16_t code : codes) {
        char hexadecimal[8];
        std::snprintf(hexadecimal, sizeof hexadecimal, "%04x ", unsigned(code));
        line += hexadecimal;
    }
    return line + "\n\n";
}

static Subtitles ReadScc(const std::string &lines)
{
    const Folder folder;
    return caption::ReadSubtitles({folder.Write("a.scc", "Scenarist_SCC V1.0\n\n" + lines)});
}

TEST(Scc, ShowsALoadedCaptionWhenItIsFlippedAndUntilItIsErased)
{
    const Subtitles read =
        ReadScc(SccLine("00:00:01:00", Joined({{g_load, Row15(0)}, Text("Hello"), {g_flip}})) +
                SccLine("00:00:03:00", {g_erase}) +
                SccLine("00:00:04:00", Joined({{g_load, Row1(8)}, Text("top"), {g_flip}})));

    // The flip is sent with the sixth frame of the first line, after two codes and three pairs of letters.
    ASSERT_EQ(read.cues.size(), 2u);
    EXPECT_EQ(Summary(read.cues[0]),
              std::to_string(AtSecond(1, 5)) + "-" + std::to_string(AtSecond(3)) + " Hello");
    EXPECT_EQ(read.cues[1].start, AtSecond(4, 4));
    EXPECT_EQ(read.cues[1].end, read.cues[1].start + 4000) << "nothing ends the last one";

    // 32 columns and 15 rows lie within the inner four fifths.
    const Block &bottom = read.cues[0].blocks.at(0);
    EXPECT_EQ(bottom.horizontal, Horizontal::LEFT);
    EXPECT_EQ(bottom.vertical, Vertical::BOTTOM);
    EXPECT_NEAR(bottom.anchor.value().x, 0.1, 1e-9);
    EXPECT_NEAR(bottom.anchor.value().y, 0.9, 1e-9);
    EXPECT_EQ(bottom.lines, (Lines{{{"Hello", Boxed()}}}));
    EXPECT_EQ(bottom.rollUp, 0);
    const Block &top = read.cues[1].blocks.at(0);
    EXPECT_EQ(top.vertical, Vertical::TOP);
    EXPECT_NEAR(top.anchor.value().x, 0.3, 1e-9);
    EXPECT_NEAR(top.anchor.value().y, 0.1, 1e-9);
}

TEST(Scc, KnowsColoursItalicsAndUnderline)
{
    // Codes in the middle of a row take a cell, which is empty.
    const Subtitles read = ReadScc(SccLine("00:00:01:00", Joined({{g_load, media::CaptionCode(0x14, 0x6A)},
                                                                  Text("Yellow"),
                                                                  {media::CaptionCode(0x11, 0x2E)},
                                                                  Text("slanted "),
                                                                  {media::CaptionCode(0x11, 0x27)},
                                                                  Text("cyan"),
                                                                  {g_flip}})));
    const Line &line = read.cues.at(0).blocks.at(0).lines.at(0);
    EXPECT_EQ(PlainText(line), "Yellow slanted  cyan");
    ASSERT_GE(line.size(), 3u);
    EXPECT_EQ(line.front(), (caption::Run{"Yellow", Boxed(g_yellow)}));
    EXPECT_TRUE(line[1].style.italic);
    EXPECT_EQ(line.back().style.color, g_cyan);
    EXPECT_TRUE(line.back().style.underline);
    EXPECT_FALSE(line.back().style.italic) << "a colour ends italics";
}

TEST(Scc, TellsHowRowsAreAlignedByTheirEnds)
{
    const auto aligned = [](std::uint16_t first, const std::string &above, std::uint16_t second,
                            const std::string &below) {
        return ReadScc(SccLine("00:00:01:00",
                               Joined({{g_load, first}, Text(above), {second}, Text(below), {g_flip}})))
            .cues.at(0)
            .blocks.at(0);
    };
    const Block left = aligned(Row14(4), "first", Row15(4), "and second");
    const Block right = aligned(Row14(8), "abcdefgh", Row15(12), "abcd");
    const Block centered = aligned(Row14(8), "sixteen letters.", Row15(12), "eight on");
    const Block odd = aligned(Row14(0), "- Who?", Row15(8), "- The butler.");

    EXPECT_EQ(left.horizontal, Horizontal::LEFT);
    EXPECT_NEAR(left.anchor.value().x, 0.2, 1e-9);
    EXPECT_EQ(left.lines.size(), 2u);
    EXPECT_EQ(right.horizontal, Horizontal::RIGHT);
    EXPECT_NEAR(right.anchor.value().x, 0.1 + 16 * 0.025, 1e-9);
    EXPECT_EQ(centered.horizontal, Horizontal::CENTER);
    EXPECT_NEAR(centered.anchor.value().x, 0.5, 1e-9);
    EXPECT_EQ(odd.horizontal, Horizontal::LEFT);
    EXPECT_EQ(PlainText(odd.lines.at(0)), "- Who?");
    EXPECT_EQ(PlainText(odd.lines.at(1)).rfind("\u00A0\u00A0\u00A0\u00A0\u00A0\u00A0\u00A0\u00A0- The", 0),
              0u);
}

TEST(Scc, KeepsRowsApartThatDoNotFollowOneAnother)
{
    const Subtitles read = ReadScc(SccLine(
        "00:00:01:00", Joined({{g_load, Row1(0)}, Text("above"), {Row15(0)}, Text("below"), {g_flip}})));

    ASSERT_EQ(read.cues.at(0).blocks.size(), 2u);
    EXPECT_EQ(read.cues[0].blocks[0].vertical, Vertical::TOP);
    EXPECT_EQ(read.cues[0].blocks[1].vertical, Vertical::BOTTOM);
}

TEST(Scc, KeepsTheColumnsOfTwoSpeakersInOneRow)
{
    const Subtitles read = ReadScc(SccLine("00:00:01:00", Joined({{g_load, Row14(0)},
                                                                  Text("- Who?"),
                                                                  {Row14(16)},
                                                                  Text("- The butler,"),
                                                                  {Row15(16)},
                                                                  Text("of course."),
                                                                  {g_flip}})));

    ASSERT_EQ(read.cues.at(0).blocks.size(), 2u);
    const Block &first = read.cues[0].blocks[0];
    const Block &second = read.cues[0].blocks[1];
    EXPECT_EQ(first.lines, (Lines{{{"- Who?", Boxed()}}}));
    EXPECT_NEAR(first.anchor.value().x, 0.1, 1e-9);
    EXPECT_EQ(second.lines, (Lines{{{"- The butler,", Boxed()}}, {{"of course.", Boxed()}}}));
    EXPECT_NEAR(second.anchor.value().x, 0.1 + 16 * 0.025, 1e-9);
    EXPECT_TRUE(first.pinned && second.pinned) << "neither makes room for the other";
}

TEST(Scc, ReplacesTheStandInsOfExtendedCharacters)
{
    const Subtitles read = ReadScc(SccLine(
        "00:00:01:00",
        Joined(
            {{g_load, Row15(0)}, Text("A"), {media::CaptionCode(0x12, 0x30)}, Text(" la carte"), {g_flip}})));

    EXPECT_EQ(PlainText(read.cues.at(0)), "\u00C0 la carte");
}

TEST(Scc, RollsUp)
{
    const Subtitles read =
        ReadScc(SccLine("00:00:01:00", Joined({{g_rollUp3, g_return, Row15(0)}, Text("one line")})) +
                SccLine("00:00:03:00", Joined({{g_rollUp3, g_return, Row15(0)}, Text("two lines")})) +
                SccLine("00:00:05:00", Joined({{g_rollUp3, g_return, Row15(0)}, Text("three lines")})) +
                SccLine("00:00:07:00", {g_erase}));

    // A line moves up where the return is sent, with the second frame. The letters that follow belong to it.
    ASSERT_EQ(read.cues.size(), 3u);
    EXPECT_EQ(PlainText(read.cues[0]), "one line");
    EXPECT_EQ(read.cues[0].end, AtSecond(3, 1));
    EXPECT_EQ(PlainText(read.cues[1]), "one line / two lines");
    EXPECT_EQ(PlainText(read.cues[2]), "one line / two lines / three lines");
    EXPECT_EQ(read.cues[2].end, AtSecond(7));
    for (const Cue &cue : read.cues) EXPECT_EQ(cue.blocks.at(0).rollUp, 3);
    EXPECT_EQ(read.cues[1].blocks.at(0).horizontal, Horizontal::LEFT);
    EXPECT_NEAR(read.cues[1].blocks.at(0).anchor.value().y, 0.9, 1e-9);
}

TEST(Scc, PaintsAWholeLineFromItsFirstLetterOnAndWhatComesLaterLater)
{
    const Subtitles read =
        ReadScc(SccLine("00:00:01:00", Joined({{g_direct, Row15(0)}, Text("painted at ")})) +
                SccLine("00:00:04:00", Text("twice")) + SccLine("00:00:06:00", {g_erase}));

    ASSERT_EQ(read.cues.size(), 2u);
    EXPECT_EQ(PlainText(read.cues[0]), "painted at");
    EXPECT_EQ(PlainText(read.cues[1]), "painted at twice");
    EXPECT_EQ(read.cues[1].end, AtSecond(6));
}

TEST(Scc, KnowsSpecialAndForeignCharacters)
{
    const Subtitles read =
        ReadScc(SccLine("00:00:01:00", Joined({{g_load, Row15(0), media::CaptionCode(0x11, 0x37)},
                                               Text(" a\\ "),
                                               {media::CaptionCode(0x11, 0x32), g_flip}})));

    EXPECT_EQ(PlainText(read.cues.at(0)), "\u266A a\u00E9 \u00BD");
}

TEST(Scc, TakesTheFirstChannelWithCaptionsAndNamesTheOthers)
{
    const Codes second = {media::CaptionCode(0x1C, 0x20), media::CaptionCode(0x1C, 0x70)};
    const Codes flipSecond = {media::CaptionCode(0x1C, 0x2F)};
    const std::string two = SccLine("00:00:01:00", Joined({second, Text("deux"), flipSecond}));
    const std::string one = SccLine("00:00:03:00", Joined({{g_load, Row15(0)}, Text("un"), {g_flip}}));

    const Subtitles alone = ReadScc(two);
    const Subtitles both = ReadScc(two + one);

    EXPECT_EQ(PlainText(alone.cues.at(0)), "deux");
    EXPECT_EQ(alone.notices, Said{"captions are read from channel CC2"});
    ASSERT_EQ(both.cues.size(), 1u);
    EXPECT_EQ(PlainText(both.cues[0]), "un");
    EXPECT_EQ(both.notices, Said{"captions of channel CC2 are ignored"});
}

// A packet of ancillary data: its kind, its length, a header, three bytes for each pair, a footer. The sum of
// all bytes between the header's first and the footer's last one is 0.
static std::string MccLine(const std::string &time, std::uint16_t code)
{
    media::Bytes data = {
        0x96, 0x69, 16, 0x4F, 0x43, 0, 0, 0x72, 0xE1, 0xFC, std::uint8_t(code >> 8), std::uint8_t(code),
        0x74, 0,    0};
    std::uint8_t sum = 0;
    for (const std::uint8_t byte : data) sum = std::uint8_t(sum + byte);
    data.push_back(std::uint8_t(-sum));
    data.insert(data.begin(), {0x61, 0x01, 16});
    data.push_back(0x61 + 0x01 + 16);

    std::string line = time + "\t";
    for (const std::uint8_t byte : data) {
        char hexadecimal[4];
        std::snprintf(hexadecimal, sizeof hexadecimal, "%02X", unsigned(byte));
        line += hexadecimal;
    }
    return line + "\n";
}

TEST(Mcc, IsRead)
{
    const Folder folder;
    std::string text =
        "File Format=MacCaption_MCC V1.0\n\nUUID=01234567-89AB-CDEF-0123-456789ABCDEF\n"
        "Creation Program=tests\nCreation Date=Friday, November 20, 2026\nCreation Time=12:00:00\n"
        "Time Code Rate=30DF\n\n";
    int frame = 0;
    for (const std::uint16_t code : Joined({{g_load, Row15(0)}, Text("Hello"), {g_flip}})) {
        text += MccLine("00:00:01:0" + std::to_string(frame++), code);
    }
    text += MccLine("00:00:03:00", g_erase);

    const Subtitles read = caption::ReadSubtitles({folder.Write("a.mcc", text)});

    ASSERT_EQ(read.cues.size(), 1u);
    EXPECT_EQ(PlainText(read.cues[0]), "Hello");
    EXPECT_NEAR(double(read.cues[0].start), double(1000 + Frame(5)), 2);
    EXPECT_NEAR(double(read.cues[0].end), 3000, 4);
}

// Captions come up at frame 15 and go at frame 60 of 80.
static Codes Captions()
{
    Codes codes(9, media::CaptionCode(0, 0));
    codes = Joined({codes, {g_load, Row15(4)}, Text("Hello"), {g_flip}});
    codes.resize(60, media::CaptionCode(0, 0));
    codes.push_back(g_erase);
    codes.resize(80, media::CaptionCode(0, 0));
    return codes;
}

TEST(CaptionsInVideo, AreReadFromEveryContainer)
{
    const Folder folder;
    media::Stream mpeg2;
    media::Stream h264;
    const std::vector<media::Packet> first =
        media::CaptionedVideo(AV_CODEC_ID_MPEG2VIDEO, Captions(), false, mpeg2);
    const std::vector<media::Packet> second =
        media::CaptionedVideo(AV_CODEC_ID_H264, Captions(), false, h264);
    media::Write(folder / "mpeg2.ts", "mpegts", {mpeg2}, first);
    media::Write(folder / "mpeg2.mkv", "matroska", {mpeg2}, first);
    media::Write(folder / "h264.mp4", "mp4", {h264}, second);
    media::Write(folder / "h264.mkv", "matroska", {h264}, second);

    for (const std::string name : {"mpeg2.ts", "mpeg2.mkv", "h264.mp4", "h264.mkv"}) {
        SCOPED_TRACE(name);
        const Subtitles read = caption::ReadSubtitles({folder / name});
        ASSERT_EQ(read.cues.size(), 1u);
        EXPECT_EQ(PlainText(read.cues[0]), "Hello");
        EXPECT_NEAR(double(read.cues[0].start), double(Frame(14)), 2);
        EXPECT_NEAR(double(read.cues[0].end), double(Frame(60)), 2);
        EXPECT_NEAR(read.cues[0].blocks.at(0).anchor.value().x, 0.2, 1e-9);
        const std::vector<caption::StreamInfo> streams = caption::ListStreams({folder / name});
        ASSERT_EQ(streams.size(), 1u);
        EXPECT_EQ(streams[0].kind, StreamKind::EMBEDDED_CAPTIONS);
        EXPECT_EQ(streams[0].language, "") << "nobody said";
    }
}

TEST(CaptionsInVideo, AreReadFromTheSecondField)
{
    const Folder folder;
    media::Stream stream;
    // The second field has codes of its own for what is miscellaneous.
    Codes codes = Captions();
    for (std::uint16_t &code : codes) {
        if (code == g_load) code = media::CaptionCode(0x15, 0x20);
        if (code == g_flip) code = media::CaptionCode(0x15, 0x2F);
        if (code == g_erase) code = media::CaptionCode(0x15, 0x2C);
    }
    const std::vector<media::Packet> packets =
        media::CaptionedVideo(AV_CODEC_ID_MPEG2VIDEO, codes, true, stream);
    media::Write(folder / "a.ts", "mpegts", {stream}, packets);

    const Subtitles read = caption::ReadSubtitles({folder / "a.ts"});

    EXPECT_EQ(PlainText(read.cues.at(0)), "Hello");
    EXPECT_EQ(read.notices, Said{"captions are read from channel CC3"});
}

TEST(CaptionsInVideo, GiveWayToAStreamOfSubtitlesUnlessTheyAreAskedFor)
{
    const Folder folder;
    media::Stream video;
    std::vector<media::Packet> packets = media::CaptionedVideo(AV_CODEC_ID_H264, Captions(), false, video);
    packets.insert(packets.begin(), {1, 0, 1000, {'t', 'e', 'x', 't'}});
    media::Write(folder / "a.mkv", "matroska", {video, {AV_CODEC_ID_SUBRIP}}, packets);

    EXPECT_EQ(PlainText(caption::ReadSubtitles({folder / "a.mkv"}).cues.at(0)), "text");
    EXPECT_EQ(PlainText(caption::ReadSubtitles({folder / "a.mkv", 0}).cues.at(0)), "Hello");
    EXPECT_EQ(caption::ListStreams({folder / "a.mkv"}).size(), 2u);
}

TEST(CaptionsInVideo, AreMissedWhereThereAreNone)
{
    const Folder folder;
    media::Stream stream;
    const std::vector<media::Packet> packets =
        media::CaptionedVideo(AV_CODEC_ID_H264, Codes(20, media::CaptionCode(0, 0)), false, stream);
    media::Write(folder / "a.mkv", "matroska", {stream}, packets);

    try {
        caption::ReadSubtitles({folder / "a.mkv"});
        FAIL() << "captions were found";
    } catch (const caption::Failure &failure) {
        EXPECT_NE(std::string(failure.what()).find("no captions in the video"), std::string::npos)
            << failure.what();
    }
}

// libavformat puts the pairs of a field into a box of their own.
TEST(Mp4, HoldsClosedCaptions)
{
    const Folder folder;
    const auto sample = [](const Codes &codes) {
        media::Bytes bytes;
        for (const std::uint16_t code : codes) {
            bytes.push_back(0xFC);
            bytes.push_back(std::uint8_t(code >> 8));
            bytes.push_back(std::uint8_t(code));
        }
        return bytes;
    };
    media::Write(folder / "a.mov", "mov", {{AV_CODEC_ID_EIA_608}},
                 {{0, 0, 2000, sample(Joined({{g_load, Row15(0)}, Text("Hello"), {g_flip}}))},
                  {0, 2000, 1000, sample({g_erase})}});

    const Subtitles read = caption::ReadSubtitles({folder / "a.mov"});

    ASSERT_EQ(read.cues.size(), 1u);
    EXPECT_EQ(Summary(read.cues[0]), std::to_string(Frame(5)) + "-2000 Hello");
}

// Spacing attributes of teletext.
static const std::string g_box = "\x0B\x0B";
static const std::string g_endBox = "\x0A\x0A";

static std::string WriteTeletext(const Folder &folder, const media::Bytes &announced,
                                 const std::vector<media::Packet> &packets)
{
    media::Stream stream = {AV_CODEC_ID_DVB_TELETEXT, announced};
    stream.language = "deu,fra"; // one for each page that is announced
    media::Write(folder / "a.ts", "mpegts", {stream}, packets);
    return folder / "a.ts";
}

// Page 888 as subtitles: their kind and the magazine, where 0 stands for 8, and the rest of the number.
static const media::Bytes g_page888 = {2 << 3 | 0, 0x88};

TEST(Teletext, StandsInItsRowsAndColumns)
{
    const Folder folder;
    const std::string file =
        WriteTeletext(folder, g_page888,
                      {{0, 10000, 0,
                        media::TeletextPage(888, {{20, "       " + g_box + "Hello" + g_endBox},
                                                  {22, "  \x03" + g_box + "there" + g_endBox}})},
                       {0, 12000, 0, media::TeletextPage(888, {})},
                       {0, 13000, 0, media::TeletextPage(888, {{2, "  \x0D" + g_box + "double" + g_endBox}})},
                       {0, 14000, 0, media::TeletextPage(888, {{2, "  \x0D" + g_box + "double" + g_endBox}})},
                       {0, 16000, 0, media::TeletextPage(888, {})}});

    const Subtitles read = caption::ReadSubtitles({file});

    ASSERT_EQ(Summaries(read), (Said{"0-2000 Hello / there", "3000-6000 double"}))
        << "a page sent twice is one";
    ASSERT_EQ(read.cues[0].blocks.size(), 2u) << "row 21 is between them";
    const Block &second = read.cues[0].blocks[0]; // nearer to the edge
    const Block &first = read.cues[0].blocks[1];
    EXPECT_EQ(first.lines, (Lines{{{"Hello", Boxed()}}}));
    EXPECT_EQ(second.lines, (Lines{{{"there", Boxed(g_yellow)}}}));
    // 40 of a line's 52 microseconds and 25 rows of ten of a field's 288 lines lie in the middle.
    EXPECT_NEAR(first.anchor.value().x, (6 + 9) / 52.0, 1e-9);
    EXPECT_NEAR(first.anchor.value().y, (19 + 10 * 21) / 288.0, 1e-9);
    EXPECT_NEAR(second.anchor.value().x, (6 + 5) / 52.0, 1e-9);
    EXPECT_NEAR(second.anchor.value().y, (19 + 10 * 23) / 288.0, 1e-9);
    const Block &top = read.cues[1].blocks.at(0);
    EXPECT_EQ(top.vertical, Vertical::TOP);
    EXPECT_NEAR(top.anchor.value().y, (19 + 10 * 2) / 288.0, 1e-9);
    EXPECT_EQ(caption::ListStreams({file}).at(0).language, "deu,fra");
}

TEST(Teletext, MakesABlockOfLinesOfDoubleHeight)
{
    const Folder folder;
    const std::string file =
        WriteTeletext(folder, g_page888,
                      {{0, 1000, 0,
                        media::TeletextPage(888, {{20, "         \x0D" + g_box + "fourteen chars" + g_endBox},
                                                  {22, "             \x0D" + g_box + "sixsix" + g_endBox}})},
                       {0, 3000, 0, media::TeletextPage(888, {})},
                       {0, 4000, 0, media::TeletextPage(888, {})},
                       {0, 5000, 0, media::TeletextPage(888, {})}});

    const Subtitles read = caption::ReadSubtitles({file});

    ASSERT_EQ(Summaries(read), Said{"0-2000 fourteen chars / sixsix"});
    ASSERT_EQ(read.cues[0].blocks.size(), 1u);
    EXPECT_EQ(read.cues[0].blocks[0].horizontal, Horizontal::CENTER);
    EXPECT_NEAR(read.cues[0].blocks[0].anchor.value().y, (19 + 10 * 24) / 288.0, 1e-9);
}

TEST(Teletext, TakesTheFirstPageThatIsAnnounced)
{
    const Folder folder;
    const auto page = [](int number, const std::string &text) {
        return media::TeletextPage(number, {{20, g_box + text + g_endBox}});
    };
    const std::string file = WriteTeletext(folder, {5 << 3 | 2, 0x50, 2 << 3 | 1, 0x50},
                                           {{0, 1000, 0, page(100, "no subtitles")},
                                            {0, 2000, 0, page(150, "second")},
                                            {0, 3000, 0, page(250, "first")},
                                            {0, 4000, 0, media::TeletextPage(250, {})},
                                            {0, 5000, 0, media::TeletextPage(150, {})}});

    const Subtitles read = caption::ReadSubtitles({file});

    EXPECT_EQ(Summaries(read), Said{"2000-3000 first"});
    EXPECT_EQ(read.notices, Said{"teletext page 250 is drawn; other subtitle pages are ignored"});
}

TEST(Teletext, SaysWhatItsPagesHoldThatIsNotDrawn)
{
    const Folder folder;
    const std::string file = WriteTeletext(folder, g_page888,
                                           {{0, 1000, 0,
                                             media::TeletextPage(888, {{20, g_box +
                                                                                "\x08"
                                                                                "flash\x12\x7F\x7F\x07 text" +
                                                                                g_endBox}})},
                                            {0, 3000, 0, media::TeletextPage(888, {})},
                                            {0, 4000, 0, media::TeletextPage(888, {})}});

    const Subtitles read = caption::ReadSubtitles({file});

    EXPECT_EQ(read.cues.size(), 1u);
    EXPECT_EQ(read.notices, (Said{"flashing text is not supported", "block graphics are not supported"}));
}
