// kova-caption: draws subtitle files through the display library and keeps what was drawn as pictures.
#include <cstdio>
#include <exception>
#include <map>
#include <string>

#include <CLI/CLI.hpp>
#include <unistd.h>

#include "directfb_system.h"
#include "edge_sheet.h"
#include "failure.h"
#include "options.h"
#include "picture.h"
#include "snapshot.h"

namespace
{

enum { EXIT_OK = 0, EXIT_FAILED = 1, EXIT_USAGE = 2 };

struct Arguments {
    caption::Options options;
    std::string file;
    std::string output;
    std::string plane = "1280x720";
    std::string color = "FFFFFF";
    std::string edgeColor = "000000";
    std::string background;
};

const std::map<std::string, KovaGraphicLayer_e> g_layers = {
    {"1", KOVA_GRAPHIC_LAYER1}, {"2", KOVA_GRAPHIC_LAYER2}, {"3", KOVA_GRAPHIC_LAYER3}};

const std::map<std::string, caption::ColorMode> g_modes = {{"index", caption::ColorMode::INDEX},
                                                           {"palette", caption::ColorMode::PALETTE},
                                                           {"argb", caption::ColorMode::ARGB}};

const std::map<std::string, KovaTextEdgeType_e> g_edges = {{"none", KOVA_TEXT_ENONE},
                                                           {"raised", KOVA_TEXT_ERAISED},
                                                           {"depressed", KOVA_TEXT_EDEPRESSED},
                                                           {"uniform", KOVA_TEXT_EUNIFORM},
                                                           {"left-shadow", KOVA_TEXT_ELEFTDROPSHADOW},
                                                           {"right-shadow", KOVA_TEXT_ERIGTHDROPSHADOW}};

// The words are looked up by hand: CLI11 would take the numbers behind them too.
template <class Value>
void AddChoice(CLI::App &command, const std::string &name, Value &value, const std::string &preset,
               const std::map<std::string, Value> &choices, const std::string &help)
{
    std::string words;
    for (const auto &choice : choices) words += (words.empty() ? "" : "|") + choice.first;

    command
        .add_option_function<std::string>(
            name,
            [&value, &choices, name, words](const std::string &word) {
                const auto found = choices.find(word);
                if (found == choices.end()) {
                    throw CLI::ValidationError(name, "'" + word + "' is none of " + words);
                }
                value = found->second;
            },
            help + " (" + preset + ")")
        ->type_name(words);
}

void AddLook(CLI::App &command, Arguments &arguments)
{
    command.add_option("--font", arguments.options.font, "Font to try first (DejaVu Sans)")
        ->type_name("FILE");
    command.add_option("--color", arguments.color, "Text (FFFFFF)")->type_name("RRGGBB");
    command.add_option("--edge-color", arguments.edgeColor, "Edge (000000)")->type_name("RRGGBB");
    command.add_option("--background", arguments.background, "Colour to lay the pictures over")
        ->type_name("RRGGBB");
    command.add_flag("--headless", arguments.options.headless, "Draw without a window, X server or not");
}

void Finish(Arguments &arguments)
{
    caption::Options &options = arguments.options;

    options.plane = caption::ParsePlane(arguments.plane);
    options.color = caption::ParseColor("--color", arguments.color);
    options.edgeColor = caption::ParseColor("--edge-color", arguments.edgeColor);
    if (!arguments.background.empty()) {
        options.background = caption::ParseColor("--background", arguments.background);
    }
}

// The library prints on standard output when a context becomes active. That goes to standard error here, so
// that standard output holds the listing alone.
std::FILE *KeepStandardOutput()
{
    std::fflush(stdout);
    std::FILE *const listing = fdopen(dup(STDOUT_FILENO), "w");
    if (!listing || dup2(STDERR_FILENO, STDOUT_FILENO) < 0) {
        throw caption::Failure("standard output is closed; give the listing somewhere to go");
    }
    return listing;
}

int Run(int argc, char **argv)
{
    Arguments arguments;
    CLI::App app("Draws subtitles as a television's on-screen display would, and keeps the pictures.",
                 "kova-caption");
    app.require_subcommand(1);

    CLI::App &snapshot = *app.add_subcommand("snapshot", "Write every cue of a subtitle file as a PNG");
    snapshot.add_option("FILE", arguments.file, "SRT, WebVTT or ASS")->required();
    snapshot.add_option("-o", arguments.output, "Folder for 0001.png and so on")
        ->type_name("DIR")
        ->required();
    snapshot.add_option("--plane", arguments.plane, "Size of the plane (1280x720)")
        ->type_name("WIDTHxHEIGHT");
    AddChoice(snapshot, "--layer", arguments.options.layer, "1", g_layers, "Layer to draw on");
    AddChoice(snapshot, "--mode", arguments.options.mode, "palette", g_modes,
              "How the display keeps colours");
    AddChoice(snapshot, "--edge", arguments.options.edge, "uniform", g_edges, "Edge around the letters");
    snapshot.add_option("--height", arguments.options.height, "Height of the letters' em in pixels")
        ->type_name("PIXELS")
        ->check(CLI::Range(1, 1080));
    AddLook(snapshot, arguments);

    CLI::App &edges = *app.add_subcommand("edges", "Write one PNG with every edge in every colour mode");
    edges.add_option("-o", arguments.output, "The picture")->type_name("FILE")->required();
    AddLook(edges, arguments);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == EXIT_OK ? EXIT_OK : EXIT_USAGE;
    }
    Finish(arguments);
    std::FILE *const listing = KeepStandardOutput();
    if (snapshot.parsed()) {
        caption::Snapshot(arguments.file, arguments.output, arguments.options, listing);
    } else {
        caption::WritePng(caption::EdgeSheet(arguments.options), arguments.output);
        std::fprintf(listing, "%s\n", arguments.output.c_str());
    }
    if (std::fclose(listing) != 0) throw caption::Failure("the listing could not be written");
    return EXIT_OK;
}

} // namespace

int main(int argc, char **argv)
{
    try {
        return Run(argc, argv);
    } catch (const caption::WrongUsage &error) {
        std::fprintf(stderr, "kova-caption: %s.\n", error.what());
        return EXIT_USAGE;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "kova-caption: %s.\n", error.what());
        return EXIT_FAILED;
    }
}
