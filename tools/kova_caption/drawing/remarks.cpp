// SPDX-License-Identifier: MIT
#include "drawing/remarks.h"

#include "base/utf8.h"

namespace caption
{

std::vector<std::string> Remarks::On(const Drawn &drawn, const Fonts &fonts)
{
    std::vector<std::string> remarks = drawn.notices;
    std::string codes;
    int count = 0;

    if (drawn.left > 0) {
        remarks.push_back(std::to_string(drawn.left) + " of " + std::to_string(drawn.left + drawn.lines) +
                          " lines do not fit and are omitted; use a smaller --height");
    }
    if (drawn.unjoined && !unjoined_) {
        unjoined_ = true;
        remarks.push_back(
            "this script needs complex shaping, which is not supported; its letters are drawn one by one");
    }
    if (drawn.opaque && !opaque_) {
        opaque_ = true;
        remarks.push_back("translucent text or edges are drawn opaque in this colour mode; use --mode index");
    }
    for (const std::string &font : fonts.NotInstalled()) {
        if (notInstalled_.insert(font).second) {
            remarks.push_back("font " + Printable(font) + " is not installed; the default font is used");
        }
    }
    for (const char32_t code : fonts.Missing()) {
        if (!missing_.insert(code).second) continue;
        codes += " " + CodeName(code);
        ++count;
    }
    if (count > 0) {
        remarks.push_back((count == 1 ? "missing glyph" : "missing glyphs") + codes +
                          "; add a font with --fallback");
    }
    for (const std::string &font : fonts.WithoutBold()) {
        if (withoutBold_.insert(font).second) {
            remarks.push_back("bold is not available: no bold font file next to " + font);
        }
    }
    return remarks;
}

} // namespace caption
