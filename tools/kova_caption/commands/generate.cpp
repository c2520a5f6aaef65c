// SPDX-License-Identifier: MIT
#include <filesystem>
#include <memory>
#include <string>

#include <nlohmann/json.hpp>

#include "base/failure.h"
#include "base/whole_file.h"
#include "commands/command.h"
#include "commands/common_options.h"
#include "generating/from_cues.h"
#include "generating/patterns.h"
#include "generating/writers.h"
#include "terminal/report.h"

namespace caption
{

namespace
{

struct Format {
    const char *extension;
    bool scc;
    void (*write)(const Recording &recording, const std::string &file);
};

} // namespace

template <std::string (*text)(const Recording &)>
static void WriteText(const Recording &recording, const std::string &file)
{
    const std::string content = text(recording);
    WholeFile out(file);

    out.Write(content.data(), content.size());
    out.Finish();
}

static const Format g_formats[] = {
    {".ts", false, WriteTs},
    {".mcc", false, WriteText<MccText>},
    {".scc", true, WriteText<SccText>},
    {".ccd", false, WriteText<CcdText>},
};

static const Format &FormatOf(const std::string &file)
{
    const std::string extension = std::filesystem::path(file).extension().string();

    for (const Format &format : g_formats) {
        if (extension == format.extension) return format;
    }
    throw WrongUsage("-o " + file + ": the name must end in .ts, .mcc, .scc or .ccd");
}

static std::vector<std::string> FormatsFor(const Recording &recording)
{
    const bool anyFormat = BeyondScc(recording).empty();
    std::vector<std::string> names;

    for (const Format &format : g_formats) {
        if (anyFormat || !format.scc) names.emplace_back(format.extension + 1);
    }
    return names;
}

static long Seconds(const Recording &recording)
{
    return std::lround(double(FrameTime(recording.frames.size())) / 1e6);
}

static void PrintJson(std::FILE *out)
{
    nlohmann::ordered_json json = {{"patterns", nlohmann::ordered_json::array()}};

    for (const Pattern &pattern : Patterns()) {
        const Recording recording = Record(pattern);
        json["patterns"].push_back({{"name", pattern.name},
                                    {"purpose", pattern.purpose},
                                    {"seen", pattern.seen},
                                    {"formats", FormatsFor(recording)},
                                    {"seconds", Seconds(recording)}});
    }
    std::fprintf(out, "%s\n", json.dump(2).c_str());
}

// A paragraph, indented, in lines of a terminal.
static void PrintWrapped(const std::string &text, std::FILE *out)
{
    const std::size_t width = 96;
    std::string line;

    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        if (!line.empty() && line.size() + 1 + end - at > width) {
            std::fprintf(out, "    %s\n", line.c_str());
            line.clear();
        }
        line += (line.empty() ? "" : " ") + text.substr(at, end - at);
        at = end + 1;
    }
    std::fprintf(out, "    %s\n", line.c_str());
}

static void PrintList(std::FILE *out)
{
    for (const Pattern &pattern : Patterns()) {
        const Recording recording = Record(pattern);
        std::string formats;
        for (const std::string &name : FormatsFor(recording)) formats += " ." + name;
        std::fprintf(out, "%s: %s\n    %ld s;%s\n", pattern.name, pattern.purpose, Seconds(recording),
                     formats.c_str());
        PrintWrapped(pattern.seen, out);
    }
}

static Recording RecordPattern(const std::string &name)
{
    const Pattern *const pattern = FindPattern(name);

    if (!pattern)
        throw WrongUsage(name + ": no such pattern; kova-caption generate --list names all of them");
    return Record(*pattern);
}

static Recording RecordSource(const SourceOptions &source, const Format &format)
{
    const Subtitles subtitles = ReadSubtitles(source);
    const std::string title = std::filesystem::path(source.file).filename().string();
    Notices notices;

    for (const std::string &notice : subtitles.notices) Report(notice);
    Recording recording =
        FromCues(title, subtitles.cues, format.scc ? CaptionKinds::CEA_608 : CaptionKinds::BOTH, notices);
    for (const std::string &notice : notices.said()) Report(notice);
    return recording;
}

Command AddGenerate(CLI::App &tool)
{
    struct Arguments {
        std::string pattern;
        SourceOptions source;
        std::string file;
        bool list = false;
        bool json = false;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App &command = AddCommand(
        tool, "generate", "Write a test pattern, or the captions of any source, as closed captions",
        {"kova-caption generate --list", "kova-caption generate anchors -o anchors.ts",
         "kova-caption generate roll-up -o roll_up.scc",
         "kova-caption generate --from film.srt -o captions.mcc"});

    CLI::Option *const pattern =
        command.add_option("PATTERN", arguments->pattern, "Test pattern, one of --list")
            ->type_name("PATTERN");
    CLI::Option *const file =
        command
            .add_option("-o", arguments->file,
                        "Output file: .ts (video with captions), .mcc, .scc (CEA-608 of field "
                        "1 only) or .ccd")
            ->type_name("FILE");
    CLI::Option *const list =
        command.add_flag("--list", arguments->list, "List the patterns, and what must be seen of each")
            ->excludes(pattern)
            ->excludes(file);
    command.add_flag("--json", arguments->json, "With --list: print JSON")->needs(list);
    CLI::Option *const from = command
                                  .add_option("--from", arguments->source.file,
                                              "Subtitle file, or a recording with subtitles, to be converted")
                                  ->type_name("FILE")
                                  ->excludes(pattern)
                                  ->excludes(list);
    for (CLI::Option *const option : AddChoiceOfSource(command, arguments->source)) option->needs(from);
    return {&command, [arguments](std::FILE *out) {
                if (arguments->list) return arguments->json ? PrintJson(out) : PrintList(out);
                const bool isPattern = !arguments->pattern.empty();
                if (!isPattern && arguments->source.file.empty()) {
                    throw WrongUsage("nothing to generate; give a PATTERN, --from FILE, or --list");
                }
                if (arguments->file.empty()) throw WrongUsage("-o FILE is required");
                const Format &format = FormatOf(arguments->file);
                const Recording recording =
                    isPattern ? RecordPattern(arguments->pattern) : RecordSource(arguments->source, format);
                const std::string beyond = format.scc ? BeyondScc(recording) : "";
                if (!beyond.empty()) {
                    throw Failure(arguments->file + ": .scc holds field 1 of CEA-608 only, and " +
                                  arguments->pattern + " has " + beyond + "; choose .ts, .mcc or .ccd");
                }
                format.write(recording, arguments->file);
                std::fprintf(out, "%s\n", arguments->file.c_str());
            }};
}

} // namespace caption
