// SPDX-License-Identifier: MIT
#include "reading/captions/triplet_finder.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "kova/kova_captions_carriage.h"
#include "reading/decoder.h"

namespace caption
{

// Pictures that are held back: enough for every order that H.264 and H.265 allow.
static const std::size_t g_queue = 17;

// A sample of a caption track may hold the pairs of many frames.
static const std::size_t g_mostInSample = 1 << 16;

// Elementary streams, in which libavformat finds no presentation times.
static bool IsBare(const MediaFile &file)
{
    const std::string format = file.format().iformat->name;

    return format == "mpegvideo" || format == "h264" || format == "hevc";
}

static bool IsMpeg2(AVCodecID codec)
{
    return codec == AV_CODEC_ID_MPEG2VIDEO || codec == AV_CODEC_ID_MPEG1VIDEO;
}

// MP4 and Matroska keep a configuration record (avcC, hvcC), which says how long the lengths before NAL units
// are. Elsewhere the parameter sets stand there with start codes, or nothing. Returns 0 for start codes.
static unsigned LengthSize(const AVCodecParameters &parameters)
{
    const std::uint8_t *const record = parameters.extradata;
    const int at = parameters.codec_id == AV_CODEC_ID_H264 ? 4 : 21; // of lengthSizeMinusOne

    if (parameters.extradata_size <= at) return 0;
    const bool startCode = record[0] == 0 && record[1] == 0 && record[2] <= 1;
    return startCode ? 0 : (record[at] & 3u) + 1;
}

namespace
{

// What a coded picture carries.
struct Carried {
    std::array<std::uint8_t, std::size_t(3) * KOVA_CAPTIONS_PICTURE_TRIPLETS> bytes;
    KovaCaptionsTriplets list = {bytes.data(), KOVA_CAPTIONS_PICTURE_TRIPLETS, 0, 0, 0};

    Carried() = default;
    Carried(const Carried &) = delete;
    Carried &operator=(const Carried &) = delete;
};

// H.264 and H.265: pictures are ordered by their times.
class NalPictures : public TripletFinder
{
public:
    NalPictures(const AVStream &video, TripletSink sink)
        : coding_(video.codecpar->codec_id == AV_CODEC_ID_HEVC ? KOVA_CAPTIONS_H265 : KOVA_CAPTIONS_H264),
          lengthSize_(LengthSize(*video.codecpar)), sink_(std::move(sink)), pictures_(g_queue)
    {
        Kova_Captions_ReorderStart(&queue_, pictures_.data(), pictures_.size());
    }

    void Take(const AVPacket &packet, std::int64_t time) override
    {
        const auto size = std::size_t(packet.size);
        Carried carried;

        if (lengthSize_) {
            Kova_Captions_ReadLengthPrefixed(coding_, lengthSize_, packet.data, size, &carried.list);
        } else {
            Kova_Captions_ReadAnnexB(coding_, packet.data, size, &carried.list);
        }
        // The second field of a picture may come without a time.
        if (packet.pts == AV_NOPTS_VALUE && latest_) time = *latest_;
        if (packet.pts != AV_NOPTS_VALUE) latest_ = time;
        Kova_Captions_ReorderPush(&queue_, time, carried.bytes.data(), carried.list.count);
        Pass(false);
    }

    void Finish() override
    {
        Pass(true);
    }

private:
    void Pass(bool all)
    {
        KovaCaptionsPicture picture;

        while (Kova_Captions_ReorderPop(&queue_, all ? 1 : 0, &picture) == 1) {
            sink_(picture.time, picture.bytes, picture.count);
        }
    }

    KovaCaptionsCoding coding_;
    unsigned lengthSize_;
    TripletSink sink_;
    std::vector<KovaCaptionsPicture> pictures_;
    KovaCaptionsReorder queue_ = {};
    std::optional<std::int64_t> latest_; // presentation time of a packet that had one
};

// MPEG-2: B pictures are shown as they come, others when the next one of theirs is decoded. That orders
// pictures without times too, of which programme streams have many; and the times that libavformat finds for
// them are not all in order.
class Mpeg2Pictures : public TripletFinder
{
public:
    Mpeg2Pictures(const MediaFile &file, const AVStream &video, TripletSink sink)
        : file_(file), video_(video), sink_(std::move(sink))
    {
    }

    void Take(const AVPacket &packet, std::int64_t time) override
    {
        Carried carried;

        Kova_Captions_ReadMpeg2(packet.data, std::size_t(packet.size), &carried.list);
        if (IsBPicture(packet)) {
            Pass(time, carried.bytes.data(), carried.list.count);
            return;
        }
        PassHeld(packet.dts == AV_NOPTS_VALUE ? time : file_.Microseconds(video_, packet.dts));
        held_.assign(carried.bytes.begin(), carried.bytes.begin() + std::ptrdiff_t(3 * carried.list.count));
        timeOfHeld_ = std::nullopt;
        if (packet.pts != AV_NOPTS_VALUE) timeOfHeld_ = time;
    }

    void Finish() override
    {
        PassHeld(latest_);
    }

private:
    static bool IsBPicture(const AVPacket &packet)
    {
        const std::array<std::uint8_t, 4> startCode = {0, 0, 1, 0};
        const std::uint8_t *const end = packet.data + packet.size;
        const std::uint8_t *const header = std::search(static_cast<const std::uint8_t *>(packet.data), end,
                                                       startCode.begin(), startCode.end());
        const int b = 3;

        return end - header > 5 && (header[5] >> 3 & 7) == b;
    }

    void PassHeld(std::int64_t decodedNext)
    {
        Pass(timeOfHeld_.value_or(decodedNext), held_.data(), held_.size() / 3);
    }

    // A time that goes back a little is libavformat's error, one that goes back further is another
    // recording's.
    void Pass(std::int64_t time, const std::uint8_t *triplets, std::size_t count)
    {
        const std::int64_t second = 1000000;

        latest_ = time < latest_ - second ? time : std::max(time, latest_);
        if (count > 0) sink_(latest_, triplets, count);
    }

    const MediaFile &file_;
    const AVStream &video_;
    TripletSink sink_;
    std::vector<std::uint8_t> held_;
    std::optional<std::int64_t> timeOfHeld_;
    std::int64_t latest_ = INT64_MIN / 2; // microseconds
};

// Elementary streams have no times, so their pictures are in presentation order only once they are decoded.
class DecodedPictures : public TripletFinder
{
public:
    DecodedPictures(const MediaFile &file, const AVStream &video, TripletSink sink)
        : video_(video), decoder_(OpenDecoder(file, video)), frame_(av_frame_alloc()), sink_(std::move(sink))
    {
    }

    void Take(const AVPacket &packet, std::int64_t) override
    {
        Decode(&packet);
    }

    void Finish() override
    {
        Decode(nullptr);
    }

private:
    void Decode(const AVPacket *packet)
    {
        avcodec_send_packet(decoder_.get(), packet);
        for (; avcodec_receive_frame(decoder_.get(), frame_.get()) >= 0; ++frames_) {
            const AVFrameSideData *const data = av_frame_get_side_data(frame_.get(), AV_FRAME_DATA_A53_CC);
            if (data) sink_(Time(), data->data, data->size / 3);
        }
    }

    std::int64_t Time() const
    {
        const AVRational usual = {30000, 1001};
        const AVRational rate = video_.avg_frame_rate.num > 0 ? video_.avg_frame_rate : usual;

        return av_rescale(frames_, std::int64_t(AV_TIME_BASE) * rate.den, rate.num);
    }

    const AVStream &video_;
    av::Decoder decoder_;
    av::Frame frame_;
    TripletSink sink_;
    std::int64_t frames_ = 0;
};

// Tracks of MP4 and QuickTime, c608 and c708, and triplets that libavformat took out of ancillary data.
class CaptionSamples : public TripletFinder
{
public:
    CaptionSamples(const AVStream &track, TripletSink sink)
        : tag_(track.codecpar->codec_tag), sink_(std::move(sink)), bytes_(3 * g_mostInSample)
    {
    }

    void Take(const AVPacket &packet, std::int64_t time) override
    {
        const auto size = std::size_t(packet.size);
        KovaCaptionsTriplets found = {bytes_.data(), g_mostInSample, 0, 0, 0};

        if (tag_ == MKTAG('c', '6', '0', '8')) {
            Kova_Captions_ReadC608(packet.data, size, &found);
            PassFrames(found, time);
            return;
        }
        if (tag_ == MKTAG('c', '7', '0', '8')) {
            Kova_Captions_ReadC708(packet.data, size, &found, nullptr);
        } else {
            Kova_Captions_ReadTriplets(packet.data, size, &found);
        }
        sink_(time, found.bytes, found.count);
    }

    void Finish() override
    {
    }

private:
    // Two triplets a frame, one of each field.
    void PassFrames(const KovaCaptionsTriplets &found, std::int64_t start)
    {
        for (std::size_t i = 0; i < found.count; i += 2) {
            const std::int64_t offset =
                Kova_Captions_FramesToTime(KOVA_CAPTIONS_RATE_29_97, std::int64_t(i / 2));
            sink_(start + offset, found.bytes + 3 * i, std::min<std::size_t>(2, found.count - i));
        }
    }

    unsigned tag_;
    TripletSink sink_;
    std::vector<std::uint8_t> bytes_;
};

} // namespace

bool IsCaptionTrack(const AVStream &stream)
{
    const AVCodecParameters &parameters = *stream.codecpar;

    return parameters.codec_type == AVMEDIA_TYPE_SUBTITLE &&
           (parameters.codec_id == AV_CODEC_ID_EIA_608 || parameters.codec_tag == MKTAG('c', '6', '0', '8') ||
            parameters.codec_tag == MKTAG('c', '7', '0', '8'));
}

bool IsCaptionVideo(const AVStream &stream)
{
    const AVCodecID codec = stream.codecpar->codec_id;

    return !(stream.disposition & AV_DISPOSITION_ATTACHED_PIC) &&
           (IsMpeg2(codec) || codec == AV_CODEC_ID_H264 || codec == AV_CODEC_ID_HEVC);
}

std::unique_ptr<TripletFinder> FindTriplets(const MediaFile &file, const AVStream &stream, TripletSink sink)
{
    if (IsCaptionTrack(stream)) return std::make_unique<CaptionSamples>(stream, std::move(sink));
    if (IsBare(file)) return std::make_unique<DecodedPictures>(file, stream, std::move(sink));
    if (IsMpeg2(stream.codecpar->codec_id)) {
        return std::make_unique<Mpeg2Pictures>(file, stream, std::move(sink));
    }
    return std::make_unique<NalPictures>(stream, std::move(sink));
}

} // namespace caption
