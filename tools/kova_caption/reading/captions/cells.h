// SPDX-License-Identifier: MIT
// The cells of a decoded caption channel or service become rows of text.
#ifndef KOVA_CAPTION_READING_CAPTIONS_CELLS_H
#define KOVA_CAPTION_READING_CAPTIONS_CELLS_H

#include <vector>

#include "kova/kova_captions.h"
#include "reading/cell_page.h"

namespace caption
{

// The grid of a CEA-608 channel, or a window of a CEA-708 service, as far as it shows text.
struct CaptionArea {
    int window = -1;           // 0 to 7; -1: CEA-608
    CellGrid grid = {};        // where its cells lie on the canvas
    std::vector<PageRow> rows; // those with text in reading order; never empty
    RowAlignment alignment = RowAlignment::LEFT;
    int rollUp = 0;       // rows of a roll-up window
    bool growing = false; // text appears as it is received, not at once

    bool operator==(const CaptionArea &other) const
    {
        return window == other.window && grid == other.grid && rows == other.rows &&
               alignment == other.alignment && rollUp == other.rollUp;
    }
};

// From the top of the screen to its bottom. Empty if no text is visible.
using CaptionScreen = std::vector<CaptionArea>;

CaptionScreen ReadScreen(const KovaCaptionsChannel &channel);

// The windows are those of the service, all eight.
CaptionScreen ReadScreen(const KovaCaptionsService &service, const KovaCaptionsWindow *windows);

} // namespace caption

#endif
