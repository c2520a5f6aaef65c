// SPDX-License-Identifier: MIT
// What captions may look like: the sheet for the menu of caption settings.
#ifndef KOVA_CAPTION_PREVIEW_H
#define KOVA_CAPTION_PREVIEW_H

#include <string>
#include <vector>

#include "options.h"
#include "picture.h"

namespace caption
{

// For each font, of the usual ones if none is named, every edge at three sizes in the eight colours of
// captions, over a dark, a bright and a busy background. Of the options the height, which is 100 %, and the
// colour of edges count.
Picture Preview(const std::vector<std::string> &fonts, const Options &options);

} // namespace caption

#endif
