// Which font file draws which characters. FreeType answers whether a font has a character, and how far it
// reaches above and below its baseline; the drawing itself is the library's.
#ifndef KOVA_CAPTION_FONTS_H
#define KOVA_CAPTION_FONTS_H

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "cue.h"

struct FT_LibraryRec_;
struct FT_FaceRec_;

namespace caption
{

// Text in one font.
struct Piece {
    std::string text;
    std::string font;     // file name
    bool slanted = false; // italic, but the font file is upright: DirectFB is asked to slant it
};

struct Reach {
    int ascent = 0;  // pixels above the baseline
    int descent = 0; // pixels below it
};

class Fonts
{
public:
    // The user's font first, if one is named, then those that an ordinary machine has. A Failure where the
    // named one cannot be opened or none is left.
    explicit Fonts(const std::string &named);
    ~Fonts();
    Fonts(const Fonts &) = delete;
    Fonts &operator=(const Fonts &) = delete;

    // Lines of one caption look alike: prefers, from now on, the first font that has all their characters.
    void Prefer(const std::vector<Line> &lines);

    // The whole line in the preferred or first font that has all its characters; where none has, each
    // character in the first that has it.
    std::vector<Piece> Split(const Line &line);

    Reach ReachOf(const std::string &font, int height) const;

    // Characters met so far that no font has.
    const std::set<char32_t> &Missing() const
    {
        return missing_;
    }

private:
    struct Face;

    bool AddFamily(const std::string &upright);
    std::unique_ptr<Face> Open(const std::string &file) const;

    struct DoneLibrary {
        void operator()(FT_LibraryRec_ *library) const;
    };

    std::unique_ptr<FT_LibraryRec_, DoneLibrary> library_; // before the faces, which must go first
    std::vector<std::unique_ptr<Face>> families_; // upright faces; an italic one hangs on its upright one
    const Face *preferred_ = nullptr;
    std::set<char32_t> missing_;
};

} // namespace caption

#endif
