// SPDX-License-Identifier: MIT
// The fixture of the benchmarks: a display to measure on, and the comparison with a baseline.
#ifndef BENCH_BED_H
#define BENCH_BED_H

#include "record.h"

#include "kova/kova_textdisp.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <string>
#include <vector>

namespace bench
{

constexpr kova_uint32 PLANE_WIDTH = 1920, PLANE_HEIGHT = 1080;
constexpr const char *FONT = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
constexpr kova_uint32 FONT_HEIGHT = 48;

enum Colors_e {
    INDEX,   // LUT8, one byte per pixel
    PALETTE, // ARGB, a colour is an index into the display's palette
    PACKED   // ARGB, a colour is 0xRRGGBBAA; not on layer 1
};

// Replaces the surface's Flip by a no-op: a flip costs the same whatever was drawn, and would hide all
// differences.
void Mute(IDirectFBSurface *pSurface);

// The display of the process, shown, with one active context and, by default, muted flips. The baselines draw
// on the same surface with direct DirectFB calls, and flip it through the same pointer.
class Display
{
public:
    explicit Display(Colors_e eColors, KovaGraphicLayer_e eLayer = KOVA_GRAPHIC_LAYER1, bool bMuted = true);
    ~Display();
    Display(const Display &) = delete;
    Display &operator=(const Display &) = delete;

    pKovaITextDisplay_t operator->() const
    {
        return m_pDisplay;
    }
    operator pKovaITextDisplay_t() const
    {
        return m_pDisplay;
    }
    KovaDFBDisplay_t *Record() const
    {
        return reinterpret_cast<KovaDFBDisplay_t *>(m_pDisplay);
    }
    IDirectFBSurface *Surface() const
    {
        return Record()->pActiveSurface;
    }
    // Opens the font under a separate name, so that it takes a separate slot, and selects it.
    kova_sint32 OpenFont(int iName = 0, kova_uint32 uiHeight = FONT_HEIGHT);

private:
    pKovaITextDisplay_t m_pDisplay;
};

// Keeps DirectFB initialised until the process ends; see docs/decisions/published_directfb.md.
IDirectFB *KeepDirectFB();

bool IsX11();
bool IsQuick();

// How often a candidate is measured, or a candidate and its baseline in turns.
int Rounds();

template <typename Candidate> double SecondsOf(int iCalls, Candidate candidate)
{
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < iCalls; i++) candidate();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The number of calls that take a third of a millisecond: long enough for the clock, and short enough that
// the load of the machine stays the same within a round.
template <typename Candidate> int CallsInABatch(Candidate candidate)
{
    int iCalls = 1;
    while (iCalls < 1 << 20 && SecondsOf(iCalls, candidate) < 0.0003) iCalls *= 2;
    return iCalls;
}

double Median(std::vector<double> values);
void SetComparison(benchmark::State &state, const std::vector<double> &times,
                   const std::vector<double> &baselineTimes);

// Runs the library and the baseline in turns, in batches, in alternating order. "ours" and "baseline" are the
// medians of the rounds in nanoseconds per call, "ratio" is the median of the ratios of the rounds: a
// slowdown of the machine that lasts longer than a round cancels out.
template <typename Ours, typename Baseline>
void CompareWith(benchmark::State &state, const char *pcBaseline, Ours ours, Baseline baseline)
{
    const int iCalls = CallsInABatch(ours);
    std::vector<double> times, baselineTimes;
    bool bOursFirst = true;

    SecondsOf(iCalls, baseline); // CallsInABatch has warmed the caches for the library
    for (auto _ : state) {
        double fOurs = bOursFirst ? SecondsOf(iCalls, ours) : 0;
        const double fBaseline = SecondsOf(iCalls, baseline);
        if (!bOursFirst) fOurs = SecondsOf(iCalls, ours);
        bOursFirst = !bOursFirst;
        times.push_back(fOurs / iCalls);
        baselineTimes.push_back(fBaseline / iCalls);
        state.SetIterationTime(fOurs + fBaseline);
    }
    state.SetLabel(pcBaseline);
    SetComparison(state, times, baselineTimes);
}

// Registers a row of a table, named "section/group/row". The function measures time itself.
template <typename Function> void Register(const std::string &name, Function function)
{
    benchmark::RegisterBenchmark(name.c_str(), function)->Iterations(Rounds())->UseManualTime();
}

} // namespace bench

#endif
