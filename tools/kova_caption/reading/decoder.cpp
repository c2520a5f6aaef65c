// SPDX-License-Identifier: MIT
#include "reading/decoder.h"

#include "base/failure.h"

namespace caption
{

av::Decoder OpenDecoder(const MediaFile &source, const AVStream &stream)
{
    const AVCodec *const codec = avcodec_find_decoder(stream.codecpar->codec_id);
    av::Decoder decoder(codec ? avcodec_alloc_context3(codec) : nullptr);

    if (decoder && avcodec_parameters_to_context(decoder.get(), stream.codecpar) >= 0) {
        decoder->pkt_timebase = stream.time_base;
        // Only the side data of video frames is used, so the picture need not be exact.
        decoder->thread_count = 0;
        decoder->skip_loop_filter = AVDISCARD_ALL;
        if (avcodec_open2(decoder.get(), codec, nullptr) >= 0) return decoder;
    }
    throw Failure(source.file() + ": no decoder for stream " + std::to_string(stream.index) + " (" +
                  avcodec_get_name(stream.codecpar->codec_id) + "); choose another with --stream");
}

} // namespace caption
