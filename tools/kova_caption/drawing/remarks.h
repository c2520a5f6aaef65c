// SPDX-License-Identifier: MIT
// Messages about a picture: what is drawn differently from what the source asks for.
#ifndef KOVA_CAPTION_DRAWING_REMARKS_H
#define KOVA_CAPTION_DRAWING_REMARKS_H

#include <set>
#include <string>
#include <vector>

#include "drawing/renderer.h"
#include "text/fonts.h"

namespace caption
{

class Remarks
{
public:
    // The messages about what was just drawn, without full stops. One that applies to several pictures is
    // returned for the first only.
    std::vector<std::string> On(const Drawn &drawn, const Fonts &fonts);

private:
    bool unjoined_ = false;
    bool opaque_ = false;
    std::set<std::string> notInstalled_;
    std::set<char32_t> missing_;
    std::set<std::string> withoutBold_;
};

} // namespace caption

#endif
