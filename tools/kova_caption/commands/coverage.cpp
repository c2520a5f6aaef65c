// SPDX-License-Identifier: MIT
#include <cstdio>
#include <memory>
#include <set>
#include <string>
#include <unictype.h>
#include <uniname.h>
#include <vector>

#include "base/failure.h"
#include "base/options.h"
#include "base/timestamp.h"
#include "base/utf8.h"
#include "commands/command.h"
#include "commands/common_options.h"
#include "drawing/remarks.h"
#include "reading/subtitles.h"
#include "terminal/report.h"
#include "text/fonts.h"
#include "text/letters.h"

namespace caption
{

static std::string UnicodeName(char32_t code)
{
    char name[UNINAME_MAX];

    if (unicode_character_name(code, name)) return name;
    if (uc_is_property_unified_ideograph(code)) return "CJK UNIFIED IDEOGRAPH-" + CodeName(code).substr(2);
    return "(no name)";
}

static std::set<char32_t> MissingOf(const Cue &cue, Fonts &fonts, std::set<char32_t> &met)
{
    std::vector<Letters> lines;
    std::set<char32_t> missing;

    for (const Block &block : cue.blocks) {
        for (const Line &line : block.lines) lines.push_back(Prepare(line));
    }
    fonts.Choose(lines);
    for (const Letters &line : lines) {
        for (const Letter &letter : line) {
            met.insert(letter.code);
            if (fonts.Missing().count(letter.code)) missing.insert(letter.code);
        }
    }
    return missing;
}

// Lists each missing character with its cue, in the form in which it would be drawn, so joined letters count
// in their joined forms. Searches the fonts that the options name, or all fonts of the machine if they name
// none. Throws Failure if a character is missing.
static void Coverage(const SourceOptions &source, const Options &options, std::FILE *out)
{
    const bool named = !options.font.empty() || !options.fallbacks.empty();
    Fonts fonts(options, named ? Fonts::Reserve::NONE : Fonts::Reserve::MACHINE);
    const Subtitles subtitles = ReadSubtitles(source);
    std::set<char32_t> met;
    std::size_t number = 0;

    for (const std::string &notice : subtitles.notices) Report(notice);
    for (const Cue &cue : subtitles.cues) {
        ++number;
        for (const char32_t code : MissingOf(cue, fonts, met)) {
            std::fprintf(out, "cue %zu  %s --> %s  %s  %s  %s\n", number, Timestamp(cue.start).c_str(),
                         Timestamp(cue.end).c_str(), CodeName(code).c_str(), Utf8(code).c_str(),
                         UnicodeName(code).c_str());
        }
    }
    std::fflush(out);
    if (!fonts.Missing().empty()) {
        throw Failure(std::to_string(fonts.Missing().size()) + " of " + std::to_string(met.size()) +
                      " characters have no glyph; add a font with --fallback");
    }
    std::fprintf(out, "all %zu characters have a glyph\n", met.size());
}

Command AddCoverage(CLI::App &tool)
{
    struct Arguments {
        SourceOptions source;
        Options options;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App &command = AddCommand(
        tool, "coverage", "List the characters without a glyph in the given fonts [all installed fonts]",
        {"kova-caption coverage film.srt", "kova-caption coverage film.srt --font sets/Sans.ttf"});

    AddSource(command, arguments->source);
    AddFonts(command, arguments->options);
    return {&command, [arguments](std::FILE *out) { Coverage(arguments->source, arguments->options, out); }};
}

} // namespace caption
