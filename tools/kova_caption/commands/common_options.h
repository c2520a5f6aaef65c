// SPDX-License-Identifier: MIT
// Options that several commands have.
#ifndef KOVA_CAPTION_COMMANDS_COMMON_OPTIONS_H
#define KOVA_CAPTION_COMMANDS_COMMON_OPTIONS_H

#include <string>

#include <CLI/CLI.hpp>

#include "base/options.h"
#include "reading/subtitles.h"

namespace caption
{

// The words are looked up by hand: CLI11 would take the numbers behind them too.
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
                throw CLI::ValidationError(name, "'" + word + "' is none of " + words);
            },
            help + " (" + preset + ")")
        ->type_name(words);
}

// All of these keep a reference to the options, which must live until the command line is parsed.

// FILE alone.
void AddFile(CLI::App &command, std::string &file);

// FILE, --stream, --charset, --service: what is read.
void AddSource(CLI::App &command, SourceOptions &source);

// --plane alone.
void AddPlane(CLI::App &command, Options &options);

// --plane, --layer, --mode: where captions are drawn.
void AddPlace(CLI::App &command, Options &options);

// --edge, --height: how captions are drawn, besides AddLook's.
void AddLetters(CLI::App &command, Options &options);

// --font, --fallback: what letters are looked for in.
void AddFonts(CLI::App &command, Options &options);

// AddFonts', --color, --edge-color, --headless.
void AddLook(CLI::App &command, Options &options);
void AddEdgeColor(CLI::App &command, Options &options);
void AddHeadless(CLI::App &command, Options &options);

// --background, for what becomes a picture.
void AddBackground(CLI::App &command, Options &options);

} // namespace caption

#endif
