// SPDX-License-Identifier: MIT
#include "commands/common_options.h"

#include "commands/parse.h"

namespace caption
{

// Any place that a colour can be put into takes it.
template <class Target>
static void AddColor(CLI::App &command, const std::string &name, Target &target, const std::string &help)
{
    command
        .add_option_function<std::string>(
            name, [&target, name](const std::string &text) { target = ParseColor(name, text); }, help)
        ->type_name("RRGGBB");
}

void AddFile(CLI::App &command, std::string &file)
{
    command.add_option("FILE", file, "Subtitles, or a recording that has some")
        ->type_name("FILE")
        ->required();
}

void AddSource(CLI::App &command, SourceOptions &source)
{
    AddFile(command, source.file);
    command.add_option("--stream", source.stream, "Which of its streams (the first of subtitles)")
        ->type_name("NUMBER");
    command
        .add_option("--charset", source.charset,
                    "How a text file is encoded, by a name that iconv knows (found out)")
        ->type_name("NAME");
    command
        .add_option_function<std::string>(
            "--service", [&source](const std::string &name) { source.service = ParseService(name); },
            "Which channel or service of closed captions: s1 to s63, cc1 to cc4, t1 to t4 (the first that "
            "has any)")
        ->type_name("NAME");
}

void AddPlane(CLI::App &command, Options &options)
{
    command
        .add_option_function<std::string>(
            "--plane", [&options](const std::string &text) { options.plane = ParsePlane(text); },
            "Size of the plane (1280x720)")
        ->type_name("WIDTHxHEIGHT");
}

void AddPlace(CLI::App &command, Options &options)
{
    AddPlane(command, options);
    AddChoice(command, "--layer", options.layer, "1", g_layers, "Layer to draw on");
    AddChoice(command, "--mode", options.mode, "palette; index for pictures", g_modes,
              "How the display keeps colours");
}

void AddLetters(CLI::App &command, Options &options)
{
    AddChoice(command, "--edge", options.edge, "uniform", g_edges, "Edge around the letters");
    command
        .add_option("--height", options.height,
                    "Height of the letters' em in pixels (a sixteenth of the plane)")
        ->type_name("PIXELS")
        ->check(CLI::Range(1, 1080).description(""));
}

void AddFonts(CLI::App &command, Options &options)
{
    command.add_option("--font", options.font, "Font to try first (DejaVu Sans)")->type_name("FILE");
    command.add_option("--fallback", options.fallbacks, "Font to look into next; may be given several times")
        ->type_name("FILE")
        ->allow_extra_args(false);
}

void AddLook(CLI::App &command, Options &options)
{
    AddFonts(command, options);
    AddColor(command, "--color", options.color, "Text (FFFFFF)");
    AddEdgeColor(command, options);
    AddHeadless(command, options);
}

void AddEdgeColor(CLI::App &command, Options &options)
{
    AddColor(command, "--edge-color", options.edgeColor, "Edge (000000)");
}

void AddHeadless(CLI::App &command, Options &options)
{
    command.add_flag("--headless", options.headless, "Draw without a window, X server or not");
}

void AddBackground(CLI::App &command, Options &options)
{
    AddColor(command, "--background", options.background, "Colour to lay the picture over (none)");
}

} // namespace caption
