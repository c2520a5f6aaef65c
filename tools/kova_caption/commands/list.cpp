// SPDX-License-Identifier: MIT
#include <cmath>
#include <memory>
#include <optional>

#include <nlohmann/json.hpp>

#include "base/failure.h"
#include "base/timestamp.h"
#include "base/utf8.h"
#include "commands/command.h"
#include "commands/common_options.h"
#include "kova/kova_captions.h"
#include "reading/subtitles.h"
#include "terminal/report.h"

namespace caption
{

using Json = nlohmann::ordered_json;

static Json LineAsJson(const ListedLine &line)
{
    Json json;

    if (line.window) json["window"] = *line.window;
    if (line.row) json["row"] = *line.row;
    if (line.column) json["column"] = *line.column;
    json["text"] = line.text;
    return json;
}

static std::string Joined(const std::vector<ListedLine> &lines, const char *between)
{
    std::string text;
    for (const ListedLine &line : lines) text += (text.empty() ? "" : between) + line.text;
    return text;
}

static Json CueAsJson(const ListedCue &cue)
{
    Json json = {{"start_ms", cue.start}, {"end_ms", nullptr}, {"text", Joined(cue.lines, "\n")}};

    if (cue.end) json["end_ms"] = *cue.end;
    json["blocks"] = Json::array();
    for (const ListedLine &line : cue.lines) json["blocks"].push_back(LineAsJson(line));
    if (cue.pictures) json["pictures"] = cue.pictures;
    return json;
}

static void PrintJson(const Listing &listing, std::FILE *out)
{
    Json json = {{"service", nullptr}, {"cues", Json::array()}};

    if (!listing.service.empty()) json["service"] = listing.service;
    for (const ListedCue &cue : listing.cues) json["cues"].push_back(CueAsJson(cue));
    std::fprintf(out, "%s\n", json.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
}

static void PrintCues(const Listing &listing, std::FILE *out)
{
    for (const ListedCue &cue : listing.cues) {
        const std::string end = cue.end ? Timestamp(*cue.end) : "-";
        const std::string text = cue.lines.empty() && cue.pictures ? "(picture)" : Joined(cue.lines, " / ");
        std::fprintf(out, "%s --> %-12s  %s\n", Timestamp(cue.start).c_str(), end.c_str(),
                     Printable(text).c_str());
    }
}

static void PrintCommands(const CommandListing &listing, std::FILE *out)
{
    for (const CaptionCommand &command : listing.commands) {
        const std::int64_t milliseconds = std::llround(double(command.time) / 1000);
        std::fprintf(out, "%s %s %s\n", Timestamp(milliseconds).c_str(), listing.service.c_str(),
                     Printable(command.text).c_str());
    }
}

// What --commands can print: every code that belongs to a channel or service, with its arguments.
static std::string CommandNames()
{
    const auto belongs = [](int code) {
        return code < KOVA_CAPTIONS_EVENT_PROGRAM_START || code == KOVA_CAPTIONS_EVENT_CUT_ELEMENT ||
               code == KOVA_CAPTIONS_EVENT_BUFFER_FULL || code == KOVA_CAPTIONS_EVENT_TIMEOUT;
    };
    const std::size_t width = 96;
    std::string text = "\n\nCommands and their arguments:";

    for (int code = KOVA_CAPTIONS_EVENT_TEXT; code <= KOVA_CAPTIONS_EVENT_DISCONTINUITY; ++code) {
        const auto number = std::uint8_t(code);
        std::string line = std::string("  ") + Kova_Captions_EventName(number);
        if (!belongs(code)) continue;
        if (code == KOVA_CAPTIONS_EVENT_TEXT) line += " \"characters\"";
        for (unsigned i = 0; const char *const argument = Kova_Captions_ArgumentName(number, i); ++i) {
            if (line.size() - line.rfind('\n') > width) line += "\n     ";
            line += std::string(" ") + argument + "=";
        }
        text += "\n" + line;
    }
    return text;
}

Command AddList(CLI::App &tool)
{
    struct Arguments {
        SourceOptions source;
        bool json = false;
        bool commands = false;
        std::optional<std::string> settings;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App &command = AddCommand(tool, "list", "List the cues of a file without drawing them",
                                   {"kova-caption list film.srt", "kova-caption list film.scc --json",
                                    "kova-caption list film.scc --service cc1 --commands"});

    command.footer(command.get_footer() + CommandNames());
    AddSource(command, arguments->source);
    AddSettingsFile(command, arguments->settings);
    CLI::Option *const json = command.add_flag("--json", arguments->json, "Print JSON");
    command.add_flag("--commands", arguments->commands, "Print the decoded commands of closed captions")
        ->excludes(json);
    return {&command, [arguments](std::FILE *out) {
                std::vector<std::string> notices;
                arguments->source.viewer = ReadSettings(arguments->settings);
                if (arguments->commands) {
                    const CommandListing listing = ListCommands(arguments->source);
                    PrintCommands(listing, out);
                    notices = listing.notices;
                } else {
                    const Listing listing = ListCues(arguments->source);
                    if (arguments->json) PrintJson(listing, out);
                    if (!arguments->json) PrintCues(listing, out);
                    notices = listing.notices;
                }
                for (const std::string &notice : notices) Report(notice);
            }};
}

} // namespace caption
