// SPDX-License-Identifier: MIT
// What a user should know of a picture: what is not as the source asks for it.
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
    // Of what was just drawn; what holds for more than one picture is said with the first. Without full
    // stops.
    std::vector<std::string> On(const Drawn &drawn, const Fonts &fonts);

private:
    bool unjoined_ = false;
    std::set<char32_t> missing_;
    std::set<std::string> withoutBold_;
};

} // namespace caption

#endif
