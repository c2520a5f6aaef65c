// SPDX-License-Identifier: MIT
// Text in any character set becomes UTF-8.
#ifndef KOVA_CAPTION_READING_CHARSET_H
#define KOVA_CAPTION_READING_CHARSET_H

#include <string>

#include "base/notices.h"

namespace caption
{

// Whether the beginning of a file may be that of a text file, in whatever character set.
bool LooksLikeText(const std::string &head);

// The set is the named one; without a name it is told by a byte order mark, by the bytes being nothing else
// than UTF-8, UTF-16 or UTF-32, or guessed, which is noticed. Bytes that mean nothing in it, and NULs, become
// U+FFFD, which is noticed with their line. A name that iconv does not know is a Failure.
std::string ToUtf8(const std::string &bytes, const std::string &charset, Notices &notices);

// The same for a piece of text that stands at a place ("the cue at 00:00:01.000"). UTF-8 without a name.
std::string PieceToUtf8(const std::string &bytes, const std::string &charset, const std::string &place,
                        Notices &notices);

} // namespace caption

#endif
