#include "ass_text.h"

#include <cstdlib>

namespace caption
{

namespace
{

struct State {
    bool italic = false;
    bool drawing = false;
};

} // namespace

// One block of tags, what stands between braces: \i1, \i0, \p1 and \r count. A tag is its name and a number,
// so \iclip and \pos are others.
static void ReadTags(const std::string &tags, State &state)
{
    for (std::size_t at = tags.find('\\'); at != std::string::npos; at = tags.find('\\', at + 1)) {
        const std::size_t end = tags.find('\\', at + 1);
        const std::string tag = tags.substr(at + 1, end == std::string::npos ? end : end - at - 1);
        const bool numbered = tag.size() == 1 || (tag.size() > 1 && tag[1] >= '0' && tag[1] <= '9');
        const int number = std::atoi(tag.c_str() + (tag.empty() ? 0 : 1));

        if (!tag.empty() && tag[0] == 'i' && numbered) state.italic = number != 0;
        if (!tag.empty() && tag[0] == 'p' && numbered) state.drawing = number != 0;
        if (!tag.empty() && tag[0] == 'r' && tag.compare(0, 3, "rnd") != 0) state.italic = false;
    }
}

std::vector<Line> FromAss(const std::string &text)
{
    static const std::string hardSpace = "\xC2\xA0";
    static const std::string wordJoiner = "\xE2\x81\xA0"; // stands after a backslash that is meant as one
    std::vector<Line> lines(1);
    State state;

    for (std::size_t at = 0; at < text.size();) {
        const char next = at + 1 < text.size() ? text[at + 1] : '\0';
        const std::size_t close = text[at] == '{' ? text.find('}', at) : std::string::npos;
        std::string shown;

        if (close != std::string::npos) {
            ReadTags(text.substr(at + 1, close - at - 1), state);
            at = close + 1;
        } else if (text[at] == '\\' && next == 'N') {
            lines.emplace_back();
            at += 2;
        } else if (text[at] == '\\' && next == 'n') {
            shown = " ";
            at += 2;
        } else if (text[at] == '\\' && next == 'h') {
            shown = hardSpace;
            at += 2;
        } else if (text[at] == '\\' && (next == '{' || next == '}')) {
            shown = next;
            at += 2;
        } else if (text[at] == '\\' && text.compare(at + 1, wordJoiner.size(), wordJoiner) == 0) {
            shown = "\\";
            at += 1 + wordJoiner.size();
        } else {
            if (text[at] != '\r' && text[at] != '\n') shown = text[at];
            ++at;
        }
        if (!state.drawing) Append(lines.back(), shown, {state.italic});
    }
    return lines;
}

} // namespace caption
