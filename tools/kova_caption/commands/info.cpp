// SPDX-License-Identifier: MIT
#include <memory>

#include "base/failure.h"
#include "commands/command.h"
#include "commands/common_options.h"

namespace caption
{

static const char *Word(StreamKind kind)
{
    switch (kind) {
    case StreamKind::TEXT:
        return "text";
    case StreamKind::BITMAP:
        return "pictures";
    case StreamKind::EMBEDDED_CAPTIONS:
        return "captions in the video";
    default:
        return "cannot be read";
    }
}

static void PrintStreams(const std::string &file, std::FILE *out)
{
    const std::vector<StreamInfo> streams = ListStreams({file});

    if (streams.empty()) throw Failure(file + ": has no subtitles in it; give another file");
    std::fprintf(out, "%-7s%-23s%-20s%-9s%s\n", "stream", "kind", "codec", "language", "title");
    for (const StreamInfo &stream : streams) {
        std::fprintf(out, "%-7d%-23s%-20s%-9s%s\n", stream.index, Word(stream.kind), stream.codec.c_str(),
                     stream.language.empty() ? "-" : stream.language.c_str(), stream.title.c_str());
    }
}

Command AddInfo(CLI::App &tool)
{
    const auto file = std::make_shared<std::string>();
    CLI::App &command = AddCommand(tool, "info", "List the subtitles that a file has, by what --stream takes",
                                   {"kova-caption info film.srt"});

    AddFile(command, *file);
    return {&command, [file](std::FILE *out) { PrintStreams(*file, out); }};
}

} // namespace caption
