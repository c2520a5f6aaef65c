// SPDX-License-Identifier: MIT
// What the benchmarks share: a display to measure on, and the comparison of two ways to do one thing.
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
    INDEX,   // LUT8, one byte a pixel
    PALETTE, // ARGB, a colour is an index into the display's palette
    PACKED   // ARGB, a colour is 0xRRGGBBAA; not on layer 1
};

// Lets a surface flip no more: the flip costs the same whatever was drawn, and would drown what is measured.
void Mute(IDirectFBSurface *pSurface);

// The one display of the process, shown, with one active context, its flips muted unless that is not wanted.
// Who calls DirectFB directly draws on the same surface, and flips it by the same pointer.
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
    // Opens the font under a name of its own and selects it; a name is a slot.
    kova_sint32 OpenFont(int iName = 0, kova_uint32 uiHeight = FONT_HEIGHT);

private:
    pKovaITextDisplay_t m_pDisplay;
};

// Keeps DirectFB up from the first display of the process to its end; see docs/decisions.
IDirectFB *KeepDirectFB();

bool IsX11();
bool IsQuick();

// How often two ways take turns, or a way is measured.
int Rounds();

template <typename Way> double SecondsOf(int iCalls, Way way)
{
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < iCalls; i++) way();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Calls that take a third of a millisecond together: long enough for the clock, short enough for a round of
// two to meet the same machine.
template <typename Way> int CallsInABatch(Way way)
{
    int iCalls = 1;
    while (iCalls < 1 << 20 && SecondsOf(iCalls, way) < 0.0003) iCalls *= 2;
    return iCalls;
}

double Median(std::vector<double> values);
void SetComparison(benchmark::State &state, const std::vector<double> &ours,
                   const std::vector<double> &theirs);

// Both ways by turns, in batches, the first of a round being the second of the next. "ours" and "beside" are
// the medians of the rounds in nanoseconds a call, "ratio" is the median of the rounds' own ratios: what
// slows the machine for longer than a round cancels out.
template <typename Ours, typename Theirs>
void Versus(benchmark::State &state, const char *pcTheirs, Ours ours, Theirs theirs)
{
    const int iCalls = CallsInABatch(ours);
    std::vector<double> ourTimes, theirTimes;
    bool bOursFirst = true;

    SecondsOf(iCalls, theirs); // both warm
    for (auto _ : state) {
        double fOurs = bOursFirst ? SecondsOf(iCalls, ours) : 0;
        const double fTheirs = SecondsOf(iCalls, theirs);
        if (!bOursFirst) fOurs = SecondsOf(iCalls, ours);
        bOursFirst = !bOursFirst;
        ourTimes.push_back(fOurs / iCalls);
        theirTimes.push_back(fTheirs / iCalls);
        state.SetIterationTime(fOurs + fTheirs);
    }
    state.SetLabel(pcTheirs);
    SetComparison(state, ourTimes, theirTimes);
}

// A row of a table: "section/group/row". The function does its own timing.
template <typename Function> void Register(const std::string &name, Function function)
{
    benchmark::RegisterBenchmark(name.c_str(), function)->Iterations(Rounds())->UseManualTime();
}

} // namespace bench

#endif
