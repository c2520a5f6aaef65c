// SPDX-License-Identifier: MIT
// CEA-608 and CEA-708 in video and in tracks, as exact lists of cues.
#include <cmath>

#include <gtest/gtest.h>

#include "base/failure.h"
#include "captions/encoder.h"
#include "captions/requirement.h"
#include "reading/media.h"
#include "reading/subtitles.h"
#include "support/tool.h"

using caption::CaptionService;
using caption::ListedCue;
using caption::Listing;
using Said = std::vector<std::string>;

static const std::string g_letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
static const int g_lead = 10; // frames before the first letter

static std::int64_t Frame(int n)
{
    return std::llround(n * 1001.0 / 30);
}

// A letter more in each frame, in service 1 and, painted on, in CC1 (two frames for two letters). Only the
// right order of the frames gives the alphabet.
static std::vector<media::Bytes> Alphabet()
{
    std::vector<media::Bytes> frames(std::size_t(g_lead), ToTriplets(1, NULL_PAIR));
    const Pairs line21 = Once(0x14, 0x29) + Once(0x14, 0x70) + Text(g_letters);
    const Window window = Window(0).Columns(32);
    unsigned sequence = 0;

    for (std::size_t i = 0; i < g_letters.size(); ++i) {
        const ByteString letter = Ascii(g_letters.substr(i, 1));
        const ByteString service = i == 0 ? Define(window) + letter : letter;
        const Pair pair = i < line21.size() ? line21[i] : NULL_PAIR[0];
        frames.push_back(ToTriplets(1, {pair}) + PacketTriplets(Packet(sequence++ % 4, Blocks(1, service))));
    }
    frames.resize(60, ToTriplets(1, NULL_PAIR));
    frames.push_back(ToTriplets(1, Once(0x14, 0x2C)) +
                     PacketTriplets(Packet(sequence % 4, Blocks(1, HideWindows(1)))));
    frames.resize(70, ToTriplets(1, NULL_PAIR));
    return frames;
}

static Listing List(const std::string &file, std::uint8_t service = 0)
{
    caption::SourceOptions options = {file};
    options.service = service;
    return caption::ListCues(options);
}

static Said Texts(const Listing &listing)
{
    Said texts;
    for (const ListedCue &cue : listing.cues) {
        texts.emplace_back();
        for (const auto &line : cue.lines) texts.back() += (texts.back().empty() ? "" : "/") + line.text;
    }
    return texts;
}

static void ExpectAlphabet(const std::string &file)
{
    SCOPED_TRACE(file);
    const Listing service = List(file);
    const Listing channel = List(file, KOVA_CAPTIONS_CC1);

    EXPECT_EQ(service.service, "s1") << "CEA-708 goes before CEA-608";
    ASSERT_EQ(service.cues.size(), g_letters.size());
    for (std::size_t i = 0; i < service.cues.size(); ++i) {
        EXPECT_EQ(service.cues[i].lines.at(0).text, g_letters.substr(0, i + 1));
        EXPECT_NEAR(double(service.cues[i].start), double(Frame(g_lead + int(i))), 2);
    }
    EXPECT_NEAR(double(service.cues.back().end.value_or(0)), double(Frame(60)), 2);
    EXPECT_EQ(service.cues.back().lines.at(0).window, 0);

    // Two codes, then two letters a frame.
    ASSERT_EQ(channel.cues.size(), g_letters.size() / 2);
    EXPECT_EQ(channel.cues.back().lines.at(0).text, g_letters);
    EXPECT_NEAR(double(channel.cues.front().start), double(Frame(g_lead + 2)), 2);
    EXPECT_NEAR(double(channel.cues.back().end.value_or(0)), double(Frame(60)), 2);
    EXPECT_EQ(channel.cues.back().lines.at(0).row, 15);
}

static void ExpectAlphabetIn(AVCodecID codec,
                             const std::vector<std::pair<std::string, std::string>> &containers)
{
    const Folder folder;
    media::Stream stream;
    const std::vector<media::Packet> packets = media::VideoWithTriplets(codec, Alphabet(), stream);

    for (const auto &container : containers) {
        std::vector<media::Packet> stored = packets;
        // An elementary stream has its parameter sets in itself.
        const bool bare = container.second == "h264" || container.second == "hevc";
        if (bare) stored[0].bytes = media::operator+(stream.extradata, stored[0].bytes);
        media::Write(folder / container.first, container.second, {stream}, stored);
        ExpectAlphabet(folder / container.first);
    }
}

TEST(CaptionsInPictures, AreReadFromMpeg2)
{
    ExpectAlphabetIn(AV_CODEC_ID_MPEG2VIDEO,
                     {{"a.ts", "mpegts"}, {"a.mkv", "matroska"}, {"a.mp4", "mp4"}, {"a.m2v", "mpeg2video"}});
}

// Pictures this small share packets, so few have a time, and what libavformat makes of that is off by a frame
// or two.
TEST(CaptionsInPictures, AreInOrderInProgrammeStreamsWithoutTimes)
{
    const Folder folder;
    media::Stream stream;
    media::Write(folder / "a.mpg", "vob", {stream},
                 media::VideoWithTriplets(AV_CODEC_ID_MPEG2VIDEO, Alphabet(), stream));

    const Listing service = List(folder / "a.mpg");
    const Listing channel = List(folder / "a.mpg", KOVA_CAPTIONS_CC1);

    EXPECT_EQ(service.cues.back().lines.at(0).text, g_letters);
    EXPECT_EQ(channel.cues.back().lines.at(0).text, g_letters);
    EXPECT_NEAR(double(service.cues.front().start), double(Frame(g_lead)), 100);
    EXPECT_NEAR(double(service.cues.back().end.value_or(0)), double(Frame(60)), 100);
}

TEST(CaptionsInPictures, AreReadFromH264)
{
    ExpectAlphabetIn(AV_CODEC_ID_H264,
                     {{"a.ts", "mpegts"}, {"a.mp4", "mp4"}, {"a.mkv", "matroska"}, {"a.h264", "h264"}});
}

TEST(CaptionsInPictures, AreReadFromH265)
{
    ExpectAlphabetIn(AV_CODEC_ID_HEVC,
                     {{"a.ts", "mpegts"}, {"a.mp4", "mp4"}, {"a.mkv", "matroska"}, {"a.h265", "hevc"}});
}

// The alphabet as service 1 and as CC1, with a descriptor of the services.
static void WriteAnnounced(const std::string &file, const media::Bytes &descriptor)
{
    media::Stream stream;
    const std::vector<media::Packet> packets =
        media::VideoWithTriplets(AV_CODEC_ID_MPEG2VIDEO, Alphabet(), stream);

    media::Write(file, "mpegts", {stream}, packets);
    media::AnnounceServices(file, descriptor);
}

TEST(CaptionServices, HaveTheLanguagesThatTheProgrammeMapAnnounces)
{
    Requirement("D10");
    const Folder folder;
    // Service 1 in English, easy to read; field 1 of line 21 in Spanish; service 2, which is not there.
    WriteAnnounced(folder / "a.ts", {0xE3, 'e', 'n', 'g', 0xC1, 0xFF, 0xFF, 's', 'p', 'a', 0x7E, 0x3F, 0xFF,
                                     'f', 'r', 'a', 0xC2, 0x7F, 0xFF});

    const std::vector<caption::StreamInfo> streams = caption::ListStreams({folder / "a.ts"});

    ASSERT_EQ(streams.size(), 1u);
    ASSERT_EQ(streams[0].services.size(), 2u);
    const CaptionService &service = streams[0].services[0];
    const CaptionService &channel = streams[0].services[1];
    EXPECT_EQ(service.name, "s1");
    EXPECT_EQ(service.language, "eng");
    EXPECT_TRUE(service.easyReader);
    EXPECT_EQ(service.cues, g_letters.size());
    EXPECT_EQ(channel.name, "cc1");
    EXPECT_EQ(channel.language, "spa");
    EXPECT_FALSE(channel.easyReader);
}

// What is listed by these settings: service 1 is in English and easy to read, CC1 in Spanish.
static std::string ListedBy(const std::string &file, const std::string &settings, std::uint8_t service = 0)
{
    caption::SourceOptions source = {file};

    EXPECT_EQ(Kova_Captions_ReadSettings(&source.viewer, settings.data(), settings.size(), nullptr), 0);
    source.service = service;
    return caption::ListCues(source).service;
}

TEST(CaptionServices, AreChosenByTheViewersSettings)
{
    Requirement("D10");
    const Folder folder;
    WriteAnnounced(folder / "a.ts", {0xE2, 's', 'p', 'a', 0xC1, 0xFF, 0xFF, 'e', 'n', 'g', 0x7E, 0x3F, 0xFF});
    const std::string file = folder / "a.ts";

    EXPECT_EQ(ListedBy(file, ""), "s1");
    EXPECT_EQ(ListedBy(file, "source = cc1"), "cc1");
    EXPECT_EQ(ListedBy(file, "source = s2"), "s1") << "it is not there";
    EXPECT_EQ(ListedBy(file, "language = eng"), "cc1");
    EXPECT_EQ(ListedBy(file, "language = spa"), "s1");
    EXPECT_EQ(ListedBy(file, "language = fra"), "s1") << "nothing is in French";
    EXPECT_EQ(ListedBy(file, "easy_reader = on"), "s1");
    EXPECT_EQ(ListedBy(file, "easy_reader = on\nlanguage = eng"), "cc1") << "the language counts more";
    EXPECT_EQ(ListedBy(file, "source = s1\nlanguage = eng"), "s1");
    EXPECT_EQ(ListedBy(file, "source = cc1", KOVA_CAPTIONS_S1), "s1") << "asked for";
}

TEST(CaptionServices, AreFoundWhereverTheyBegin)
{
    const Folder folder;
    media::Stream stream;
    std::vector<media::Bytes> frames(900, ToTriplets(1, NULL_PAIR));
    for (const media::Bytes &frame : Alphabet()) frames.push_back(frame);
    const std::vector<media::Packet> packets =
        media::VideoWithTriplets(AV_CODEC_ID_MPEG2VIDEO, frames, stream);
    media::Write(folder / "a.mkv", "matroska", {stream}, packets);

    const std::vector<caption::StreamInfo> streams = caption::ListStreams({folder / "a.mkv"});

    ASSERT_EQ(streams.size(), 1u);
    EXPECT_EQ(streams[0].services.size(), 2u);
}

TEST(CaptionServices, ThatAreNotThereAreRefusedWithThoseThatAre)
{
    const Folder folder;
    media::Stream stream;
    media::Write(folder / "a.mkv", "matroska", {stream},
                 media::VideoWithTriplets(AV_CODEC_ID_H264, Alphabet(), stream));

    try {
        List(folder / "a.mkv", KOVA_CAPTIONS_S1 + 1);
        FAIL() << "service 2 was found";
    } catch (const caption::Failure &failure) {
        EXPECT_EQ(failure.what(),
                  "--service s2: " + folder / "a.mkv" + ": no captions there; captions are in s1, cc1");
    }
}

// Pairs in the boxes of a c608 sample, without the flags of triplets.
static media::Bytes PairBox(const std::string &type, const Pairs &pairs)
{
    media::Bytes box = {0, 0, 0, std::uint8_t(8 + 2 * pairs.size())};
    box.insert(box.end(), type.begin(), type.end());
    for (const Pair &pair : pairs) box.insert(box.end(), {pair.first, pair.second});
    return box;
}

static Pairs PopOn(const std::string &text, unsigned channel)
{
    return Code(RCL, channel) + PacIndent(15, 0, false, channel) + Text(text) + Code(EOC, channel);
}

TEST(CaptionTracks, OfPairsHaveBothFields)
{
    const Folder folder;
    media::WriteCaptionTrack(
        folder / "a.mov", "c608",
        {{0, 0, 1000, PairBox("cdat", PopOn("one", 1)) + PairBox("cdt2", PopOn("three", 3))},
         {0, 1000, 1000, PairBox("cdat", Code(EDM))},
         {0, 2000, 1000, PairBox("cdat", NULL_PAIR)}});

    const Listing first = List(folder / "a.mov");
    const Listing third = List(folder / "a.mov", KOVA_CAPTIONS_CC3);

    // Two codes sent twice, two pairs of letters, the code: the pairs of a sample step by a frame.
    EXPECT_EQ(first.service, "cc1");
    EXPECT_EQ(Texts(first), Said{"one"});
    EXPECT_EQ(first.cues.at(0).start, Frame(6));
    EXPECT_EQ(first.cues.at(0).end, 1000);
    EXPECT_EQ(Texts(third), Said{"three"});
    EXPECT_EQ(third.cues.at(0).start, Frame(7));
    EXPECT_EQ(third.cues.at(0).end, std::nullopt);
    EXPECT_EQ(caption::ListStreams({folder / "a.mov"}).at(0).codec, "c608");
}

TEST(CaptionTracks, OfPacketsHaveServices)
{
    const Folder folder;
    const auto sample = [](unsigned sequence, const ByteString &service) {
        const ByteString cdp = Cdp(sequence, PacketTriplets(Packet(sequence, Blocks(1, service))));
        media::Bytes box = {0, 0, 0, std::uint8_t(8 + cdp.size()), 'c', 'c', 'd', 'p'};
        return box + cdp;
    };
    media::WriteCaptionTrack(folder / "a.mov", "c708",
                             {{0, 0, 500, sample(0, Define(Window(2).Hidden()) + Ascii("text"))},
                              {0, 500, 500, sample(1, DisplayWindows(4))},
                              {0, 1000, 500, sample(2, DeleteWindows(4))}});

    const Listing listing = List(folder / "a.mov");

    EXPECT_EQ(listing.service, "s1");
    EXPECT_EQ(Texts(listing), Said{"text"});
    EXPECT_EQ(listing.cues.at(0).start, 500);
    EXPECT_EQ(listing.cues.at(0).end, 1000);
    EXPECT_EQ(listing.cues.at(0).lines.at(0).window, 2);
    EXPECT_EQ(caption::ListStreams({folder / "a.mov"}).at(0).codec, "c708");
}
