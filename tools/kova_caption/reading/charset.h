// SPDX-License-Identifier: MIT
// Converts text of any character set to UTF-8.
#ifndef KOVA_CAPTION_READING_CHARSET_H
#define KOVA_CAPTION_READING_CHARSET_H

#include <string>

#include "base/notices.h"

namespace caption
{

// Whether a file that begins like this may be text, in any character set.
bool LooksLikeText(const std::string &head);

// Converts from the named character set. Without a name it is found from a byte order mark, from bytes that
// are valid UTF-8, UTF-16 or UTF-32, or guessed, with a notice. Invalid bytes and NULs become U+FFFD, with a
// notice that gives their line. Throws WrongUsage for a name that iconv does not know.
std::string ToUtf8(const std::string &bytes, const std::string &charset, Notices &notices);

// The same for a piece of text; `place` ("the cue at 00:00:01.000") is named in notices. Without a name it is
// UTF-8.
std::string PieceToUtf8(const std::string &bytes, const std::string &charset, const std::string &place,
                        Notices &notices);

} // namespace caption

#endif
