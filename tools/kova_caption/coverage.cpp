// SPDX-License-Identifier: MIT
#include "coverage.h"

#include <set>
#include <string>
#include <vector>

#include <unictype.h>
#include <uniname.h>

#include "failure.h"
#include "fonts.h"
#include "letters.h"
#include "remarks.h"
#include "timestamp.h"

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

void Coverage(const SourceOptions &source, const Options &options, std::FILE *out)
{
    const bool named = !options.font.empty() || !options.fallbacks.empty();
    Fonts fonts(options, named ? Fonts::Reserve::NONE : Fonts::Reserve::MACHINE);
    const Subtitles subtitles = ReadSubtitles(source);
    std::set<char32_t> met;
    std::size_t number = 0;

    for (const std::string &notice : subtitles.notices) Say(notice);
    for (const Cue &cue : subtitles.cues) {
        ++number;
        for (const char32_t code : MissingOf(cue, fonts, met)) {
            std::string character;
            AppendUtf8(character, code);
            std::fprintf(out, "cue %zu  %s --> %s  %s  %s  %s\n", number, Timestamp(cue.start).c_str(),
                         Timestamp(cue.end).c_str(), CodeName(code).c_str(), character.c_str(),
                         UnicodeName(code).c_str());
        }
    }
    std::fflush(out);
    if (!fonts.Missing().empty()) {
        throw Failure(std::to_string(fonts.Missing().size()) + " of " + std::to_string(met.size()) +
                      " characters are in no font; add one that has them with --fallback FILE");
    }
    std::fprintf(out, "all %zu characters have a font\n", met.size());
}

} // namespace caption
