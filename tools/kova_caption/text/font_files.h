// SPDX-License-Identifier: MIT
// Finds font files by fontconfig. The library opens only the first face of a file, and DirectFB draws only
// outline fonts, so no others are found.
#ifndef KOVA_CAPTION_TEXT_FONT_FILES_H
#define KOVA_CAPTION_TEXT_FONT_FILES_H

#include <string>
#include <vector>

#include "base/viewer.h"

namespace caption
{

struct FontFile {
    std::string file;
    bool bold = false;
    bool italic = false;
};

// A font with the character; empty if there is none.
std::string FileWith(char32_t code);

// The files of a font, the upright one first, by the name of its family or by its full name. A font that
// fontconfig offers in its stead counts, but not the one that it offers for every name. Empty if there is none.
std::vector<FontFile> FilesOfFamily(const std::string &name);

// The file of a font style of closed captions (KovaCaptionsFont); empty: the default font, as nothing closer
// is installed. That of its italics is empty too if the font has none.
std::string FileOfStyle(unsigned style, bool italic);

// The file that the settings choose for all text; empty if they choose none.
std::string ViewersFont(const ViewerSettings &settings);

} // namespace caption

#endif
