// SPDX-License-Identifier: MIT
#include "drawing/remarks.h"

#include "base/utf8.h"

namespace caption
{

std::vector<std::string> Remarks::On(const Drawn &drawn, const Fonts &fonts)
{
    std::vector<std::string> remarks = drawn.notices;
    std::string codes;

    if (drawn.left > 0) {
        remarks.push_back(std::to_string(drawn.left) + " of " + std::to_string(drawn.left + drawn.lines) +
                          " lines found no room and are left out; a smaller --height shows more");
    }
    if (drawn.unjoined && !unjoined_) {
        unjoined_ = true;
        remarks.push_back(
            "its script joins or stacks letters in a way that is not done here: they stand one by "
            "one");
    }
    for (const char32_t code : fonts.Missing()) {
        if (missing_.insert(code).second) codes += " " + CodeName(code);
    }
    if (!codes.empty()) {
        remarks.push_back("no font here has" + codes + "; name one that has with --fallback FILE");
    }
    for (const std::string &font : fonts.WithoutBold()) {
        if (withoutBold_.insert(font).second) {
            remarks.push_back("its bold letters are not bold: there is no bold file beside " + font);
        }
    }
    return remarks;
}

} // namespace caption
