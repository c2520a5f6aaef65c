// SPDX-License-Identifier: MIT
#include <memory>

#include "command.h"
#include "common_options.h"
#include "snapshot.h"

namespace caption
{

Command AddSnapshot(CLI::App &tool)
{
    struct Arguments {
        SnapshotOptions snapshot;
        Options options;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App &command =
        AddCommand(tool, "snapshot", "Write every cue of a subtitle file as a PNG",
                   {"kova-caption snapshot film.srt -o pictures",
                    "kova-caption snapshot film.srt -o pictures --edge right-shadow --color FFFF00",
                    "kova-caption snapshot film.srt -o pictures --at 0:02.2 --json",
                    "kova-caption snapshot film.srt -o pictures --plane 1920x1080 --background 204060"});

    AddSource(command, arguments->snapshot.source);
    command.add_option("-o", arguments->snapshot.folder, "Folder for 0001.png and so on")
        ->type_name("DIR")
        ->required();
    command
        .add_option_function<std::string>(
            "--at",
            [arguments](const std::string &text) { arguments->snapshot.at = ParseTime("--at", text); },
            "One picture of all that is shown then (one a cue, by itself)")
        ->type_name("[[HH:]MM:]SS");
    command.add_flag("--json", arguments->snapshot.json, "List as JSON, with places on the plane");
    AddPlace(command, arguments->options);
    AddLetters(command, arguments->options);
    AddLook(command, arguments->options);
    AddBackground(command, arguments->options);
    return {&command,
            [arguments](std::FILE *out) { Snapshot(arguments->snapshot, arguments->options, out); }};
}

} // namespace caption
