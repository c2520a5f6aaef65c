// SPDX-License-Identifier: MIT
// Subtitles in containers, and subtitles that are pictures.
#include <fstream>

#include <gtest/gtest.h>

#include "base/failure.h"
#include "reading/media.h"
#include "reading/summary.h"
#include "support/tool.h"

using caption::Anchor;
using caption::Bitmap;
using caption::Color;
using caption::Cue;
using caption::Line;
using caption::Size;
using caption::StreamKind;
using caption::Style;
using caption::Subtitles;
using caption::Vertical;
using media::Bytes;
using media::operator+; // NOLINT(misc-unused-using-decls): it is used, as an operator
using media::Text;
using Lines = std::vector<Line>;
using Said = std::vector<std::string>;

static void WriteBytes(const std::string &file, const Bytes &bytes)
{
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char *>(bytes.data()), std::streamsize(bytes.size()));
}

static Style Colored(Color color)
{
    Style style;
    style.color = color;
    return style;
}

static const Color g_clear = {0, 0, 0, 0};
static const Color g_white = {255, 255, 255, 255};
static const Color g_red = {255, 0, 0, 255};

// Eight rows of two each in every colour of the palette.
static Bitmap Striped()
{
    Bitmap bitmap;
    bitmap.x = 100;
    bitmap.y = 400;
    bitmap.size = {16, 8};
    bitmap.palette = {g_clear, g_white, g_red, {0, 0, 0, 136}};
    for (int row = 0; row < 8; ++row) bitmap.indexes.insert(bitmap.indexes.end(), 16, std::uint8_t(row / 2));
    return bitmap;
}

// What a picture shows at a place of the canvas.
static Color At(const Cue &cue, int x, int y)
{
    for (const Bitmap &bitmap : cue.bitmaps) {
        const int column = x - bitmap.x;
        const int row = y - bitmap.y;
        if (column < 0 || row < 0 || column >= bitmap.size.width || row >= bitmap.size.height) continue;
        return bitmap.palette.at(
            bitmap.indexes.at(std::size_t(row) * std::size_t(bitmap.size.width) + std::size_t(column)));
    }
    return g_clear;
}

// Formats keep their colours as luma and chroma, with fewer levels.
static void ExpectNear(const Color &color, const Color &expected, const char *where)
{
    EXPECT_NEAR(color.alpha, expected.alpha, 1) << where;
    if (expected.alpha == 0) return;
    EXPECT_NEAR(color.red, expected.red, 2) << where;
    EXPECT_NEAR(color.green, expected.green, 2) << where;
    EXPECT_NEAR(color.blue, expected.blue, 2) << where;
}

static void ExpectStriped(const Cue &cue, Size canvas)
{
    EXPECT_EQ(cue.canvas, canvas);
    ASSERT_GE(cue.bitmaps.size(), 1u);
    for (const Bitmap &bitmap : cue.bitmaps) {
        EXPECT_EQ(bitmap.indexes.size(), std::size_t(bitmap.size.width * bitmap.size.height));
        EXPECT_LE(bitmap.palette.size(), 256u);
    }
    for (const int x : {100, 115}) {
        ExpectNear(At(cue, x, 399), g_clear, "above");
        ExpectNear(At(cue, x, 401), g_clear, "the first stripe");
        ExpectNear(At(cue, x, 402), g_white, "the second stripe");
        ExpectNear(At(cue, x, 403), g_white, "the second stripe");
        ExpectNear(At(cue, x, 404), g_red, "the third stripe");
        ExpectNear(At(cue, x, 407), {0, 0, 0, 136}, "the fourth stripe");
        ExpectNear(At(cue, x, 408), g_clear, "below");
    }
    ExpectNear(At(cue, 99, 404), g_clear, "on the left");
    ExpectNear(At(cue, 116, 404), g_clear, "on the right");
}

static const char g_ass[] = "[Script Info]\nPlayResX: 640\nPlayResY: 480\n[V4+ Styles]\n"
                            "Format: Name, PrimaryColour, Outline, OutlineColour, Alignment, MarginV\n"
                            "Style: Default,&H0000FFFF,2,&H00800000,8,48\n";

static std::string WriteThreeLanguages(const Folder &folder)
{
    std::string file = folder / "three.mkv";
    media::Write(file, "matroska",
                 {{AV_CODEC_ID_SUBRIP, {}, {}, "eng", "English"},
                  {AV_CODEC_ID_WEBVTT, {}, {}, "fra", "French"},
                  {AV_CODEC_ID_ASS, Text(g_ass), {}, "deu", "German"}},
                 {{0, 1000, 1500, Text("<i>one</i>")},
                  {1, 1000, 1000, Text("<c.red>un</c>"), "line:10%"},
                  {2, 2000, 500, Text("0,0,Default,,0,0,0,,eins, zwei")}});
    return file;
}

TEST(Matroska, HoldsSeveralStreamsOfText)
{
    const Folder folder;
    const std::string file = WriteThreeLanguages(folder);

    const Subtitles first = caption::ReadSubtitles({file});
    const Subtitles second = caption::ReadSubtitles({file, 1});
    const Subtitles third = caption::ReadSubtitles({file, 2});

    ASSERT_EQ(Summaries(first), Said{"1000-2500 one"});
    EXPECT_EQ(first.cues[0].blocks[0].lines, (Lines{{{"one", {true}}}}));
    ASSERT_EQ(Summaries(second), Said{"1000-2000 un"});
    EXPECT_EQ(second.cues[0].blocks[0].lines, (Lines{{{"un", Colored(g_red)}}}));
    EXPECT_EQ(second.cues[0].blocks[0].anchor, (Anchor{0.5, 0.1}));
    ASSERT_EQ(Summaries(third), Said{"2000-2500 eins, zwei"});
    EXPECT_EQ(third.cues[0].blocks[0].lines[0][0].style.color, (Color{255, 255, 0, 255}));
    EXPECT_EQ(third.cues[0].blocks[0].vertical, Vertical::TOP);
    EXPECT_EQ(third.cues[0].blocks[0].anchor, (Anchor{0.5, 0.1}));
    EXPECT_THROW(caption::ReadSubtitles({file, 3}), caption::Failure);
    EXPECT_THROW(caption::ReadSubtitles({file, -1}), caption::Failure);
}

TEST(Matroska, TellsItsStreams)
{
    const Folder folder;
    const std::vector<caption::StreamInfo> streams = caption::ListStreams({WriteThreeLanguages(folder)});

    ASSERT_EQ(streams.size(), 3u);
    EXPECT_EQ(streams[0].kind, StreamKind::TEXT);
    EXPECT_EQ(streams[0].codec, "subrip");
    EXPECT_EQ(streams[1].index, 1);
    EXPECT_EQ(streams[1].codec, "webvtt");
    EXPECT_EQ(streams[1].language, "fra");
    EXPECT_EQ(streams[2].title, "German");
}

TEST(Matroska, HoldsTextInAnotherCharset)
{
    const Folder folder;
    const std::string file = folder / "latin.mkv";
    media::Write(file, "matroska", {{AV_CODEC_ID_SUBRIP}}, {{0, 1000, 1000, Text("caf\xE9")}});

    const Subtitles named = caption::ReadSubtitles({file, {}, "ISO-8859-1"});
    const Subtitles unnamed = caption::ReadSubtitles({file});

    EXPECT_EQ(Summaries(named), Said{"1000-2000 caf\u00E9"});
    EXPECT_EQ(named.notices, Said{});
    EXPECT_EQ(Summaries(unnamed), Said{"1000-2000 caf\uFFFD"});
    ASSERT_EQ(unnamed.notices.size(), 1u);
    EXPECT_EQ(unnamed.notices[0].rfind("the cue at 00:00:01.000: 1 place of invalid UTF-8", 0), 0u)
        << unnamed.notices[0];
}

// A sample entry: flags, bottom centre, a background, a box, a style of its own; then the names of fonts.
static Bytes TextEntry(std::uint8_t down, const Bytes &background)
{
    return Bytes{0, 0, 0, 0, 1, down} + background + Bytes{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 18} +
           Bytes{255, 255, 0, 255} + Bytes{0, 0, 0, 18} + Text("ftab") + Bytes{0, 1, 0, 1, 5} + Text("Serif");
}

TEST(Mp4, HoldsTimedText)
{
    const Folder folder;
    const std::string file = folder / "text.mp4";
    const Bytes style =
        Bytes{0, 0, 0, 22} + Text("styl") + Bytes{0, 1, 0, 4, 0, 7, 0, 1, 2, 18, 255, 0, 0, 255};
    media::Write(file, "mp4", {{AV_CODEC_ID_MOV_TEXT, TextEntry(0xFF, {0, 0, 0, 0}), {}, "eng"}},
                 {{0, 1000, 1500, Bytes{0, 7} + Text("One two") + style},
                  {0, 2500, 500, {0, 0}},
                  {0, 3000, 1000,
                   Bytes{0, 9} + Text("end\n\xF0\x9F\x98\x80"
                                      "!")}});

    const Subtitles read = caption::ReadSubtitles({file});

    Style plain = Colored({255, 255, 0, 255});
    Style red = Colored(g_red);
    red.italic = true;
    ASSERT_EQ(Summaries(read), (Said{"1000-2500 One two", "3000-4000 end / \U0001F600!"}));
    EXPECT_EQ(read.cues[0].blocks[0].lines, (Lines{{{"One ", plain}, {"two", red}}}));
    EXPECT_EQ(read.cues[0].blocks[0].vertical, Vertical::BOTTOM);
    EXPECT_FALSE(read.cues[0].blocks[0].anchor);
}

TEST(Mp4, HoldsTimedTextInABoxAtTheTop)
{
    const Folder folder;
    const std::string file = folder / "text.mp4";
    media::Write(file, "mp4", {{AV_CODEC_ID_MOV_TEXT, TextEntry(0, {0, 0, 255, 255})}},
                 {{0, 0, 1000, Bytes{0, 1} + Text("a")}});

    const Subtitles read = caption::ReadSubtitles({file});

    ASSERT_EQ(Summaries(read), Said{"0-1000 a"});
    EXPECT_EQ(read.cues[0].blocks[0].vertical, Vertical::TOP);
    EXPECT_EQ(read.cues[0].blocks[0].lines[0][0].style.background, (Color{0, 0, 255, 255}));
}

TEST(Pgs, IsReadFromAFileOfItsOwnAndFromMatroska)
{
    const Folder folder;
    Bitmap other = Striped();
    other.x = 0;
    const std::vector<media::Packet> sets = {{0, 1000, 0, media::PgsDisplaySet(Striped(), {1920, 1080})},
                                             {0, 3000, 0, media::PgsDisplaySet({}, {1920, 1080})},
                                             {0, 4000, 0, media::PgsDisplaySet(Striped(), {1920, 1080})},
                                             {0, 5000, 0, media::PgsDisplaySet(other, {1920, 1080})}};
    WriteBytes(folder / "a.sup", media::PgsFile(sets));
    media::Write(folder / "a.mkv", "matroska", {{AV_CODEC_ID_HDMV_PGS_SUBTITLE}}, sets);

    for (const std::string name : {"a.sup", "a.mkv"}) {
        SCOPED_TRACE(name);
        const Subtitles read = caption::ReadSubtitles({folder / name});
        ASSERT_EQ(Summaries(read), (Said{"1000-3000 ", "4000-5000 ", "5000-9000 "}));
        ExpectStriped(read.cues[0], {1920, 1080});
        EXPECT_EQ(read.cues[2].bitmaps.at(0).x, 0);
        EXPECT_EQ(caption::ListStreams({folder / name}).at(0).kind, StreamKind::BITMAP);
    }
}

TEST(Dvb, IsReadFromABroadcastWhoseClockStartsAnywhere)
{
    const Folder folder;
    const std::vector<Bytes> coded = media::EncodeBitmaps(
        AV_CODEC_ID_DVB_SUBTITLE, {Striped(), {}, Striped(), Striped(), {}}, {720, 576}, 0);
    std::vector<media::Packet> packets;
    const double times[] = {50000, 52000, 53000, 54000, 55500};
    for (std::size_t i = 0; i < coded.size(); ++i) packets.push_back({0, times[i], 0, coded[i]});
    packets.push_back({0, 60000, 0, coded[0]});
    media::Write(folder / "a.ts", "mpegts", {{AV_CODEC_ID_DVB_SUBTITLE, {}, {720, 576}, "fra"}}, packets);

    const Subtitles read = caption::ReadSubtitles({folder / "a.ts"});

    // A page is shown for thirty seconds at most, which the encoder writes.
    ASSERT_EQ(Summaries(read), (Said{"0-2000 ", "3000-4000 ", "4000-5500 ", "10000-40000 "}));
    ExpectStriped(read.cues[0], {720, 576});
    EXPECT_EQ(caption::ListStreams({folder / "a.ts"}).at(0).language, "fra");
}

// The sixteen colours that libavcodec's encoder chooses from.
static const char g_index[] = "size: 720x576\npalette: 000000, 0000ff, 00ff00, ff0000, ffff00, ff00ff, "
                              "00ffff, ffffff, 808000, 8080ff, 800080, "
                              "80ff80, 008080, ff8080, 555555, aaaaaa\n";

TEST(VobSub, IsReadFromMatroska)
{
    const Folder folder;
    const std::vector<Bytes> coded =
        media::EncodeBitmaps(AV_CODEC_ID_DVD_SUBTITLE, {Striped()}, {720, 576}, 2000);
    media::Write(folder / "a.mkv", "matroska", {{AV_CODEC_ID_DVD_SUBTITLE, Text(g_index), {720, 576}, "eng"}},
                 {{0, 1000, 2000, coded[0]}});

    const Subtitles read = caption::ReadSubtitles({folder / "a.mkv"});

    ASSERT_EQ(read.cues.size(), 1u);
    EXPECT_EQ(read.cues[0].start, 1000);
    EXPECT_NEAR(double(read.cues[0].end), 3000, 12) << "it counts in 1024 parts of 90 kHz";
    ExpectStriped(read.cues[0], {720, 576});
}

// The places of the pictures in the .sub file are where its packs begin.
TEST(VobSub, IsReadFromAnIndexAndTheFileBesideIt)
{
    const Folder folder;
    const std::vector<Bytes> coded =
        media::EncodeBitmaps(AV_CODEC_ID_DVD_SUBTITLE, {Striped(), Striped()}, {720, 576}, 2000);
    media::Write(folder / "a.sub", "vob", {{AV_CODEC_ID_DVD_SUBTITLE, {}, {720, 576}}},
                 {{0, 1000, 2000, coded[0]}, {0, 4000, 2000, coded[1]}});
    std::ifstream in(folder / "a.sub", std::ios::binary);
    const std::string packs((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::string index = std::string("# VobSub index file, v7 (do not modify this line!)\n") + g_index +
                        "langidx: 0\nid: en, index: 0\n";
    int number = 0;
    for (std::size_t at = 0; at < packs.size(); at += 2048) {
        if (packs.find("\x01\xBD", at) > at + 2048) continue;
        char line[80];
        std::snprintf(line, sizeof line, "timestamp: 00:00:%02d:000, filepos: %09zx\n", number++ == 0 ? 1 : 4,
                      at);
        index += line;
    }
    folder.Write("a.idx", index);

    const Subtitles read = caption::ReadSubtitles({folder / "a.idx"});

    ASSERT_EQ(read.cues.size(), 2u);
    EXPECT_EQ(read.cues[0].start, 1000);
    EXPECT_EQ(read.cues[1].start, 4000);
    ExpectStriped(read.cues[0], {720, 576});
    EXPECT_EQ(caption::ListStreams({folder / "a.idx"}).at(0).language, "en");
}
