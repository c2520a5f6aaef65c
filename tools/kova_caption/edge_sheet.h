// SPDX-License-Identifier: MIT
// One picture with every edge in every colour mode, enlarged until its pixels show.
#ifndef KOVA_CAPTION_EDGE_SHEET_H
#define KOVA_CAPTION_EDGE_SHEET_H

#include "options.h"
#include "picture.h"

namespace caption
{

// Of the options the font and the colours count; each colour mode gets a display of its own.
Picture EdgeSheet(const Options &options);

} // namespace caption

#endif
