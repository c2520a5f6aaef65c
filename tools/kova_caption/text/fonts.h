// SPDX-License-Identifier: MIT
// Selects the font file for each character. FreeType tells whether a font has a character and how its lines
// are measured, fontconfig which other font has one. The library does the drawing.
#ifndef KOVA_CAPTION_TEXT_FONTS_H
#define KOVA_CAPTION_TEXT_FONTS_H

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "base/options.h"
#include "text/letters.h"

struct FT_LibraryRec_;

namespace caption
{

struct Reach {
    int ascent = 0;  // pixels above the baseline
    int descent = 0; // pixels below it
};

// An underline or a strikeout.
struct Stroke {
    int top = 0; // pixels below the baseline; above it where negative
    int thickness = 0;
};

// A font file. Defined in fonts.cpp.
struct Face;
const std::string &FileOf(const Face &face);
Reach ReachOf(const Face &face, int height);

// The text size of a letter in pixels, from its style, its font and the viewer's settings.
int HeightOf(const Letter &letter, const Options &options);
Stroke UnderlineOf(const Face &face, int height);
Stroke StrikeoutOf(const Face &face, int height);

// Whether its face draws an accent to the right of its position, though the accent has no width. False
// without a face.
bool IsDrawnRightwards(const Letter &accent);

class Fonts
{
public:
    enum class Reserve { MACHINE, NONE };

    // The fonts that the settings and the options name come first. With Reserve::MACHINE the default fonts
    // follow, and whatever fontconfig finds for a character that none of them has, and sources may name fonts.
    // Throws Failure if a named font cannot be opened, or if there is no font at all.
    explicit Fonts(const Options &options, Reserve reserve = Reserve::MACHINE);
    ~Fonts();
    Fonts(const Fonts &) = delete;
    Fonts &operator=(const Fonts &) = delete;

    // Assigns a face to every letter: from the first font that has all letters, else the first that has all
    // of a line, else for each letter the first that has it.
    void Choose(std::vector<Letters> &lines);

    // Draws letters that no font has, and measures empty lines.
    const Face &First() const;

    // Characters without a glyph in any font so far.
    const std::set<char32_t> &Missing() const
    {
        return missing_;
    }

    // Fonts that were asked for so far by a name that the machine does not know.
    const std::set<std::string> &NotInstalled() const
    {
        return notInstalled_;
    }

    // Fonts so far that have no bold file though bold letters need one.
    const std::set<std::string> &WithoutBold() const
    {
        return withoutBold_;
    }

private:
    struct Family;

    void Add(const std::string &option, const std::string &file);
    bool AddFamily(const std::string &upright);
    std::unique_ptr<Face> Open(const std::string &file) const;
    void FindInMachine(char32_t code);
    const Family *Named(const Interned &name);
    const Family *WithAll(const Letters &letters) const;
    void Assign(Letter &letter, const Face *face);
    void ChooseForEach(Letters &letters);

    struct DoneLibrary {
        void operator()(FT_LibraryRec_ *library) const;
    };

    Reserve reserve_;
    std::unique_ptr<FT_LibraryRec_, DoneLibrary> library_; // destroyed after the faces
    std::vector<std::unique_ptr<Family>> families_;
    std::map<Interned, std::unique_ptr<Family>> named_; // null where the machine does not know the name
    std::set<char32_t> missing_;
    std::set<std::string> notInstalled_;
    std::set<std::string> withoutBold_;
};

} // namespace caption

#endif
