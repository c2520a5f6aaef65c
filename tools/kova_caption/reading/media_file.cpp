// SPDX-License-Identifier: MIT
#include "reading/media_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "base/failure.h"
#include "reading/captions/text_file.h"
#include "reading/charset.h"
#include "reading/webvtt.h"

namespace caption
{

static const char g_advice[] = "; give a subtitle file, or a recording with subtitles";
static const std::uintmax_t g_longestText = 64 << 20;

// The text formats. Other formats of libavformat may open further files.
static const char g_textFormats[] = "aqtitle,ass,jacosub,microdvd,mpl2,mpsub,pjs,realtext,sami,srt,stl,"
                                    "subviewer,subviewer1,tedcaptions,vplayer,webvtt";

// libavformat would also open URLs, wait at pipes, and report errors without advice.
static std::string Head(const std::string &file)
{
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);

    if (std::filesystem::is_directory(status)) throw Failure(file + ": is a directory" + g_advice);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        throw Failure(file + ": is a pipe or a device" + g_advice);
    }
    std::FILE *const readable = std::fopen(file.c_str(), "rb");
    if (!readable) throw Failure(file + ": cannot be read (" + std::strerror(errno) + ")" + g_advice);
    std::string head(std::size_t(64) << 10, '\0');
    head.resize(std::fread(head.data(), 1, head.size(), readable));
    std::fclose(readable);
    if (head.empty()) throw Failure(file + ": is empty" + g_advice);
    return head;
}

static std::string WholeText(const std::string &file)
{
    std::error_code error;
    if (std::filesystem::file_size(file, error) > g_longestText) {
        throw Failure(file + ": text files over 64 MiB are not supported; split the file");
    }
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

int MediaFile::ReadText(void *source, std::uint8_t *buffer, int size)
{
    MediaFile &self = *static_cast<MediaFile *>(source);
    const std::size_t count = std::min(std::size_t(size), self.text_.size() - self.at_);

    if (count == 0) return AVERROR_EOF;
    // NOLINTNEXTLINE(bugprone-not-null-terminated-result): FFmpeg reads bytes, not a string
    std::memcpy(buffer, self.text_.data() + self.at_, count);
    self.at_ += count;
    return int(count);
}

std::int64_t MediaFile::SeekText(void *source, std::int64_t offset, int whence)
{
    MediaFile &self = *static_cast<MediaFile *>(source);
    const auto size = std::int64_t(self.text_.size());

    if (whence == AVSEEK_SIZE) return size;
    const std::int64_t from = whence == SEEK_CUR ? std::int64_t(self.at_) : whence == SEEK_END ? size : 0;
    if (offset < -from || offset > size - from) return AVERROR(EINVAL);
    self.at_ = std::size_t(from + offset);
    return from + offset;
}

MediaFile::MediaFile(const std::string &file, const std::string &charset, Notices &notices) : file_(file)
{
    av_log_set_level(AV_LOG_QUIET);

    const std::string head = Head(file);
    // The index of VobSub is text, but libavformat must find the bitmaps next to it.
    const bool text = LooksLikeText(head) && head.find("VobSub index file") == std::string::npos;
    if (text) text_ = WithoutWebVttStyles(ToUtf8(WholeText(file), charset, notices), notices);

    AVFormatContext *context = avformat_alloc_context();
    AVDictionary *settings = nullptr;
    if (IsCaptionText(text_, file)) {
        input_.reset(context);
        return;
    }
    if (text) {
        const int size = 4096;
        io_.reset(avio_alloc_context(static_cast<unsigned char *>(av_malloc(size)), size, 0, this, ReadText,
                                     nullptr, SeekText));
        context->pb = io_.get();
        av_dict_set(&settings, "format_whitelist", g_textFormats, 0);
    } else {
        av_dict_set(&settings, "protocol_whitelist", "file", 0);
    }
    // libavformat frees the context when it fails.
    const int result = avformat_open_input(&context, ("file:" + file).c_str(), nullptr, &settings);
    av_dict_free(&settings);
    input_.reset(context);
    if (result < 0) throw Failure(file + ": unrecognised subtitle format" + g_advice);
    if (text) return;

    // libavformat takes the pairs out of samples of a c608 track, but those of the first field alone.
    for (unsigned i = 0; i < input_->nb_streams; ++i) {
        AVCodecParameters &parameters = *input_->streams[i]->codecpar;
        if (parameters.codec_tag == MKTAG('c', '6', '0', '8')) parameters.codec_id = AV_CODEC_ID_NONE;
    }
    avformat_find_stream_info(input_.get(), nullptr);
    // The clock of a broadcast starts anywhere.
    const bool anyClock = input_->iformat->flags & AVFMT_TS_DISCONT;
    if (anyClock && input_->start_time != AV_NOPTS_VALUE) beginning_ = input_->start_time;
}

void MediaFile::ReadOnly(const AVStream &stream)
{
    for (unsigned i = 0; i < input_->nb_streams; ++i) {
        const bool wanted = int(i) == stream.index;
        input_->streams[i]->discard = wanted ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
}

bool MediaFile::Read(AVPacket &packet)
{
    av_packet_unref(&packet);
    return av_read_frame(input_.get(), &packet) >= 0;
}

std::int64_t MediaFile::Microseconds(const AVStream &stream, std::int64_t timestamp) const
{
    const std::int64_t longest = std::int64_t(1) << 60;
    const std::int64_t time = av_rescale_q(timestamp, stream.time_base, AVRational{1, AV_TIME_BASE});

    return std::clamp(time, -longest, longest) - beginning_;
}

std::int64_t MediaFile::Milliseconds(const AVStream &stream, std::int64_t timestamp) const
{
    return av_rescale(Microseconds(stream, timestamp), 1000, AV_TIME_BASE);
}

} // namespace caption
