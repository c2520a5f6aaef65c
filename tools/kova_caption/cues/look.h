// SPDX-License-Identifier: MIT
// What a source's styles become by the viewer's settings.
#ifndef KOVA_CAPTION_CUES_LOOK_H
#define KOVA_CAPTION_CUES_LOOK_H

#include <optional>

#include "base/options.h"
#include "cues/cue.h"

namespace caption
{

// The settings act on the source's colours, and on those of the options where it has none. They do not flash.
Style WithSettings(const Style &style, const Options &options);
Block WithSettings(Block block, const Options &options);

// The options with the kind of edge that the settings ask for.
Options WithSettings(Options options);

// What fills the rectangle of a block of text; none unless the viewer wants it.
std::optional<Color> WindowOf(const ViewerSettings &settings);

// A colour over another one.
Color Over(Color color, Color below);

} // namespace caption

#endif
