#include "wrap.h"

#include <algorithm>

#include "utf8.h"

namespace caption
{

namespace
{

struct Letter {
    char32_t code;
    std::string text;
    Style style;
};

using Letters = std::vector<Letter>;

} // namespace

static Letters Spread(const Line &line)
{
    Letters letters;

    for (const Run &run : line) {
        for (const Character &character : Characters(run.text)) {
            if (character.code == '\t') {
                letters.push_back({' ', " ", run.style});
            } else if (!IsInvisible(character.code)) {
                letters.push_back({character.code, character.text, run.style});
            }
        }
    }
    return letters;
}

// The letters from begin to end as a line, without the spaces at its ends.
static Line Gather(const Letters &letters, std::size_t begin, std::size_t end)
{
    Line line;

    while (begin < end && IsSpace(letters[begin].code)) ++begin;
    while (begin < end && IsSpace(letters[end - 1].code)) --end;
    for (std::size_t i = begin; i < end; ++i) Append(line, letters[i].text, letters[i].style);
    return line;
}

// Where the line that starts at begin ends: after the last word that fits, or inside the first.
static std::size_t EndOfLine(const Letters &letters, std::size_t begin, int maxWidth, const Measure &measure)
{
    const auto fits = [&](std::size_t end) { return measure(Gather(letters, begin, end)) <= maxWidth; };
    std::size_t end = begin;

    for (std::size_t i = begin + 1; i <= letters.size(); ++i) {
        if (i < letters.size() && !MayBreakBetween(letters[i - 1].code, letters[i].code)) continue;
        if (!fits(i)) break;
        end = i;
    }
    if (end > begin) return end;
    for (end = begin + 1; end < letters.size() && fits(end + 1);) ++end;
    return end;
}

static std::vector<Line> Fill(const Letters &letters, int maxWidth, const Measure &measure)
{
    std::vector<Line> lines;

    for (std::size_t begin = 0; begin < letters.size();) {
        if (IsSpace(letters[begin].code)) {
            ++begin;
            continue;
        }
        const std::size_t end = EndOfLine(letters, begin, maxWidth, measure);
        lines.push_back(Gather(letters, begin, end));
        begin = end;
    }
    return lines;
}

// The widest stretch in which no line may break.
static int WidestWord(const Letters &letters, const Measure &measure)
{
    int widest = 0;

    for (std::size_t begin = 0, i = 1; i <= letters.size(); ++i) {
        if (i < letters.size() && !MayBreakBetween(letters[i - 1].code, letters[i].code)) continue;
        widest = std::max(widest, measure(Gather(letters, begin, i)));
        begin = i;
    }
    return widest;
}

std::vector<Line> Wrap(const Line &line, int maxWidth, const Measure &measure)
{
    const Letters letters = Spread(line);
    std::vector<Line> lines = Fill(letters, maxWidth, measure);

    if (lines.size() < 2) return lines;
    // The narrowest width that takes no more lines makes them about equally long; narrower than its widest
    // word it would break that word.
    int tooNarrow = WidestWord(letters, measure) - 1;
    int enough = maxWidth;
    if (tooNarrow >= enough) return lines;
    while (enough - tooNarrow > 1) {
        const int width = tooNarrow + (enough - tooNarrow) / 2;
        if (Fill(letters, width, measure).size() > lines.size()) {
            tooNarrow = width;
        } else {
            enough = width;
        }
    }
    return Fill(letters, enough, measure);
}

} // namespace caption
