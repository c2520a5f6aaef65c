// SPDX-License-Identifier: MIT
#include "text/wrap.h"

#include <algorithm>

namespace caption
{

static Span WithoutSpaces(const Letters &letters, Span span)
{
    while (span.begin < span.end && IsSpace(letters[span.begin])) ++span.begin;
    while (span.begin < span.end && IsSpace(letters[span.end - 1])) --span.end;
    return span;
}

static int WidthOf(const Letters &letters, Span span, int enough, const Measure &measure)
{
    return measure(letters, WithoutSpaces(letters, span), enough);
}

static bool MayEndAt(const Letters &letters, std::size_t end)
{
    return end == letters.size() || letters[end].mayBreak;
}

static std::size_t AfterLetter(const Letters &letters, std::size_t at)
{
    do ++at;
    while (at < letters.size() && IsAccent(letters[at]));
    return at;
}

// The end of the row that starts at begin: after the last word that fits, or inside the first word.
static std::size_t EndOfRow(const Letters &letters, std::size_t begin, int maxWidth, const Measure &measure)
{
    const auto fits = [&](std::size_t end) {
        return WidthOf(letters, {begin, end}, maxWidth, measure) <= maxWidth;
    };
    std::size_t end = begin;

    for (std::size_t i = begin + 1; i <= letters.size(); ++i) {
        if (!MayEndAt(letters, i)) continue;
        if (!fits(i)) break;
        end = i;
    }
    if (end > begin) return end;
    for (end = AfterLetter(letters, begin); end < letters.size() && fits(AfterLetter(letters, end));) {
        end = AfterLetter(letters, end);
    }
    return end;
}

static std::vector<Span> Fill(const Letters &letters, int maxWidth, const Measure &measure)
{
    std::vector<Span> rows;

    for (std::size_t begin = 0; begin < letters.size();) {
        if (IsSpace(letters[begin])) {
            ++begin;
            continue;
        }
        const std::size_t end = EndOfRow(letters, begin, maxWidth, measure);
        rows.push_back(WithoutSpaces(letters, {begin, end}));
        begin = end;
    }
    return rows;
}

// The width of the widest part without a break opportunity.
static int WidestWord(const Letters &letters, int enough, const Measure &measure)
{
    int widest = 0;

    for (std::size_t begin = 0, i = 1; i <= letters.size(); ++i) {
        if (!MayEndAt(letters, i)) continue;
        widest = std::max(widest, WidthOf(letters, {begin, i}, enough, measure));
        begin = i;
    }
    return widest;
}

std::vector<Span> Wrap(const Letters &letters, int maxWidth, const Measure &measure)
{
    std::vector<Span> rows = Fill(letters, maxWidth, measure);

    if (rows.size() < 2) return rows;
    // The narrowest width that needs no more rows makes them about equally long. Below the width of the
    // widest word, that word would be broken.
    int tooNarrow = WidestWord(letters, maxWidth, measure) - 1;
    int enough = maxWidth;
    if (tooNarrow >= enough) return rows;
    while (enough - tooNarrow > 1) {
        const int width = tooNarrow + (enough - tooNarrow) / 2;
        if (Fill(letters, width, measure).size() > rows.size()) {
            tooNarrow = width;
        } else {
            enough = width;
        }
    }
    return Fill(letters, enough, measure);
}

} // namespace caption
