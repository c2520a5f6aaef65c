// Caption text as it is drawn: lines of runs, a run being text of one style.
#ifndef KOVA_CAPTION_STYLED_TEXT_H
#define KOVA_CAPTION_STYLED_TEXT_H

#include <string>
#include <vector>

namespace caption
{

struct Run {
    std::string text; // UTF-8
    bool italic = false;

    bool operator==(const Run &other) const
    {
        return text == other.text && italic == other.italic;
    }
};

using Line = std::vector<Run>;

// Adds to the last run where the style is the same.
void Append(Line &line, const std::string &text, bool italic);

std::string PlainText(const Line &line);

// The lines of the text field of an ASS event, as libavcodec makes one of every text subtitle. Understood are
// line breaks, hard spaces, italics and drawings (left out, being no text); other tags are passed over.
std::vector<Line> FromAss(const std::string &text);

} // namespace caption

#endif
