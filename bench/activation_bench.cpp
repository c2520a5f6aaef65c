// SPDX-License-Identifier: MIT
// Activations with eight fonts, compared with the same DirectFB calls made directly.
#include "direct_window.h"
#include "fixture.h"

namespace bench
{

constexpr int FONTS = 8, TIMES = 6;

// Seconds for an activation of the smaller plane and one back, the mean of some repetitions.
static double TimeOurs()
{
    Display display(PALETTE);
    KovaTextContextParam_t param = {1280, 720, 0, 0, 0, 0, 1280, 720};
    const kova_sint8 scSmaller = Kova_TextDisp_CreateContext(display, &param);

    Kova_TextDisp_SetActive(display, 0, 1);
    for (int i = 0; i < FONTS; i++) display.OpenFont(i);
    const double fSeconds = SecondsOf(TIMES, [&] {
        Kova_TextDisp_SetActive(display, scSmaller, 1);
        Kova_TextDisp_SetActive(display, 0, 1);
    });
    Kova_TextDisp_DestroyContext(display, scSmaller);
    return fSeconds / TIMES;
}

static double TimeDirectCalls()
{
    DirectWindow window(KeepDirectFB());
    const auto open = [&](int iWidth, int iHeight) {
        window.Close();
        window.Open(iWidth, iHeight, FONTS);
    };

    open(1920, 1080);
    return SecondsOf(TIMES, [&] { open(1280, 720), open(1920, 1080); }) / TIMES;
}

// DirectFB repaints every window on the screen, so each runs alone there; they still take turns.
static void Activate(benchmark::State &state)
{
    std::vector<double> times, baselineTimes;

    for (auto _ : state) {
        times.push_back(TimeOurs());
        baselineTimes.push_back(TimeDirectCalls());
        state.SetIterationTime(times.back() + baselineTimes.back());
    }
    state.SetLabel("the same DirectFB calls");
    SetComparison(state, times, baselineTimes);
}

static const int s_registered = [] {
    if (IsX11()) return 0;
    benchmark::RegisterBenchmark("activation/layer 1/two activations, 8 fonts", Activate)
        ->Iterations(Rounds() < 7 ? 1
                     : IsQuick()  ? 3
                                  : 7)
        ->UseManualTime();
    return 0;
}();

} // namespace bench
