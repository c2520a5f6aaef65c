// SPDX-License-Identifier: MIT
#include "drawing/edges.h"

#include <algorithm>

namespace caption
{

const EdgeOffsets &OffsetsOf(KovaTextEdgeType_e edge)
{
    static const EdgeOffsets none = {};
    static const EdgeOffsets raised = {{{0, -2}}, {2, 0}};
    static const EdgeOffsets depressed = {{{0, 1}, {1, 1}}, {0, 0}};
    static const EdgeOffsets uniform = {{{0, 1}, {2, 1}, {1, 0}, {1, 2}}, {1, 1}};
    static const EdgeOffsets leftShadow = {{{-2, 2}}, {0, 0}};
    static const EdgeOffsets rightShadow = {{{2, 2}}, {0, 0}};

    switch (edge) {
    case KOVA_TEXT_ERAISED:
        return raised;
    case KOVA_TEXT_EDEPRESSED:
        return depressed;
    case KOVA_TEXT_EUNIFORM:
        return uniform;
    case KOVA_TEXT_ELEFTDROPSHADOW:
        return leftShadow;
    case KOVA_TEXT_ERIGTHDROPSHADOW:
        return rightShadow;
    default:
        return none;
    }
}

Margins MarginsOf(KovaTextEdgeType_e edge)
{
    const EdgeOffsets &offsets = OffsetsOf(edge);
    Margins margins;
    const auto include = [&margins](Offset offset) {
        margins.left = std::max(margins.left, -offset.x);
        margins.top = std::max(margins.top, -offset.y);
        margins.right = std::max(margins.right, offset.x);
        margins.bottom = std::max(margins.bottom, offset.y);
    };

    include(offsets.text);
    for (const Offset offset : offsets.edge) include(offset);
    return margins;
}

} // namespace caption
