// SPDX-License-Identifier: MIT
// A media or subtitle file, opened for reading its subtitles.
#ifndef KOVA_CAPTION_READING_MEDIA_FILE_H
#define KOVA_CAPTION_READING_MEDIA_FILE_H

#include <cstdint>
#include <string>

#include "base/notices.h"
#include "reading/av.h"

namespace caption
{

class MediaFile
{
public:
    // Converts text to UTF-8 before libavformat reads it. Throws Failure if the file cannot be read or is of
    // no known format.
    MediaFile(const std::string &file, const std::string &charset, Notices &notices);
    MediaFile(const MediaFile &) = delete;
    MediaFile &operator=(const MediaFile &) = delete;

    const std::string &file() const
    {
        return file_;
    }

    const AVFormatContext &format() const
    {
        return *input_;
    }

    // The text of a text file, as UTF-8; empty for other files.
    const std::string &text() const
    {
        return text_;
    }

    // Discards the packets of all other streams from now on.
    void ReadOnly(const AVStream &stream);

    bool Read(AVPacket &packet);

    // Of one of its streams, from the beginning.
    std::int64_t Microseconds(const AVStream &stream, std::int64_t timestamp) const;
    std::int64_t Milliseconds(const AVStream &stream, std::int64_t timestamp) const;

private:
    static int ReadText(void *source, std::uint8_t *buffer, int size);
    static std::int64_t SeekText(void *source, std::int64_t offset, int whence);

    std::string file_;
    std::string text_;
    std::size_t at_ = 0;
    av::Io io_; // destroyed after the input, which reads through it
    av::Input input_;
    std::int64_t beginning_ = 0; // in AV_TIME_BASE
};

} // namespace caption

#endif
