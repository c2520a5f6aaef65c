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
        return "bitmap";
    case StreamKind::EMBEDDED_CAPTIONS:
        return "embedded captions";
    default:
        return "unsupported";
    }
}

static void PrintServices(const std::vector<StreamInfo> &streams, std::FILE *out)
{
    bool first = true;

    for (const StreamInfo &stream : streams) {
        for (const CaptionService &service : stream.services) {
            if (first) std::fprintf(out, "\n%-9s%-8s%-10s%s\n", "service", "stream", "language", "cues");
            first = false;
            std::fprintf(out, "%-9s%-8d%-10s%zu%s\n", service.name.c_str(), stream.index,
                         service.language.empty() ? "-" : service.language.c_str(), service.cues,
                         service.easyReader ? "  easy reader" : "");
        }
    }
}

static void PrintStreams(const std::string &file, std::FILE *out)
{
    const std::vector<StreamInfo> streams = ListStreams({file});

    if (streams.empty()) throw Failure(file + ": no subtitles found; give another file");
    std::fprintf(out, "%-7s%-23s%-20s%-9s%s\n", "stream", "kind", "codec", "language", "title");
    for (const StreamInfo &stream : streams) {
        std::fprintf(out, "%-7d%-23s%-20s%-9s%s\n", stream.index, Word(stream.kind), stream.codec.c_str(),
                     stream.language.empty() ? "-" : stream.language.c_str(), stream.title.c_str());
    }
    PrintServices(streams, out);
}

Command AddInfo(CLI::App &tool)
{
    const auto file = std::make_shared<std::string>();
    CLI::App &command = AddCommand(
        tool, "info", "List the subtitle streams and caption services of a file, for --stream and --service",
        {"kova-caption info film.srt", "kova-caption info film.scc"});

    AddFile(command, *file);
    return {&command, [file](std::FILE *out) { PrintStreams(*file, out); }};
}

} // namespace caption
