#include "fonts.h"

#include <cstring>

#include <ft2build.h>
#include FT_FREETYPE_H

#include "failure.h"
#include "utf8.h"

namespace caption
{

// With their italics and the user's own two fonts at most eight, which is what a display holds.
static const char *const g_usual[] = {
    "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
    "/usr/share/fonts/truetype/noto/NotoSans-Regular.ttf",
    "/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc",
    "/usr/share/fonts/truetype/noto/NotoSansSymbols2-Regular.ttf",
};

static const std::size_t g_longestName = 99; // what the library keeps of a font's name

struct Fonts::Face {
    std::string file;
    FT_Face face = nullptr;
    std::unique_ptr<Face> italic;

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

    const Face &For(bool italics) const
    {
        return italics && italic ? *italic : *this;
    }

    bool HasAll(const Line &line) const
    {
        for (const Run &run : line) {
            for (const Character &character : Characters(run.text)) {
                if (!IsInvisible(character.code) && !For(run.style.italic).Has(character.code)) return false;
            }
        }
        return true;
    }
};

Fonts::Fonts(const std::string &named)
{
    FT_Library library = nullptr;

    if (FT_Init_FreeType(&library) != 0) throw Failure("FreeType did not start; is memory short?");
    library_.reset(library);
    if (named.size() > g_longestName) {
        throw Failure("--font " + named + ": longer than 99 characters; give a shorter path, or a link");
    }
    if (!named.empty() && !AddFamily(named)) {
        throw Failure("--font " + named + ": cannot be opened as a font; give a TrueType or OpenType file");
    }
    for (const char *const file : g_usual) AddFamily(file);
    if (families_.empty()) {
        throw Failure(
            "none of the usual fonts is here; install fonts-dejavu-core, or name one with --font FILE");
    }
}

Fonts::~Fonts() = default;

void Fonts::DoneLibrary::operator()(FT_LibraryRec_ *library) const
{
    FT_Done_FreeType(library);
}

std::unique_ptr<Fonts::Face> Fonts::Open(const std::string &file) const
{
    auto face = std::make_unique<Face>();

    if (file.empty() || FT_New_Face(library_.get(), file.c_str(), 0, &face->face) != 0) return nullptr;
    if (!FT_IS_SCALABLE(face->face)) return nullptr;
    FT_Select_Charmap(face->face, FT_ENCODING_UNICODE);
    face->file = file;
    return face;
}

// Where the italics of a font lie by the usual names: X-Regular.ttf has X-Italic.ttf, X.ttf X-Oblique.ttf.
static std::vector<std::string> ItalicsBeside(const std::string &upright)
{
    static const std::string regular = "-Regular";
    const std::size_t dot = upright.rfind('.');
    if (dot == std::string::npos) return {};

    std::string stem = upright.substr(0, dot);
    const std::string extension = upright.substr(dot);
    if (stem.size() > regular.size() &&
        stem.compare(stem.size() - regular.size(), regular.size(), regular) == 0) {
        stem.resize(stem.size() - regular.size());
    }
    std::vector<std::string> names;
    for (const char *const style : {"-Italic", "-Oblique", "Italic", "Oblique"}) {
        names.push_back(stem + style + extension);
    }
    return names;
}

bool Fonts::AddFamily(const std::string &upright)
{
    for (const auto &family : families_) {
        if (family->file == upright) return true;
    }
    std::unique_ptr<Face> face = Open(upright);

    if (!face) return false;
    for (const std::string &name : ItalicsBeside(upright)) {
        if (!face->italic && name.size() <= g_longestName) face->italic = Open(name);
    }
    families_.push_back(std::move(face));
    return true;
}

void Fonts::Prefer(const std::vector<Line> &lines)
{
    Line everything;

    for (const Line &line : lines) everything.insert(everything.end(), line.begin(), line.end());
    preferred_ = nullptr;
    for (const auto &family : families_) {
        if (!preferred_ && family->HasAll(everything)) preferred_ = family.get();
    }
}

std::vector<Piece> Fonts::Split(const Line &line)
{
    std::vector<Piece> pieces;

    std::vector<const Face *> candidates;

    if (preferred_) candidates.push_back(preferred_);
    for (const auto &family : families_) candidates.push_back(family.get());
    for (const Face *const family : candidates) {
        if (!family->HasAll(line)) continue;
        for (const Run &run : line) {
            pieces.push_back(
                {run.text, family->For(run.style.italic).file, run.style.italic && !family->italic});
        }
        return pieces;
    }
    for (const Run &run : line) {
        bool joins = false; // spaces stay with what stands before them
        for (const Character &character : Characters(run.text)) {
            const Face *chosen = nullptr;
            for (const auto &family : families_) {
                if (!chosen && family->For(run.style.italic).Has(character.code)) chosen = family.get();
            }
            if (!chosen) missing_.insert(character.code);
            if (!chosen) chosen = families_.front().get();
            const std::string &file = chosen->For(run.style.italic).file;
            if (joins && (pieces.back().font == file || IsSpace(character.code))) {
                pieces.back().text += character.text;
            } else {
                pieces.push_back({character.text, file, run.style.italic && !chosen->italic});
                joins = true;
            }
        }
    }
    return pieces;
}

// As DirectFB's font module sees it: the size set as an em of so many pixels, the metrics rounded as FreeType
// rounds them.
Reach Fonts::ReachOf(const std::string &font, int height) const
{
    for (const auto &family : families_) {
        for (const Face *face : {family.get(), family->italic.get()}) {
            if (!face || face->file != font) continue;
            FT_Set_Char_Size(face->face, 0, height * 64, 0, 0);
            const FT_Size_Metrics &metrics = face->face->size->metrics;
            return {int(metrics.ascender / 64), int(-metrics.descender / 64)};
        }
    }
    return {height, height / 4};
}

} // namespace caption
