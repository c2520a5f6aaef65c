// SPDX-License-Identifier: MIT
#include "text/font_files.h"

#include <algorithm>
#include <memory>

#include <fontconfig/fontconfig.h>
#include <strings.h>

namespace caption
{

using Pattern = std::unique_ptr<FcPattern, void (*)(FcPattern *)>;

static const FcChar8 *Bytes(const char *text)
{
    return reinterpret_cast<const FcChar8 *>(text);
}

static Pattern Wanted(const char *family)
{
    Pattern wanted(FcPatternCreate(), FcPatternDestroy);

    FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
    FcPatternAddBool(wanted.get(), FC_COLOR, FcFalse);
    FcPatternAddString(wanted.get(), FC_FAMILY, Bytes(family));
    return wanted;
}

static Pattern Match(FcPattern &wanted)
{
    FcResult result = FcResultNoMatch;

    FcConfigSubstitute(nullptr, &wanted, FcMatchPattern);
    FcDefaultSubstitute(&wanted);
    return Pattern(FcFontMatch(nullptr, &wanted, &result), FcPatternDestroy);
}

static std::string FileOf(const Pattern &found)
{
    FcChar8 *file = nullptr;
    int index = 0;

    if (!found || FcPatternGetString(found.get(), FC_FILE, 0, &file) != FcResultMatch) return "";
    if (FcPatternGetInteger(found.get(), FC_INDEX, 0, &index) != FcResultMatch || index != 0) return "";
    return reinterpret_cast<const char *>(file);
}

std::string FileWith(char32_t code)
{
    const std::unique_ptr<FcCharSet, void (*)(FcCharSet *)> set(FcCharSetCreate(), FcCharSetDestroy);
    const Pattern wanted = Wanted("sans-serif");
    FcCharSet *has = nullptr;

    FcCharSetAddChar(set.get(), code);
    FcPatternAddCharSet(wanted.get(), FC_CHARSET, set.get());
    const Pattern found = Match(*wanted);
    if (!found || FcPatternGetCharSet(found.get(), FC_CHARSET, 0, &has) != FcResultMatch) return "";
    return FcCharSetHasChar(has, code) ? FileOf(found) : "";
}

static bool HasName(const Pattern &found, const char *object, const std::string &name)
{
    FcChar8 *each = nullptr;

    for (int i = 0; found && FcPatternGetString(found.get(), object, i, &each) == FcResultMatch; ++i) {
        if (strcasecmp(reinterpret_cast<const char *>(each), name.c_str()) == 0) return true;
    }
    return false;
}

static int Number(const Pattern &found, const char *object)
{
    int number = 0;

    FcPatternGetInteger(found.get(), object, 0, &number);
    return number;
}

static Pattern MatchStyle(const std::string &name, bool bold, bool italic)
{
    const Pattern wanted = Wanted(name.c_str());

    FcPatternAddString(wanted.get(), FC_FULLNAME, Bytes(name.c_str()));
    FcPatternAddInteger(wanted.get(), FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(wanted.get(), FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    return Match(*wanted);
}

std::vector<FontFile> FilesOfFamily(const std::string &name)
{
    const Pattern upright = MatchStyle(name, false, false);
    const std::string file = FileOf(upright);
    const bool named = HasName(upright, FC_FAMILY, name) || HasName(upright, FC_FULLNAME, name);
    std::vector<FontFile> files;

    if (file.empty()) return {};
    // Nobody's name: what comes is fontconfig's last resort.
    if (!named && file == FileOf(MatchStyle("\x01", false, false))) return {};
    for (const auto &[bold, italic] : {std::pair(false, false), {false, true}, {true, false}, {true, true}}) {
        const Pattern found = MatchStyle(name, bold, italic);
        const FontFile each = {FileOf(found), found && Number(found, FC_WEIGHT) >= FC_WEIGHT_DEMIBOLD,
                               found && Number(found, FC_SLANT) != FC_SLANT_ROMAN};
        const auto same = [&](const FontFile &other) { return other.file == each.file; };
        if (!each.file.empty() && std::none_of(files.begin(), files.end(), same)) files.push_back(each);
    }
    return files;
}

std::string FileOfStyle(unsigned style, bool italic)
{
    static const std::vector<const char *> families[] = {
        {},
        {"Courier Prime", "FreeMono", "Nimbus Mono PS", "Liberation Mono", "Courier New"},
        {"DejaVu Serif", "Noto Serif", "FreeSerif", "Liberation Serif", "Times New Roman"},
        {"DejaVu Sans Mono", "Noto Sans Mono", "Liberation Mono"},
        {"DejaVu Sans", "Noto Sans", "FreeSans", "Liberation Sans", "Arial"},
        {"Comic Neue", "Comic Relief", "Comic Sans MS"},
        {"Z003", "URW Chancery L", "Dancing Script", "Apple Chancery"},
        {"Alegreya Sans SC", "Alegreya SC", "Cormorant SC", "Carrois Gothic SC"}};

    if (style >= std::size(families)) return "";
    for (const char *const family : families[style]) {
        const Pattern found = MatchStyle(family, false, italic);
        if (!HasName(found, FC_FAMILY, family)) continue;
        const bool slanted = Number(found, FC_SLANT) != FC_SLANT_ROMAN;
        return slanted == italic ? FileOf(found) : "";
    }
    return "";
}

std::string ViewersFont(const ViewerSettings &settings)
{
    const bool chosen = settings.font <= KOVA_CAPTIONS_FONT_SMALL_CAPITALS;
    const unsigned style = chosen ? settings.font : unsigned(KOVA_CAPTIONS_FONT_DEFAULT);

    if (settings.fonts[style][0]) return settings.fonts[style];
    return chosen ? FileOfStyle(style, false) : "";
}

} // namespace caption
