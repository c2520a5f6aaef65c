// SPDX-License-Identifier: MIT
// A display that is only a table: it records the calls and keeps pixels, without DirectFB. As on layers 2 and 3, drawing
// goes to a back buffer, a flip shows it, and Blit reads what was flipped last. Letters are boxes whose width depends on
// the character, so that tests can tell where text is and in which colour.
#ifndef KOVA_TESTS_CAPTIONS_DRAWING_FAKE_DISPLAY_H
#define KOVA_TESTS_CAPTIONS_DRAWING_FAKE_DISPLAY_H

#include "kova/kova_textdisp.h"

#include <array>
#include <cstdint>
#include <iosfwd>
#include <set>
#include <string>
#include <vector>

struct Box {
    int left, top, right, bottom; // right and bottom are exclusive

    bool operator==(const Box &other) const
    {
        return left == other.left && top == other.top && right == other.right && bottom == other.bottom;
    }
    bool IsEmpty() const
    {
        return right <= left || bottom <= top;
    }
};
std::ostream &operator<<(std::ostream &stream, const Box &box);

// A string as DrawString got it, with the state that drew it.
struct DrawnText {
    std::string text;
    std::string font;
    int x, y;
    unsigned height;
    bool italics;
    // Of the whole string, in pixels.
    int width;
    kova_uint32 color, edge_color;
    int edge;
    kova_uint32 scale;
    int bytes;
};

class FakeDisplay
{
public:
    FakeDisplay(int width, int height);
    FakeDisplay(const FakeDisplay &) = delete;
    FakeDisplay &operator=(const FakeDisplay &) = delete;

    pKovaITextDisplay_t operator*()
    {
        return &m_own.table;
    }

    /* ---- what happened; Forget starts again, pixels stay ---- */

    void Forget();
    int flips = 0, fills = 0, strings = 0, blits = 0, palettes = 0, openings = 0;
    std::vector<DrawnText> texts;
    std::vector<Box> filled;
    std::vector<Box> clips;
    // "SetPalette 129+64" and so on, in order.
    std::vector<std::string> calls;
    // The smallest rectangle around all pixels that drawing wrote, changed or not.
    Box touched;

    /* ---- what is seen ---- */

    kova_uint32 Back(int x, int y) const;
    kova_uint32 Front(int x, int y) const;
    std::vector<kova_uint32> Screen() const;
    // As colours 0xRRGGBBAA, through the palette of this moment.
    std::vector<std::uint32_t> Colors() const;
    std::uint32_t ColorAt(int x, int y) const;
    KovaTextColor_t palette[256] = {};
    // Around all pixels of the screen with this value; or with another than 0.
    Box Around(kova_uint32 value) const;
    Box Ink() const;
    int Count(kova_uint32 value, const Box &box) const;

    /* ---- how it behaves ---- */

    // Font files that cannot be opened.
    std::set<std::string> missing;
    // Where not 0, GetUnderlineInfo returns it; DirectFB as published returns 0.
    int underline_top = 1, underline_thickness = 2;
    // Layer 1: every string, line and copy flips.
    bool flips_always = false;

    void Erase(); // what an activation or Show leaves: an empty plane, no selection

private:
    struct Font {
        std::string name;
        kova_uint32 height = 0;
        KovaTextFontAttr_e attributes = KOVA_FONTATTR_NONE;
        kova_uint32 scale = 65536;
    };
    static FakeDisplay &Self(pKovaITextDisplay_t table);
    void Write(int x, int y, kova_uint32 value);
    void WriteBox(Box box, kova_uint32 value);
    int Advance(unsigned character) const;
    void Letters(const std::string &text, int x, int y, kova_uint32 value);
    void Flip();
    void FillOperations();

    // The table comes first: a pointer to it is a pointer to this.
    struct Own {
        KovaITextDisplay_t table;
        FakeDisplay *display;
    };
    Own m_own = {};
    int m_width, m_height;
    std::vector<kova_uint32> m_back, m_front;
    Box m_clip;
    bool m_flip = true, m_changed = false;
    std::array<Font, 8> m_fonts;
    std::set<std::string> m_names;
    int m_selected = -1;
    kova_uint32 m_color = 0, m_edge_color = 0;
    KovaTextEdgeType_e m_edge = KovaTextEdgeType_e(0);
};

// The characters of UTF-8 text.
std::vector<unsigned> CharactersOf(const std::string &text);

#endif
