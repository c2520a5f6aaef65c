// SPDX-License-Identifier: MIT
#include "text/visual_order.h"

#include <algorithm>
#include <new>

#include <fribidi.h>

#include "text/fonts.h"

namespace caption
{

// Fonts place accents by tables that DirectFB does not read. Without them most accents are drawn leftwards,
// over the letter before; those of right-to-left scripts are drawn rightwards, over the letter that follows.
static void PutAccentsToTheirSide(Letters &visual)
{
    for (auto letter = visual.begin(); letter != visual.end();) {
        const auto next = std::find_if_not(letter + 1, visual.end(), IsAccent);
        const auto after = std::stable_partition(letter + 1, next, IsDrawnRightwards);
        std::rotate(letter, letter + 1, after);
        letter = next;
    }
}

Letters InVisualOrder(const Letters &letters, std::size_t begin, std::size_t end)
{
    const auto length = FriBidiStrIndex(end - begin);
    std::vector<FriBidiCharType> kinds;
    std::vector<FriBidiLevel> levels;
    std::vector<FriBidiStrIndex> order;
    Letters visual;

    for (std::size_t i = begin; i < end; ++i) {
        kinds.push_back(letters[i].kind);
        levels.push_back(letters[i].level);
        order.push_back(FriBidiStrIndex(i));
    }
    // NOLINTNEXTLINE(misc-redundant-expression): the default has some of its own flags twice
    if (fribidi_reorder_line(FRIBIDI_FLAGS_DEFAULT | FRIBIDI_FLAG_REORDER_NSM, kinds.data(), length, 0,
                             FRIBIDI_PAR_LTR, levels.data(), nullptr, order.data()) == 0) {
        throw std::bad_alloc();
    }
    for (const FriBidiStrIndex i : order) visual.push_back(letters[std::size_t(i)]);
    PutAccentsToTheirSide(visual);
    return visual;
}

} // namespace caption
