// The text of ASS events, as libavcodec makes one of every text subtitle.
#ifndef KOVA_CAPTION_ASS_TEXT_H
#define KOVA_CAPTION_ASS_TEXT_H

#include <string>
#include <vector>

#include "cue.h"

namespace caption
{

// The lines of the text field of an ASS event. Understood are
// line breaks, hard spaces, italics and drawings (left out, being no text); other tags are passed over.
std::vector<Line> FromAss(const std::string &text);

} // namespace caption

#endif
