// SPDX-License-Identifier: MIT
// Which font file draws which characters. FreeType answers whether a font has a character and how its lines
// are measured, fontconfig which other font has one; the drawing itself is the library's.
#ifndef KOVA_CAPTION_TEXT_FONTS_H
#define KOVA_CAPTION_TEXT_FONTS_H

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

// A line under or through letters.
struct Stroke {
    int top = 0; // pixels below the baseline; above it where negative
    int thickness = 0;
};

// A font file. Its definition is the fonts' own.
struct Face;
const std::string &FileOf(const Face &face);
Reach ReachOf(const Face &face, int height);
Stroke UnderlineOf(const Face &face, int height);
Stroke StrikeoutOf(const Face &face, int height);

// Whether its face draws an accent to the right of where it stands, though it takes no room there. False without
// a face.
bool IsDrawnRightwards(const Letter &accent);

class Fonts
{
public:
    enum class Reserve { MACHINE, NONE };

    // The fonts that the options name come first. With Reserve::MACHINE those that an ordinary machine has
    // follow, and whatever fontconfig finds for a character that is in none. A Failure where a named one
    // cannot be opened or none is left.
    explicit Fonts(const Options &options, Reserve reserve = Reserve::MACHINE);
    ~Fonts();
    Fonts(const Fonts &) = delete;
    Fonts &operator=(const Fonts &) = delete;

    // Finds a face for every letter: the first font that has them all, else the first that has all of a line,
    // else for each letter the first that has it.
    void Choose(std::vector<Letters> &lines);

    // What draws letters that no font has, and measures lines without any.
    const Face &First() const;

    // Characters met so far that no font has.
    const std::set<char32_t> &Missing() const
    {
        return missing_;
    }

    // Fonts met so far that should have drawn bold letters and have no bold file.
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
    const Family *WithAll(const Letters &letters) const;
    void Assign(Letter &letter, const Face *face);
    void ChooseForEach(Letters &letters);

    struct DoneLibrary {
        void operator()(FT_LibraryRec_ *library) const;
    };

    Reserve reserve_;
    std::unique_ptr<FT_LibraryRec_, DoneLibrary> library_; // before the faces, which must go first
    std::vector<std::unique_ptr<Family>> families_;
    std::set<char32_t> missing_;
    std::set<std::string> withoutBold_;
};

} // namespace caption

#endif
