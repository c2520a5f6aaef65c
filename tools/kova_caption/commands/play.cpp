// SPDX-License-Identifier: MIT
#include <cmath>
#include <cstdlib>
#include <memory>
#include <optional>

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
        std::optional<std::string> settings;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App &command =
        AddCommand(tool, "play", "Play captions in real time; space pauses, left and right step, q quits",
                   {"kova-caption play film.srt", "kova-caption play film.srt --start 0:02 --speed 4",
                    "kova-caption play film.srt --headless --speed 100 --plane 1920x1080"});

    AddSource(command, arguments->source);
    command.add_option("--speed", arguments->playback.speed, "Playback speed [1]")
        ->type_name("FACTOR")
        ->check(CLI::Range(0.01, 1000.0).description(""))
        // Every comparison with NaN is false, so the range accepts it.
        ->check([](const std::string &text) {
            return std::isnan(std::strtod(text.c_str(), nullptr)) ? "'" + text + "' is not a number"
                                                                  : std::string();
        });
    command
        .add_option_function<std::string>(
            "--start",
            [arguments](const std::string &text) { arguments->playback.start = ParseTime("--start", text); },
            "Start time [0]")
        ->type_name("[[HH:]MM:]SS");
    command.add_flag("--loop", arguments->playback.loop, "Start again at the end");
    AddPlace(command, arguments->options);
    AddLetters(command, arguments->options);
    AddLook(command, arguments->options);
    AddSettingsFile(command, arguments->settings);
    return {&command, [arguments](std::FILE *out) {
                arguments->options.viewer = arguments->source.viewer = ReadSettings(arguments->settings);
                Play(arguments->source, arguments->playback, arguments->options, out);
            }};
}

} // namespace caption
