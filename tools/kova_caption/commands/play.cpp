// SPDX-License-Identifier: MIT
#include <memory>

#include "commands/command.h"
#include "commands/common_options.h"
#include "commands/parse.h"
#include "playing/player.h"

namespace caption
{

Command AddPlay(CLI::App &tool)
{
    struct Arguments {
        SourceOptions source;
        Playback playback;
        Options options;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App &command = AddCommand(
        tool, "play", "Show the captions at their times; space pauses, left and right step, q ends",
        {"kova-caption play film.srt", "kova-caption play film.srt --start 0:02 --speed 4",
         "kova-caption play film.srt --headless --speed 100 --plane 1920x1080"});

    AddSource(command, arguments->source);
    command.add_option("--speed", arguments->playback.speed, "Times as fast (1)")
        ->type_name("FACTOR")
        ->check(CLI::Range(0.01, 1000.0).description(""));
    command
        .add_option_function<std::string>(
            "--start",
            [arguments](const std::string &text) { arguments->playback.start = ParseTime("--start", text); },
            "Where to begin (0)")
        ->type_name("[[HH:]MM:]SS");
    command.add_flag("--loop", arguments->playback.loop, "Begin again at the end");
    AddPlace(command, arguments->options);
    AddLetters(command, arguments->options);
    AddLook(command, arguments->options);
    return {&command, [arguments](std::FILE *out) {
                Play(arguments->source, arguments->playback, arguments->options, out);
            }};
}

} // namespace caption
