// SPDX-License-Identifier: MIT
// Options that several commands share.
#ifndef KOVA_CAPTION_COMMANDS_COMMON_OPTIONS_H
#define KOVA_CAPTION_COMMANDS_COMMON_OPTIONS_H

#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "base/options.h"
#include "reading/subtitles.h"

namespace caption
{

// Looks the words up here because CLI11 would also accept the numbers behind them.
template <class Target, class Value, std::size_t count>
CLI::Option *AddChoice(CLI::App &command, const std::string &name, Target &value, const std::string &preset,
                       const Choice<Value> (&choices)[count], const std::string &help)
{
    std::string words;
    for (const auto &choice : choices) words += (words.empty() ? "" : "|") + std::string(choice.name);

    return command
        .add_option_function<std::string>(
            name,
            [&value, &choices, name, words](const std::string &word) {
                for (const auto &choice : choices) {
                    if (word != choice.name) continue;
                    value = choice.value;
                    return;
                }
                throw CLI::ValidationError(name, "must be one of " + words + ", not '" + word + "'");
            },
            help + " [" + preset + "]")
        ->type_name(words);
}

// Each of these keeps a reference to the options, which must exist until the command line is parsed.

// FILE alone.
void AddFile(CLI::App &command, std::string &file);

// --stream, --charset, --service: what is read of a file.
std::vector<CLI::Option *> AddChoiceOfSource(CLI::App &command, SourceOptions &source);

// The same with FILE.
void AddSource(CLI::App &command, SourceOptions &source);

// --plane alone.
void AddPlane(CLI::App &command, Options &options);

// --plane, --layer, --mode: where captions are drawn.
void AddPlace(CLI::App &command, Options &options);

// --edge, --height.
void AddLetters(CLI::App &command, Options &options);

// --font, --fallback.
void AddFonts(CLI::App &command, Options &options);

// --font, --fallback, --color, --edge-color, --headless.
void AddLook(CLI::App &command, Options &options);
void AddEdgeColor(CLI::App &command, Options &options);
void AddHeadless(CLI::App &command, Options &options);

// --settings: the viewer's settings, for ReadSettings.
void AddSettingsFile(CLI::App &command, std::optional<std::string> &file);

// --background, for commands that write pictures.
void AddBackground(CLI::App &command, Options &options);

} // namespace caption

#endif
