// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include <nlohmann/json.hpp>

#include "base/failure.h"
#include "base/options.h"
#include "base/timestamp.h"
#include "commands/command.h"
#include "commands/common_options.h"
#include "commands/parse.h"
#include "drawing/picture.h"
#include "drawing/remarks.h"
#include "drawing/stage.h"
#include "reading/subtitles.h"
#include "terminal/progress.h"
#include "terminal/report.h"
#include "terminal/stop_signals.h"

namespace caption
{

using Json = nlohmann::ordered_json;

namespace
{

struct SnapshotOptions {
    SourceOptions source;
    std::filesystem::path folder;   // created if necessary
    std::optional<std::int64_t> at; // milliseconds; none: one picture per cue
    bool json = false;              // list as JSON
};

// The content of one picture.
struct Scene {
    std::string file;
    std::string name; // in messages
    std::int64_t start;
    std::int64_t end;
    std::vector<const Cue *> cues;
};

} // namespace

static void MakeFolder(const std::filesystem::path &folder)
{
    std::error_code error;

    std::filesystem::create_directories(folder, error);
    if (!std::filesystem::is_directory(folder, error)) {
        throw Failure("-o " + folder.string() + ": cannot be created as a directory; choose another");
    }
}

static std::vector<Scene> OneACue(const std::vector<Cue> &cues)
{
    std::vector<Scene> scenes;

    for (const Cue &cue : cues) {
        char file[32];
        std::snprintf(file, sizeof file, "%04zu.png", scenes.size() + 1);
        const std::string name = "cue " + std::to_string(scenes.size() + 1);
        scenes.push_back({file, name, cue.start, cue.end, {&cue}});
    }
    return scenes;
}

static Scene SceneAt(const std::vector<Cue> &cues, std::int64_t time)
{
    const std::string moment = Timestamp(time);
    std::string file = "at-" + moment + ".png";
    std::string next;

    for (const Screen &screen : Screens(cues)) {
        if (next.empty() && screen.start > time) next = "; the next one begins at " + Timestamp(screen.start);
        if (time < screen.start || time >= screen.end) continue;
        Scene scene = {"", moment, screen.start, screen.end, {}};
        std::replace(file.begin(), file.end(), ':', '-'); // not every file system allows colons
        scene.file = file;
        for (const std::size_t cue : screen.cues) scene.cues.push_back(&cues[cue]);
        return scene;
    }
    throw Failure("--at " + moment + ": no caption is shown at that time" +
                  (next.empty() ? "; the last one has ended" : next));
}

static std::string TextOf(const Scene &scene, const char *separator)
{
    std::string text;

    for (const Cue *const cue : scene.cues) {
        for (const Line &line : Lines(*cue)) text += (text.empty() ? "" : separator) + PlainText(line);
    }
    return text;
}

static Json Listed(const std::vector<Rect> &rects)
{
    Json list = Json::array();

    for (const Rect &rect : rects) {
        list.push_back({{"x", rect.x}, {"y", rect.y}, {"width", rect.width}, {"height", rect.height}});
    }
    return list;
}

static Json Listed(const Scene &scene, const Drawn &drawn, const std::vector<std::string> &remarks)
{
    return {
        {"file", scene.file},          {"start_ms", scene.start},        {"end_ms", scene.end},
        {"text", TextOf(scene, "\n")}, {"blocks", Listed(drawn.blocks)}, {"bitmaps", Listed(drawn.bitmaps)},
        {"notices", remarks}};
}

static std::string Listed(const Scene &scene, const Drawn &drawn)
{
    const Rect bounds = Bounds(drawn);

    return scene.file + "  " + Timestamp(scene.start) + " --> " + Timestamp(scene.end) + "  " +
           std::to_string(bounds.width) + "x" + std::to_string(bounds.height) + "  " + TextOf(scene, " / ");
}

// Writes 0001.png and so on, one per cue, or one picture of everything that is shown at a given time. Lists
// them with times and texts.
static void Snapshot(const SnapshotOptions &snapshot, const Options &options, std::FILE *listing)
{
    // All checks come before anything is created.
    const Subtitles subtitles = ReadSubtitles(snapshot.source);
    const std::vector<Scene> scenes =
        snapshot.at ? std::vector<Scene>{SceneAt(subtitles.cues, *snapshot.at)} : OneACue(subtitles.cues);
    Stage stage(ResolveMode(subtitles.cues, options), subtitles.cues);
    const StopSignals signals;
    MakeFolder(snapshot.folder);
    const Progress progress(scenes.size());
    Remarks remarks;
    Json pictures = Json::array();

    for (const std::string &notice : subtitles.notices) Report(notice);
    for (std::size_t i = 0; i < scenes.size(); ++i) {
        const Scene &scene = scenes[i];

        signals.Read();
        progress.Show(i);
        Drawn drawn;
        const Picture picture = RenderFrame(stage, scene.cues, drawn);
        WritePng(options.background ? Over(picture, *options.background) : picture,
                 snapshot.folder / scene.file);
        const std::vector<std::string> said = remarks.On(drawn, stage.fonts);
        progress.Hide();
        if (snapshot.json) {
            pictures.push_back(Listed(scene, drawn, said));
        } else {
            std::fprintf(listing, "%s\n", Listed(scene, drawn).c_str());
            std::fflush(listing);
        }
        for (const std::string &remark : said) Report(scene.name + ": " + remark);
    }
    stage.display.Clear();
    if (!snapshot.json) return;
    const Json whole = {{"source", snapshot.source.file},
                        {"plane", {{"width", options.plane.width}, {"height", options.plane.height}}},
                        {"notices", subtitles.notices},
                        {"pictures", pictures}};
    // The name of a file need not be valid UTF-8.
    std::fprintf(listing, "%s\n", whole.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
}

Command AddSnapshot(CLI::App &tool)
{
    struct Arguments {
        SnapshotOptions snapshot;
        Options options;
        std::optional<std::string> settings;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App &command =
        AddCommand(tool, "snapshot", "Write every cue of a subtitle file as a PNG",
                   {"kova-caption snapshot film.srt -o pictures",
                    "kova-caption snapshot film.srt -o pictures --edge right-shadow --color FFFF00",
                    "kova-caption snapshot film.srt -o pictures --at 0:02.2 --json",
                    "kova-caption snapshot film.srt -o pictures --plane 1920x1080 --background 204060"});

    AddSource(command, arguments->snapshot.source);
    command.add_option("-o", arguments->snapshot.folder, "Output directory for 0001.png and so on")
        ->type_name("DIR")
        ->required();
    command
        .add_option_function<std::string>(
            "--at",
            [arguments](const std::string &text) { arguments->snapshot.at = ParseTime("--at", text); },
            "Draw all captions shown at this time [one picture per cue]")
        ->type_name("[[HH:]MM:]SS");
    command.add_flag("--json", arguments->snapshot.json, "Print JSON, with positions on the plane");
    AddPlace(command, arguments->options);
    AddLetters(command, arguments->options);
    AddLook(command, arguments->options);
    AddSettingsFile(command, arguments->settings);
    AddBackground(command, arguments->options);
    return {&command, [arguments](std::FILE *out) {
                arguments->options.viewer = arguments->snapshot.source.viewer =
                    ReadSettings(arguments->settings);
                Snapshot(arguments->snapshot, arguments->options, out);
            }};
}

} // namespace caption
