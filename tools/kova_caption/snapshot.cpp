#include "snapshot.h"

#include <cstdlib>
#include <set>
#include <vector>

#include "failure.h"
#include "picture.h"
#include "stage.h"
#include "subtitles.h"
#include "timestamp.h"

namespace caption
{

static void MakeFolder(const std::filesystem::path &folder)
{
    std::error_code error;

    std::filesystem::create_directories(folder, error);
    if (!std::filesystem::is_directory(folder, error)) {
        throw Failure("-o " + folder.string() + ": is no folder and cannot be made one; choose another");
    }
}

static void Advise(std::size_t number, const std::string &text)
{
    std::fprintf(stderr, "kova-caption: cue %zu: %s.\n", number, text.c_str());
}

static std::string MissingCharacters(const std::set<char32_t> &missing, std::set<char32_t> &told)
{
    std::string list;

    for (const char32_t code : missing) {
        if (!told.insert(code).second) continue;
        char name[16];
        std::snprintf(name, sizeof name, " U+%04X", unsigned(code));
        list += name;
    }
    return list;
}

void Snapshot(const SourceOptions &source, const std::filesystem::path &folder, const Options &options,
              std::FILE *listing)
{
    // Whatever can be refused is refused before anything is made.
    const std::vector<Cue> cues = ReadSubtitles(source).cues;
    Stage stage(options);
    MakeFolder(folder);

    std::set<char32_t> told;
    std::size_t number = 0;
    for (const Cue &cue : cues) {
        char name[32];
        std::snprintf(name, sizeof name, "%04zu.png", ++number);

        stage.display.Clear();
        const Drawn drawn = stage.renderer.Draw({&cue});
        if (drawn.lines == 0 && drawn.bitmaps.empty()) {
            throw Failure("--height " + std::to_string(options.TextHeight()) +
                          ": a line of text finds no room " + "on a plane " +
                          std::to_string(options.plane.height) + " pixels high; choose a smaller one");
        }
        const Picture picture = stage.display.Present();
        WritePng(options.background ? Over(picture, *options.background) : picture, folder / name);

        std::fprintf(listing, "%s  %s --> %s  %dx%d  %s\n", name, Timestamp(cue.start).c_str(),
                     Timestamp(cue.end).c_str(), Bounds(drawn).width, Bounds(drawn).height,
                     PlainText(cue).c_str());
        std::fflush(listing);

        if (drawn.left > 0) {
            Advise(number, std::to_string(drawn.left) + " of " + std::to_string(drawn.left + drawn.lines) +
                               " lines found no room and are left out; a smaller --height shows more");
        }
        for (const std::string &notice : drawn.notices) Advise(number, notice);
        const std::string missing = MissingCharacters(stage.fonts.Missing(), told);
        if (!missing.empty()) {
            Advise(number, "no font here has" + missing + "; name one that has with --font FILE");
        }
    }
    stage.display.Clear();
}

} // namespace caption
