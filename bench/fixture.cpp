// SPDX-License-Identifier: MIT
#include "fixture.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>

namespace bench
{

static DFBResult DoNotFlip(IDirectFBSurface *, const DFBRegion *, DFBSurfaceFlipFlags)
{
    return DFB_OK;
}

[[noreturn]] static void Exit(const char *pcReason)
{
    std::fprintf(stderr, "%s\n", pcReason);
    std::exit(1);
}

IDirectFB *KeepDirectFB()
{
    static IDirectFB *pDfb;
    static void *const pHandle = dlopen("libdirectfb.so", RTLD_NOW | RTLD_GLOBAL);

    if (!pHandle) Exit("DirectFB not found: install libdirectfb-dev.");
    if (pDfb) return pDfb;
    reinterpret_cast<DFBResult (*)(int *, char ***)>(dlsym(pHandle, "DirectFBInit"))(nullptr, nullptr);
    reinterpret_cast<DFBResult (*)(IDirectFB **)>(dlsym(pHandle, "DirectFBCreate"))(&pDfb);
    return pDfb;
}

static bool HasInEnvironment(const char *pcName, const char *pcText)
{
    const char *const pcValue = std::getenv(pcName);
    return pcValue && std::strstr(pcValue, pcText);
}

bool IsX11()
{
    return HasInEnvironment("DFBARGS", "system=x11");
}

bool IsQuick()
{
    return HasInEnvironment("KOVA_BENCH", "quick");
}

int Rounds()
{
    return HasInEnvironment("KOVA_BENCH", "smoke") ? 1 : IsQuick() ? 41 : 301;
}

void Mute(IDirectFBSurface *pSurface)
{
    pSurface->Flip = DoNotFlip;
}

Display::Display(Colors_e eColors, KovaGraphicLayer_e eLayer, bool bMuted)
{
    KeepDirectFB();
    KovaTextInitParam_t init = {};
    KovaTextContextParam_t context = {PLANE_WIDTH, PLANE_HEIGHT, 0, 0, 0, 0, PLANE_WIDTH, PLANE_HEIGHT};
    KovaTextColor_t colors[256];

    init.eLayer = eLayer;
    init.uiPlaneWidth = PLANE_WIDTH;
    init.uiPlaneHeight = PLANE_HEIGHT;
    init.bTextDisp_Palette = eColors == PALETTE;
    init.bColor32Bit = eColors == PACKED;
    Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &init);
    m_pDisplay = Kova_TextDisp_GetDisplayByID(0);
    if (!m_pDisplay || Kova_TextDisp_CreateContext(m_pDisplay, &context) != 0) {
        Exit("No display: install libdirectfb-extra, and set DFBARGS as bench/run does.");
    }
    // An activation ends 32-bit mode.
    if (eColors != PACKED) Kova_TextDisp_SetActive(m_pDisplay, 0, 1);
    m_pDisplay->Show(m_pDisplay, 0);
    if (!Surface()) Exit("The display has no surface: set a mode in DFBARGS, as bench/run does.");
    for (int i = 0; i < 256; i++) {
        colors[i] = {kova_uint8(i * 37), kova_uint8(i * 91), kova_uint8(i * 173), 255};
    }
    m_pDisplay->SetPalette(m_pDisplay, 0, colors, 256, 0);
    if (bMuted) Mute(Surface());
}

Display::~Display()
{
    Kova_TextDisp_DestroyContext(m_pDisplay, 0);
    Kova_TextDisp_Destroy(0);
}

kova_sint32 Display::OpenFont(int iName, kova_uint32 uiHeight)
{
    const std::string name = std::string(size_t(iName), '/') + FONT; // "//usr" is another name of "/usr"
    kova_sint32 siFont = -1;

    m_pDisplay->CreateFont(m_pDisplay, 0, name.c_str(), uiHeight, KOVA_FONTATTR_NONE, &siFont);
    if (siFont < 0) Exit("Font not found: install fonts-dejavu-core.");
    m_pDisplay->SetFont(m_pDisplay, 0, siFont, uiHeight, KOVA_FONTATTR_NONE);
    return siFont;
}

double Median(std::vector<double> values)
{
    const auto middle = values.begin() + ptrdiff_t(values.size() / 2);

    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void SetComparison(benchmark::State &state, const std::vector<double> &times,
                   const std::vector<double> &baselineTimes)
{
    std::vector<double> ratios;

    for (size_t i = 0; i < times.size(); i++) ratios.push_back(times[i] / baselineTimes[i]);
    state.counters["ours"] = Median(times) * 1e9;
    state.counters["baseline"] = Median(baselineTimes) * 1e9;
    state.counters["ratio"] = Median(ratios);
}

} // namespace bench
