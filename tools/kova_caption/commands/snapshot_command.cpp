#include <memory>

#include "command.h"
#include "common_options.h"
#include "snapshot.h"

namespace caption
{

Command AddSnapshot(CLI::App &tool)
{
    struct Arguments {
        SourceOptions source;
        Options options;
        std::string folder;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App &command =
        AddCommand(tool, "snapshot", "Write every cue of a subtitle file as a PNG",
                   {"kova-caption snapshot film.srt -o pictures",
                    "kova-caption snapshot film.srt -o pictures --edge right-shadow --color FFFF00",
                    "kova-caption snapshot film.srt -o pictures --plane 1920x1080 --background 204060"});

    AddSource(command, arguments->source);
    command.add_option("-o", arguments->folder, "Folder for 0001.png and so on")
        ->type_name("DIR")
        ->required();
    AddPlace(command, arguments->options);
    AddLetters(command, arguments->options);
    AddLook(command, arguments->options);
    AddBackground(command, arguments->options);
    return {&command, [arguments](std::FILE *out) {
                Snapshot(arguments->source, arguments->folder, arguments->options, out);
            }};
}

} // namespace caption
