// SPDX-License-Identifier: MIT
// The rows of a teletext page that libzvbi has decoded.
#ifndef KOVA_CAPTION_READING_TELETEXT_PAGE_H
#define KOVA_CAPTION_READING_TELETEXT_PAGE_H

#include <vector>

#include <libzvbi.h>

#include "base/notices.h"
#include "reading/cell_page.h"

namespace caption
{

std::vector<PageRow> ReadRows(const vbi_page &page, const CellGrid &grid, Notices &notices);

} // namespace caption

#endif
