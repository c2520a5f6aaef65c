// SPDX-License-Identifier: MIT
// How costs grow: measured at several sizes in turns. A straight line is fitted to the minimum of each size,
// because the load of the machine only adds to it.
#include "fixture.h"

#include "page.h"

#include <algorithm>
#include <cmath>

namespace bench
{

struct Point_t {
    double fSize, fSeconds;
};

// "slope" and "intercept" are in nanoseconds; "off" is the largest deviation from the line in percent of the
// largest cost.
static void FitLine(benchmark::State &state, const std::vector<Point_t> &points)
{
    double fN = double(points.size()), fX = 0, fY = 0, fXX = 0, fXY = 0, fOff = 0, fLargest = 0;

    for (const Point_t &p : points) {
        fX += p.fSize;
        fY += p.fSeconds;
        fXX += p.fSize * p.fSize;
        fXY += p.fSize * p.fSeconds;
    }
    const double fSlope = (fN * fXY - fX * fY) / (fN * fXX - fX * fX), fIntercept = (fY - fSlope * fX) / fN;
    for (const Point_t &p : points) {
        fOff = std::fmax(fOff, std::fabs(p.fSeconds - fIntercept - fSlope * p.fSize));
        fLargest = std::fmax(fLargest, p.fSeconds);
    }
    state.counters["slope"] = fSlope * 1e9;
    state.counters["intercept"] = fIntercept * 1e9;
    state.counters["smallest"] = points.front().fSeconds * 1e9;
    state.counters["largest"] = points.back().fSeconds * 1e9;
    state.counters["off"] = 100 * fOff / fLargest;
}

// "prepare" is called with the size before each measurement and is not timed.
template <typename Prepare, typename Candidate>
static void Grow(benchmark::State &state, const std::vector<double> &sizes, Prepare prepare,
                 Candidate candidate)
{
    std::vector<std::vector<double>> times(sizes.size());
    std::vector<Point_t> points;

    for (auto _ : state) {
        double fRound = 0;
        for (size_t i = 0; i < sizes.size(); i++) {
            prepare(sizes[i]);
            candidate(sizes[i]); // warms the caches after the preparation
            const int iCalls = 8;
            const double fSeconds = SecondsOf(iCalls, [&] { candidate(sizes[i]); });
            times[i].push_back(fSeconds / iCalls);
            fRound += fSeconds;
        }
        state.SetIterationTime(fRound);
    }
    for (size_t i = 0; i < sizes.size(); i++)
        points.push_back({sizes[i], *std::min_element(times[i].begin(), times[i].end())});
    FitLine(state, points);
}

static void StringLength(benchmark::State &state, KovaTextEdgeType_e eEdge)
{
    Display display(PALETTE);
    std::string text;

    while (text.size() < 127) text += "The quick brown fox jumps over a lazy dog. ";
    display.OpenFont(0, 16); // the longest string must fit the plane
    display->SetEdgeType(display, 0, eEdge);
    Grow(
        state, {1, 2, 4, 8, 16, 32, 64, 96, 127}, [](double) {},
        [&](double fLength) {
            display->DrawString(display, 0, reinterpret_cast<const unsigned short *>(text.data()),
                                kova_uint8(fLength), 10, 500, KOVA_TEXT_UTF8, KOVA_TEXT_LEFT);
        });
}

static void BatchLength(benchmark::State &state)
{
    Display display(INDEX);
    Cells cells(TELETEXT);

    Grow(
        state, {1, 5, 10, 25, 50, 75, 100}, [](double) {},
        [&](double fGlyphs) { cells.DrawBatch(display, 0, kova_uint8(fGlyphs)); });
}

// Opens the fonts again under their names, as an activation does, with a different height each time.
static void FontsOpened(benchmark::State &state)
{
    Display display(PALETTE);
    kova_uint32 uiHeight = 40;

    Grow(
        state, {1, 2, 3, 4, 5, 6, 7, 8}, [](double) {},
        [&](double fFonts) {
            uiHeight = 81 - uiHeight;
            for (int i = 0; i < int(fFonts); i++) display.OpenFont(i, uiHeight);
        });
}

static void PlaneArea(benchmark::State &state)
{
    Display display(PALETTE);

    Grow(
        state, {1, 2, 4, 9, 16, 25, 36}, // units of 320 by 180
        [&](double fArea) {
            const double fSide = std::sqrt(fArea);
            display->SetPlane(display, 0, 0, 0, kova_uint32(320 * fSide), kova_uint32(180 * fSide));
        },
        [&](double) { display->Show(display, 0); });
}

static void RegisterGrowth(const char *pcName, int iRounds, void (*pFunction)(benchmark::State &))
{
    const std::string name = std::string("growth//") + pcName;
    benchmark::RegisterBenchmark(name.c_str(), pFunction)
        ->Iterations(Rounds() < iRounds ? Rounds() : iRounds)
        ->UseManualTime();
}

static const int s_registered = [] {
    if (IsX11()) return 0;
    RegisterGrowth("string, no edge, by character", 101,
                   [](benchmark::State &state) { StringLength(state, KOVA_TEXT_ENONE); });
    RegisterGrowth("string, uniform edge, by character", 101,
                   [](benchmark::State &state) { StringLength(state, KOVA_TEXT_EUNIFORM); });
    RegisterGrowth("batch of teletext cells, by cell", 101, BatchLength);
    RegisterGrowth("fonts opened and selected, by font", 25, FontsOpened);
    RegisterGrowth("plane cleared, by 57,600 pixels", 5, PlaneArea);
    return 0;
}();

} // namespace bench
