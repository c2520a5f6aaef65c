// SPDX-License-Identifier: MIT
// Files that are damaged, or no subtitles at all: a message or what can be read of them, nothing worse.
#include <algorithm>
#include <fstream>
#include <random>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "base/failure.h"
#include "reading/media.h"
#include "reading/subtitles.h"
#include "support/tool.h"

using caption::Cue;
using caption::Subtitles;
using media::operator+; // NOLINT(misc-unused-using-decls): it is used, as an operator
using Said = std::vector<std::string>;

// What is read of a file, and whether it keeps to what the model promises; a message where nothing is.
static std::string Read(const std::string &file, Subtitles *result = nullptr)
{
    Subtitles read;
    try {
        caption::ListStreams({file});
        read = caption::ReadSubtitles({file});
    } catch (const caption::Failure &failure) {
        EXPECT_EQ(std::string(failure.what()).find('\n'), std::string::npos);
        return failure.what();
    }
    EXPECT_FALSE(read.cues.empty());
    for (std::size_t i = 0; i < read.cues.size(); ++i) {
        const Cue &cue = read.cues[i];
        EXPECT_LE(cue.start, cue.end);
        EXPECT_FALSE(cue.blocks.empty() && cue.bitmaps.empty());
        EXPECT_LE(read.cues[i > 0 ? i - 1 : 0].start, cue.start);
        for (const caption::Block &block : cue.blocks) EXPECT_FALSE(block.lines.empty());
        for (const caption::Bitmap &bitmap : cue.bitmaps) {
            EXPECT_EQ(bitmap.indexes.size(),
                      std::size_t(bitmap.size.width) * std::size_t(bitmap.size.height));
            EXPECT_TRUE(std::all_of(bitmap.indexes.begin(), bitmap.indexes.end(),
                                    [&](std::size_t index) { return index < bitmap.palette.size(); }));
        }
    }
    caption::Screens(read.cues);
    if (result) *result = read;
    return "";
}

static Said Texts(const Subtitles &subtitles)
{
    Said texts;
    for (const Cue &cue : subtitles.cues) {
        texts.push_back(std::to_string(cue.start) + "-" + std::to_string(cue.end) + " " + PlainText(cue));
    }
    return texts;
}

TEST(Malformed, AFolderAPipeAndAnEmptyFileAreRefusedAtOnce)
{
    const Folder folder;
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);

    EXPECT_NE(Read(folder / "").find("is a directory"), std::string::npos);
    EXPECT_NE(Read(folder / "pipe").find("is a pipe or a device"), std::string::npos);
    EXPECT_NE(Read("/dev/zero").find("is a pipe or a device"), std::string::npos);
    EXPECT_NE(Read(folder / "none").find("cannot be read (No such file or directory)"), std::string::npos);
    EXPECT_NE(Read(folder.Write("empty.srt", "")).find("is empty"), std::string::npos);
}

TEST(Malformed, NamesThatLookLikeAddressesAreFiles)
{
    const Folder folder;
    std::filesystem::create_directories(folder / "http:");
    const std::string file = folder.Write("http:/a.srt", "1\n00:00:01,000 --> 00:00:02,000\na\n");

    EXPECT_EQ(Read(file), "");
    EXPECT_NE(Read("http://127.0.0.1:9/a.srt").find("cannot be read"), std::string::npos);
}

TEST(Malformed, PlaylistsOpenNoFurtherFiles)
{
    const Folder folder;
    folder.Write("a.srt", "1\n00:00:01,000 --> 00:00:02,000\na\n");

    EXPECT_NE(Read(folder.Write("a.m3u8", "#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXTINF:9,\na.srt\n")), "");
    EXPECT_NE(Read(folder.Write("a.ffconcat", "ffconcat version 1.0\nfile a.srt\n")), "");
}

TEST(Malformed, NoiseIsNoSubtitleFile)
{
    const Folder folder;
    std::mt19937 random(1);
    for (const char *const name :
         {"a.srt", "a.vtt", "a.ass", "a.sub", "a.idx", "a.sup", "a.scc", "a.ts", "a.mp4", "a.mkv", "noise"}) {
        std::string noise(20000, '\0');
        for (char &byte : noise) byte = char(random());
        EXPECT_NE(Read(folder.Write(name, noise)), "") << name;
    }
}

// A cue as each format has it, and what is read of it.
static const struct {
    const char *name;
    const char *text;
    const char *first;
} g_cuesOfFormats[] = {
    {"a.vtt", "WEBVTT\n\n00:01.000 --> 00:02.000\nread me\n\n", "read me"},
    {"a.srt", "1\n00:00:01,000 --> 00:00:02,000\nread me\n\n", "read me"},
    {"a.sub", "{0}{0}25\n{25}{50}read me\n{50}{75}two\n{75}{99}three\n", "read me"},
    {"a.smi", "<SAMI><BODY>\n<SYNC Start=1000><P>read me\n<SYNC Start=2000><P>&nbsp;\n", "read me"},
    {"a.scc", "Scenarist_SCC V1.0\n\n00:00:01:00\t9420 9420 9470 9470 f2e5 6164 942f 942f\n\n", "read"},
    {"a.ass",
     "[Script Info]\n[Events]\nFormat: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, "
     "Text\n"
     "Dialogue: 0,0:00:01.00,0:00:02.00,Default,,0,0,0,,read me\n",
     "read me"}};

TEST(Malformed, ACueBeforeNoiseIsRead)
{
    const Folder folder;
    std::mt19937 random(2);
    for (const auto &format : g_cuesOfFormats) {
        std::string text = format.text;
        for (int i = 0; i < 4000; ++i) text += char(random() % 20 == 0 ? '\n' : 32 + random() % 95);
        Subtitles read;

        EXPECT_EQ(Read(folder.Write(format.name, text), &read), "") << format.name;
        ASSERT_FALSE(read.cues.empty()) << format.name;
        EXPECT_EQ(PlainText(read.cues[0]).rfind(format.first, 0), 0u)
            << format.name << ": " << PlainText(read.cues[0]);
    }
}

TEST(Malformed, TheSignatureOfAFormatWithoutACueIsRefused)
{
    const Folder folder;
    for (const std::string text :
         {"WEBVTT\n\n", "Scenarist_SCC V1.0\n\n", "[Script Info]\n", "# VobSub index file, v7\n", "<SAMI>\n",
          "File Format=MacCaption_MCC V1.0\n"}) {
        EXPECT_NE(Read(folder.Write("a.txt", text)), "") << text;
    }
}

TEST(Malformed, CuesWithoutSenseInTheirTimesAreReadAllTheSame)
{
    const Folder folder;
    Subtitles read;

    EXPECT_EQ(Read(folder.Write("a.srt", "1\n99999999:00:01,000 --> 99999999:00:02,000\nhuge\n\n"
                                         "2\n00:00:09,000 --> 00:00:03,000\nback\n\n"
                                         "3\n00:00:10,000 --> 00:00:11,000\n\n\n"
                                         "4\n00:00:12,000 --> 00:00:13,000\nlast\n"),
                   &read),
              "");
    EXPECT_EQ(Texts(read),
              (Said{"9000-12000 back", "12000-13000 last", "359999996401000-359999996402000 huge"}))
        << "one that ends before it begins lasts until the next";
    EXPECT_EQ(Read(folder.Write("b.srt",
                                "1\n999999999999999999:00:01,000 --> 9999999999999999999999:00:02,000\na\n")),
              "");
}

TEST(Malformed, LongLinesAreKeptWhole)
{
    const Folder folder;
    const std::string letters(10000, 'a');
    const auto count = [](const Subtitles &subtitles) {
        const std::string text = PlainText(subtitles.cues.at(0));
        return std::size_t(std::count(text.begin(), text.end(), 'a'));
    };
    Subtitles read;

    EXPECT_EQ(Read(folder.Write("a.srt", "1\n00:00:01,000 --> 00:00:02,000\n" + letters + "\n"), &read), "");
    EXPECT_EQ(count(read), letters.size());
    EXPECT_EQ(Read(folder.Write("a.vtt", "WEBVTT\n\n00:01.000 --> 00:02.000\n" + letters + "\n"), &read), "");
    EXPECT_EQ(count(read), letters.size());
}

TEST(Malformed, OddTagsAndStylesDoNoHarm)
{
    const Folder folder;
    const std::string ass =
        "[Script Info]\nPlayResX: -5\nPlayResY: 99999999999999999999\n[V4+ Styles]\nFormat: Name, "
        "PrimaryColour\n"
        "Format:\nStyle: Odd\nStyle:\nStyle: ,,,,\n[Events]\nFormat: Layer, Start, End, Style, Name, "
        "MarginL, "
        "MarginR, MarginV, Effect, Text\n"
        "Dialogue: 99999999999,0:00:05.00,999999999:00:03.00,Nope,,99999999999999,nan,inf,,"
        "{\\pos(1e999,-1e999)\\an99\\c&HZZ&\\b\\fs(((\\t(\\clip(}odd{\\pos()\\move(\\\\}\n";
    Subtitles read;

    EXPECT_EQ(Read(folder.Write("a.ass", ass), &read), "");
    EXPECT_EQ(PlainText(read.cues.at(0)), "odd");
    EXPECT_EQ(
        Read(folder.Write("a.vtt", "WEBVTT\n\n00:01.000 --> 00:02.000 line:-1e400 position:nan% size:1e9%\n"
                                   "<<<i.<>&#99999999999999;&#-1;</b></i>odd<\n")),
        "");
}

// Reads a file, then cut at many places, then with bytes changed. What is left of it is not refused as a
// whole.
static void Damage(const Folder &folder, const std::string &file)
{
    std::ifstream in(file, std::ios::binary);
    const std::string whole((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const std::string name = "damaged" + std::filesystem::path(file).extension().string();
    std::mt19937 random(3);
    int read = 0;

    ASSERT_EQ(Read(file), "") << "undamaged";
    for (std::size_t i = 0; i < 12; ++i) {
        read += Read(folder.Write(name, whole.substr(0, whole.size() * i / 12))).empty();
    }
    for (int i = 0; i < 12; ++i) {
        std::string changed = whole;
        for (int n = 0; n < 8; ++n) changed[random() % changed.size()] = char(random());
        read += Read(folder.Write(name, changed)).empty();
    }
    EXPECT_GT(read, 0) << file << ": of 24 damaged files";
}

TEST(Malformed, DamagedPicturesDoNoHarm)
{
    const Folder folder;
    caption::Bitmap bitmap;
    bitmap.size = {16, 8};
    bitmap.palette = {{0, 0, 0, 0}, {255, 255, 255, 255}};
    bitmap.indexes.assign(16 * 8, 1);
    std::vector<media::Packet> packets;
    for (int i = 0; i < 6; ++i)
        packets.push_back({0, i * 1000.0, 0, media::PgsDisplaySet(bitmap, {1920, 1080})});
    const media::Bytes sup = media::PgsFile(packets);
    media::Write(folder / "pgs.mkv", "matroska", {{AV_CODEC_ID_HDMV_PGS_SUBTITLE}}, packets);
    const std::vector<media::Bytes> dvb = media::EncodeBitmaps(
        AV_CODEC_ID_DVB_SUBTITLE, std::vector<caption::Bitmap>(6, bitmap), {720, 576}, 0);
    for (std::size_t i = 0; i < 6; ++i) packets[i].bytes = dvb[i];
    media::Write(folder / "dvb.ts", "mpegts", {{AV_CODEC_ID_DVB_SUBTITLE, {}, {720, 576}}}, packets);
    const std::vector<media::Bytes> dvd = media::EncodeBitmaps(
        AV_CODEC_ID_DVD_SUBTITLE, std::vector<caption::Bitmap>(6, bitmap), {720, 576}, 500);
    for (std::size_t i = 0; i < 6; ++i) packets[i].bytes = dvd[i];
    media::Write(folder / "dvd.mkv", "matroska", {{AV_CODEC_ID_DVD_SUBTITLE, {}, {720, 576}}}, packets);

    Damage(folder, folder.Write("pgs.sup", std::string(sup.begin(), sup.end())));
    for (const std::string name : {"pgs.mkv", "dvb.ts", "dvd.mkv"}) Damage(folder, folder / name);
}

TEST(Malformed, DamagedTextAndCaptionsDoNoHarm)
{
    const Folder folder;
    std::vector<media::Packet> packets;
    for (int i = 0; i < 6; ++i) {
        packets.push_back({0, i * 1000.0, 500, media::TeletextPage(888, {{20, "\x0B\x0Btext\x0A\x0A"}})});
    }
    media::Write(folder / "teletext.ts", "mpegts", {{AV_CODEC_ID_DVB_TELETEXT, {2 << 3, 0x88}}}, packets);
    for (media::Packet &packet : packets) packet.bytes = media::Text("<i>text</i>");
    media::Write(folder / "text.mkv", "matroska", {{AV_CODEC_ID_SUBRIP}}, packets);
    for (media::Packet &packet : packets) packet.bytes = media::Bytes{0, 4} + media::Text("text");
    media::Write(folder / "text.mp4", "mp4", {{AV_CODEC_ID_MOV_TEXT}}, packets);
    media::Stream video;
    std::vector<std::uint16_t> codes = {media::CaptionCode(0x14, 0x25),
                                        media::CaptionCode(0x14, 0x70)}; // roll-up
    for (const std::uint16_t pair : media::CaptionText("text in frames")) codes.push_back(pair);
    codes.resize(40, media::CaptionCode(0, 0));
    const std::vector<media::Packet> frames =
        media::CaptionedVideo(AV_CODEC_ID_MPEG2VIDEO, codes, false, video);
    media::Write(folder / "video.ts", "mpegts", {video}, frames);

    for (const std::string name : {"teletext.ts", "text.mkv", "text.mp4", "video.ts"})
        Damage(folder, folder / name);
}
