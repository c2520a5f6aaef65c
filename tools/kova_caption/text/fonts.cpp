// SPDX-License-Identifier: MIT
#include "text/fonts.h"

#include <algorithm>
#include <cmath>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H

#include "base/failure.h"
#include "text/font_files.h"

namespace caption
{

static const char *const g_usual[] = {
    "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
    "/usr/share/fonts/truetype/noto/NotoSans-Regular.ttf",
    "/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc",
    "/usr/share/fonts/truetype/noto/NotoSansSymbols2-Regular.ttf",
};

static const std::size_t g_mostNames = 64;

struct Face {
    std::string file;
    FT_Face face = nullptr;
    bool bold = false;
    bool italic = false;

    Face() = default;
    Face(const Face &) = delete;
    Face &operator=(const Face &) = delete;
    ~Face()
    {
        FT_Done_Face(face);
    }

    bool Has(char32_t code) const
    {
        return FT_Get_Char_Index(face, code) != 0;
    }
};

struct Fonts::Family {
    std::vector<std::unique_ptr<Face>> faces; // the upright one first

    // The face closest to the style among those that have the character.
    const Face *For(const Style &style, char32_t code) const
    {
        const auto likeness = [&style](const Face &face) {
            return 2 * (face.bold == style.bold) + (face.italic == style.italic);
        };
        const Face *best = nullptr;

        for (const auto &face : faces) {
            if (face->Has(code) && (!best || likeness(*face) > likeness(*best))) best = face.get();
        }
        return best;
    }
};

Fonts::Fonts(const Options &options, Reserve reserve) : reserve_(reserve)
{
    FT_Library library = nullptr;
    const std::string viewers = ViewersFont(options.viewer);

    if (FT_Init_FreeType(&library) != 0) throw Failure("FreeType could not be initialised; free some memory");
    library_.reset(library);
    if (!viewers.empty()) Add("the settings' font", viewers);
    if (!options.font.empty()) Add("--font", options.font);
    for (const std::string &file : options.fallbacks) Add("--fallback", file);
    if (reserve == Reserve::MACHINE) {
        for (const char *const file : g_usual) AddFamily(file);
        if (families_.empty()) FindInMachine(U'a');
    }
    if (families_.empty()) {
        throw Failure("no font found; install fonts-dejavu-core, or give a font with --font");
    }
}

Fonts::~Fonts() = default;

void Fonts::DoneLibrary::operator()(FT_LibraryRec_ *library) const
{
    FT_Done_FreeType(library);
}

void Fonts::Add(const std::string &option, const std::string &file)
{
    if (!AddFamily(file)) {
        throw Failure(option + " " + file + ": not a usable font; give a TrueType or OpenType file");
    }
}

std::unique_ptr<Face> Fonts::Open(const std::string &file) const
{
    auto face = std::make_unique<Face>();

    if (FT_New_Face(library_.get(), file.c_str(), 0, &face->face) != 0) return nullptr;
    if (!FT_IS_SCALABLE(face->face)) return nullptr;
    FT_Select_Charmap(face->face, FT_ENCODING_UNICODE);
    face->file = file;
    return face;
}

// The file of another style by the usual naming: X-Regular.ttf has X-Italic.ttf, X.ttf has X-Oblique.ttf.
static std::string StyleFile(const std::string &upright, const std::string &style)
{
    static const std::string regular = "-Regular";
    const std::size_t dot = upright.rfind('.');
    if (dot == std::string::npos) return upright + style;

    std::string stem = upright.substr(0, dot);
    if (stem.size() > regular.size() &&
        stem.compare(stem.size() - regular.size(), regular.size(), regular) == 0) {
        stem.resize(stem.size() - regular.size());
    }
    return stem + style + upright.substr(dot);
}

bool Fonts::AddFamily(const std::string &upright)
{
    static const struct {
        const char *name;
        bool bold;
        bool italic;
    } styles[] = {{"-Italic", false, true},
                  {"-Oblique", false, true},
                  {"-Bold", true, false},
                  {"-BoldItalic", true, true},
                  {"-BoldOblique", true, true}};
    const auto hasFile = [&](const auto &family) { return family->faces.front()->file == upright; };

    if (std::any_of(families_.begin(), families_.end(), hasFile)) return true;
    auto family = std::make_unique<Family>();
    family->faces.push_back(Open(upright));
    if (!family->faces.front()) return false;
    for (const auto &style : styles) {
        std::unique_ptr<Face> face = Open(StyleFile(upright, style.name));
        if (!face) continue;
        face->bold = style.bold;
        face->italic = style.italic;
        family->faces.push_back(std::move(face));
    }
    families_.push_back(std::move(family));
    return true;
}

void Fonts::FindInMachine(char32_t code)
{
    const std::string file = FileWith(code);
    if (!file.empty()) AddFamily(file);
}

const Face &Fonts::First() const
{
    return *families_.front()->faces.front();
}

// The family of a source's font, or null where the machine has none of that name. A source with countless names
// would take as many searches, so only the first ones are looked for.
const Fonts::Family *Fonts::Named(const Interned &name)
{
    if (name.empty() || reserve_ == Reserve::NONE) return nullptr;
    const auto known = named_.find(name);
    if (known != named_.end()) return known->second.get();
    if (named_.size() >= g_mostNames) return nullptr;
    const auto family = named_.try_emplace(name).first;

    auto found = std::make_unique<Family>();
    for (const FontFile &file : FilesOfFamily(name.text())) {
        std::unique_ptr<Face> face = Open(file.file);
        if (!face) continue;
        face->bold = file.bold;
        face->italic = file.italic;
        found->faces.push_back(std::move(face));
    }
    if (found->faces.empty()) {
        notInstalled_.insert(name.text());
    } else {
        family->second = std::move(found);
    }
    return family->second.get();
}

const Fonts::Family *Fonts::WithAll(const Letters &letters) const
{
    for (const auto &family : families_) {
        if (std::all_of(letters.begin(), letters.end(), [&](const Letter &letter) {
                return family->For(letter.style, letter.code) != nullptr;
            })) {
            return family.get();
        }
    }
    return nullptr;
}

void Fonts::Assign(Letter &letter, const Face *face)
{
    letter.face = face;
    letter.slanted = letter.style.italic && !face->italic;
    if (letter.style.bold && !face->bold) withoutBold_.insert(face->file);
}

void Fonts::ChooseForEach(Letters &letters)
{
    for (std::size_t i = 0; i < letters.size(); ++i) {
        Letter &letter = letters[i];
        const Letter *const before = i > 0 ? &letters[i - 1] : nullptr;
        const Face *chosen = nullptr;

        if (const Family *const named = Named(letter.style.font))
            chosen = named->For(letter.style, letter.code);
        // Spaces and accents use the font of the letter before them.
        if (!chosen && before && before->style == letter.style && (IsSpace(letter) || IsAccent(letter)) &&
            before->face->Has(letter.code)) {
            chosen = before->face;
        }
        for (const auto &family : families_) {
            if (!chosen) chosen = family->For(letter.style, letter.code);
        }
        Assign(letter, chosen ? chosen : &First());
    }
}

void Fonts::Choose(std::vector<Letters> &lines)
{
    Letters everything;

    for (const Letters &line : lines) everything.insert(everything.end(), line.begin(), line.end());
    for (const Letter &letter : everything) {
        const auto has = [&](const auto &family) { return family->For(letter.style, letter.code); };
        const Family *const named = Named(letter.style.font);
        if (named && named->For(letter.style, letter.code)) continue;
        if (missing_.count(letter.code) || std::any_of(families_.begin(), families_.end(), has)) continue;
        if (reserve_ == Reserve::MACHINE) FindInMachine(letter.code);
        if (!has(families_.back())) missing_.insert(letter.code);
    }
    const auto named = [this](const Letter &letter) { return Named(letter.style.font) != nullptr; };
    const bool anyNamed = std::any_of(everything.begin(), everything.end(), named);
    const Family *const one = anyNamed ? nullptr : WithAll(everything);
    for (Letters &line : lines) {
        const Family *const family = one || anyNamed ? one : WithAll(line);
        if (!family) {
            ChooseForEach(line);
            continue;
        }
        for (Letter &letter : line) Assign(letter, family->For(letter.style, letter.code));
    }
}

const std::string &FileOf(const Face &face)
{
    return face.file;
}

// As DirectFB's font module measures: the size is the em in pixels, and metrics are rounded as FreeType
// rounds them.
Reach ReachOf(const Face &face, int height)
{
    FT_Set_Char_Size(face.face, 0, FT_F26Dot6(height) * 64, 0, 0);
    const FT_Size_Metrics &metrics = face.face->size->metrics;
    return {int(metrics.ascender / 64), int(-metrics.descender / 64)};
}

// The source's size is that of a line, from the ascent of the font to its descent as Windows measures them. The
// display's is the em.
int HeightOf(const Letter &letter, const Options &options)
{
    const Style &style = letter.style;
    if (style.line <= 0 || !letter.face) return options.TextHeight(style.scale);

    const FT_Face face = letter.face->face;
    const auto *const table = static_cast<const TT_OS2 *>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
    const int measured = table ? table->usWinAscent + table->usWinDescent : 0;
    const int line = measured > 0 ? measured : std::max(1, face->ascender - face->descender);
    return options.Enlarged(double(style.line) * double(style.scale) * options.plane.height *
                            face->units_per_EM / line);
}

bool IsDrawnRightwards(const Letter &accent)
{
    if (!accent.face) return false;
    const FT_Face face = accent.face->face;
    if (FT_Load_Glyph(face, FT_Get_Char_Index(face, accent.code), FT_LOAD_NO_SCALE) != 0) return false;
    const FT_Glyph_Metrics &metrics = face->glyph->metrics;
    return metrics.horiAdvance == 0 && metrics.horiBearingX + metrics.width / 2 > 0;
}

static int Scaled(const Face &face, int height, double units)
{
    return int(std::lround(units * height / face.face->units_per_EM));
}

Stroke UnderlineOf(const Face &face, int height)
{
    const double thickness = face.face->underline_thickness;
    // FreeType returns the middle of the line, and upwards is positive.
    return {Scaled(face, height, -face.face->underline_position - thickness / 2),
            std::max(1, Scaled(face, height, thickness))};
}

Stroke StrikeoutOf(const Face &face, int height)
{
    const auto *const table = static_cast<const TT_OS2 *>(FT_Get_Sfnt_Table(face.face, FT_SFNT_OS2));
    if (!table) return {-height / 4, std::max(1, height / 16)};
    return {Scaled(face, height, -table->yStrikeoutPosition),
            std::max(1, Scaled(face, height, table->yStrikeoutSize))};
}

} // namespace caption
