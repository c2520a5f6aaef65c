// SPDX-License-Identifier: MIT
#include "commands/common_options.h"

#include "commands/parse.h"

namespace caption
{

// Works for every target that a colour can be assigned to.
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
    command.add_option("FILE", file, "Subtitle file, or a recording with subtitles")
        ->type_name("FILE")
        ->required();
}

std::vector<CLI::Option *> AddChoiceOfSource(CLI::App &command, SourceOptions &source)
{
    return {command.add_option("--stream", source.stream, "Stream number [first subtitle stream]")
                ->type_name("NUMBER"),
            command
                .add_option("--charset", source.charset,
                            "Character set of a text file, as iconv names it [auto-detect]")
                ->type_name("NAME"),
            command
                .add_option_function<std::string>(
                    "--service", [&source](const std::string &name) { source.service = ParseService(name); },
                    "Closed captions: s1 to s63, cc1 to cc4, t1 to t4 [by the settings, else the first with "
                    "captions]")
                ->type_name("NAME")};
}

void AddSource(CLI::App &command, SourceOptions &source)
{
    AddFile(command, source.file);
    AddChoiceOfSource(command, source);
}

void AddPlane(CLI::App &command, Options &options)
{
    command
        .add_option_function<std::string>(
            "--plane", [&options](const std::string &text) { options.plane = ParsePlane(text); },
            "Plane size [1280x720]")
        ->type_name("WIDTHxHEIGHT");
}

void AddPlace(CLI::App &command, Options &options)
{
    AddPlane(command, options);
    AddChoice(command, "--layer", options.layer, "1", g_layers, "Layer to draw on");
    AddChoice(command, "--mode", options.mode, "palette; index for bitmaps", g_modes, "Colour mode");
}

void AddLetters(CLI::App &command, Options &options)
{
    AddChoice(command, "--edge", options.edge, "uniform", g_edges, "Edge of the text");
    command
        .add_option("--height", options.height,
                    "Text size in pixels, where the file has none [a sixteenth of the plane height]")
        ->type_name("PIXELS")
        ->check(CLI::Range(1, 1080).description(""));
}

void AddFonts(CLI::App &command, Options &options)
{
    command.add_option("--font", options.font, "Font to try first where the file names none [DejaVu Sans]")
        ->type_name("FILE");
    command.add_option("--fallback", options.fallbacks, "Font to try next; may be repeated")
        ->type_name("FILE")
        ->allow_extra_args(false);
}

void AddLook(CLI::App &command, Options &options)
{
    AddFonts(command, options);
    AddColor(command, "--color", options.color, "Text colour [FFFFFF]");
    AddEdgeColor(command, options);
    AddHeadless(command, options);
}

void AddEdgeColor(CLI::App &command, Options &options)
{
    AddColor(command, "--edge-color", options.edgeColor, "Edge colour [000000]");
}

void AddHeadless(CLI::App &command, Options &options)
{
    command.add_flag("--headless", options.headless, "Draw without a window, even with an X server");
}

void AddSettingsFile(CLI::App &command, std::optional<std::string> &file)
{
    command
        .add_option("--settings", file,
                    "The viewer's settings, which override the look that the file and other options ask for "
                    "[~/.config/kova-caption/settings]")
        ->type_name("FILE");
}

void AddBackground(CLI::App &command, Options &options)
{
    AddColor(command, "--background", options.background, "Background colour of the picture [transparent]");
}

} // namespace caption
