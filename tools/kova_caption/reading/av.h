// SPDX-License-Identifier: MIT
// Owning pointers for objects of FFmpeg's libraries.
#ifndef KOVA_CAPTION_READING_AV_H
#define KOVA_CAPTION_READING_AV_H

#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace caption::av
{

template <class Object, void (*free)(Object **)> struct Free {
    void operator()(Object *object) const
    {
        free(&object);
    }
};

// Frees the buffer too. libavformat may have replaced it, and leaves the new one to the owner as well.
inline void FreeIo(AVIOContext **io)
{
    if (*io) av_freep(&(*io)->buffer);
    avio_context_free(io);
}

using Input = std::unique_ptr<AVFormatContext, Free<AVFormatContext, avformat_close_input>>;
using Decoder = std::unique_ptr<AVCodecContext, Free<AVCodecContext, avcodec_free_context>>;
using Packet = std::unique_ptr<AVPacket, Free<AVPacket, av_packet_free>>;
using Frame = std::unique_ptr<AVFrame, Free<AVFrame, av_frame_free>>;
using Io = std::unique_ptr<AVIOContext, Free<AVIOContext, FreeIo>>;

} // namespace caption::av

#endif
