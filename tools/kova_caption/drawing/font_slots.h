// SPDX-License-Identifier: MIT
// The eight fonts that a display holds at a time. A ninth replaces the least recently used one.
#ifndef KOVA_CAPTION_DRAWING_FONT_SLOTS_H
#define KOVA_CAPTION_DRAWING_FONT_SLOTS_H

#include <cstdint>
#include <string>
#include <vector>

#include "kova/kova_textdisp.h"

namespace caption
{

// A display keeps the names of its fonts, eight at most, for its lifetime, and no operation removes a font
// for good. So the display gets eight constant names, /proc/self/fd/N, and the file behind a name changes
// while its font is closed. These names are also short, however long the file's own name is.
class FontSlots
{
public:
    FontSlots(pKovaITextDisplay_t display, kova_sint8 context);
    ~FontSlots();
    FontSlots(const FontSlots &) = delete;
    FontSlots &operator=(const FontSlots &) = delete;

    // Selects the font for the following strings. Throws Failure if DirectFB cannot open it.
    void Select(const std::string &file, int height, bool slanted);

private:
    struct Slot {
        int descriptor = -1;
        std::string file;
        int height = 0;
        bool slanted = false;
        kova_sint32 number = -1;
        std::uint64_t used = 0;
    };

    Slot &For(const std::string &file, int height, bool slanted);
    void Open(Slot &slot);
    kova_sint32 Create(const Slot &slot, int height);

    pKovaITextDisplay_t display_;
    kova_sint8 context_;
    std::vector<Slot> slots_;
    std::uint64_t clock_ = 0;
};

} // namespace caption

#endif
