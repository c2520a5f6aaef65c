// SPDX-License-Identifier: MIT
// Every pattern as a transport stream, read by FFmpeg's libraries and by the tool.
#include <gtest/gtest.h>

#include "generating/patterns.h"
#include "generating/scene_painter.h"
#include "generating/writers.h"
#include "reading/av.h"
#include "reading/subtitles.h"
#include "support/tool.h"

using namespace caption;
using encoding::ByteString;

namespace
{

// What FFmpeg decodes.
struct Video {
    std::vector<std::int64_t> times; // of pictures, in units of 1/90000 s, from the first
    std::vector<ByteString> triplets;
    Picture first{{0, 0}};
    bool announcesCaptions = false;
};

class TransportStreams : public testing::TestWithParam<std::string>
{
};

} // namespace

// Brightness alone.
static Picture Luma(const AVFrame &frame)
{
    Picture picture({frame.width, frame.height});

    for (int y = 0; y < frame.height; ++y) {
        for (int x = 0; x < frame.width; ++x) {
            const std::uint8_t luma = frame.data[0][y * frame.linesize[0] + x];
            picture.At(x, y) = {luma, luma, luma};
        }
    }
    return picture;
}

static Video Decoded(const std::string &file)
{
    AVFormatContext *opened = nullptr;
    EXPECT_EQ(avformat_open_input(&opened, file.c_str(), nullptr, nullptr), 0);
    const av::Input input(opened);
    EXPECT_GE(avformat_find_stream_info(opened, nullptr), 0);
    EXPECT_EQ(opened->nb_streams, 1u);
    AVCodecParameters *const parameters = opened->streams[0]->codecpar;
    const av::Decoder decoder(avcodec_alloc_context3(avcodec_find_decoder(parameters->codec_id)));
    avcodec_parameters_to_context(decoder.get(), parameters);
    EXPECT_EQ(avcodec_open2(decoder.get(), nullptr, nullptr), 0);
    const av::Packet packet(av_packet_alloc());
    const av::Frame frame(av_frame_alloc());
    Video video;

    for (bool more = true; more;) {
        more = av_read_frame(opened, packet.get()) >= 0;
        avcodec_send_packet(decoder.get(), more ? packet.get() : nullptr);
        av_packet_unref(packet.get());
        while (avcodec_receive_frame(decoder.get(), frame.get()) >= 0) {
            const AVFrameSideData *const data = av_frame_get_side_data(frame.get(), AV_FRAME_DATA_A53_CC);
            if (video.times.empty()) video.first = Luma(*frame);
            video.times.push_back(frame->pts - (video.times.empty() ? 0 : video.times.front()));
            video.triplets.push_back(data ? ByteString(data->data, data->data + data->size) : ByteString());
        }
    }
    if (!video.times.empty()) video.times.front() = 0;
    video.announcesCaptions = (decoder->properties & FF_CODEC_PROPERTY_CLOSED_CAPTIONS) != 0;
    return video;
}

TEST_P(TransportStreams, HaveTheirCaptionsInEveryFrame)
{
    const Folder folder;
    const Recording recording = Record(*FindPattern(GetParam()));

    WriteTs(recording, folder / "a.ts");
    const Video video = Decoded(folder / "a.ts");

    EXPECT_TRUE(video.announcesCaptions);
    ASSERT_EQ(video.triplets.size(), recording.frames.size());
    for (std::size_t i = 0; i < recording.frames.size(); ++i) {
        ASSERT_EQ(video.triplets[i], AllTriplets(recording.frames[i])) << "frame " << i;
        ASSERT_EQ(video.times[i], std::int64_t(i) * 3003) << "frame " << i;
    }
    EXPECT_LT(std::filesystem::file_size(folder / "a.ts"), 8000000u);

    // The tool finds the same captions, and the services as they are announced.
    folder.Write("a.ccd", CcdText(recording));
    const std::vector<StreamInfo> streams = ListStreams({folder / "a.ts"});
    ASSERT_EQ(streams.size(), 1u);
    ASSERT_FALSE(streams[0].services.empty());
    for (const CaptionService &service : streams[0].services) {
        const bool first = service.name[0] == 's' || service.name == "cc1" || service.name == "cc3";
        EXPECT_EQ(service.language, first ? "eng" : "") << service.name;
        SourceOptions made = {folder / "a.ts"}, raw = {folder / "a.ccd"};
        made.service = raw.service = Kova_Captions_SourceByName(service.name.c_str());
        const std::vector<ListedCue> cues = ListCues(made).cues, expected = ListCues(raw).cues;
        ASSERT_EQ(cues.size(), expected.size()) << service.name;
        for (std::size_t i = 0; i < cues.size(); ++i) {
            EXPECT_EQ(cues[i].lines, expected[i].lines) << service.name;
            EXPECT_NEAR(double(cues[i].start), double(expected[i].start), 1) << service.name;
        }
    }
}

static std::vector<std::string> Names()
{
    std::vector<std::string> names;
    for (const Pattern &pattern : Patterns()) names.emplace_back(pattern.name);
    return names;
}

INSTANTIATE_TEST_SUITE_P(Patterns, TransportStreams, testing::ValuesIn(Names()), [](const auto &row) {
    std::string name = row.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

// The first picture of a recording with a box over the right half of the safe title area, which is the middle 80 %.
TEST(TransportStream, ShowsBoxesAndTextBesideTheSafeTitleArea)
{
    const Folder folder;
    Recording recording;
    recording.title = "title";
    recording.frames.resize(2);
    recording.scenes.push_back({0, {"words", {{0.5, 0, 1, 1, Color{255, 255, 255}}, {0.1, 0.2, 0.3, 0.4}}}});

    WriteTs(recording, folder / "a.ts");
    const Video video = Decoded(folder / "a.ts");

    const auto bright = [&](int x, int y) { return video.first.At(x, y).red > 200; };
    ASSERT_EQ(video.first.size(), (Size{1280, 720}));
    EXPECT_TRUE(bright(644, 360) && bright(1148, 76) && bright(1148, 644));
    EXPECT_FALSE(bright(636, 360) || bright(1156, 360) || bright(644, 68) || bright(644, 652));
    int above = 0, safe = 0, below = 0;
    for (int y = 0; y < 720; ++y) {
        for (int x = 0; x < 640; ++x) (y < 72 ? above : y < 648 ? safe : below) += bright(x, y);
    }
    EXPECT_GT(above, 300) << "the text";
    EXPECT_EQ(safe, 0);
    EXPECT_EQ(below, 0);
    // The outline lies around its rectangle: x from 230.4 to 435.2, y from 187.2 to 302.4.
    const auto yellow = [&](int x, int y) { return video.first.At(x, y).red > 140; };
    EXPECT_TRUE(yellow(300, 186) && yellow(300, 303) && yellow(229, 250) && yellow(436, 250));
    EXPECT_FALSE(yellow(300, 190) || yellow(300, 299) || yellow(234, 250) || yellow(432, 250));
}
