// SPDX-License-Identifier: MIT
#include "bed.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>

namespace bench
{

static DFBResult KeepStill(IDirectFBSurface *, const DFBRegion *, DFBSurfaceFlipFlags)
{
    return DFB_OK;
}

[[noreturn]] static void Give(const char *pcReason)
{
    std::fprintf(stderr, "%s\n", pcReason);
    std::exit(1);
}

IDirectFB *KeepDirectFB()
{
    static IDirectFB *pDfb;
    static void *const pHandle = dlopen("libdirectfb.so", RTLD_NOW | RTLD_GLOBAL);

    if (!pHandle) Give("No DirectFB: is libdirectfb-dev installed?");
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
    pSurface->Flip = KeepStill;
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
        Give("No display to measure on: is libdirectfb-extra installed, and DFBARGS as bench/run gives it?");
    }
    // Activation ends the 32-bit mode, so such a display goes without.
    if (eColors != PACKED) Kova_TextDisp_SetActive(m_pDisplay, 0, 1);
    m_pDisplay->Show(m_pDisplay, 0);
    if (!Surface()) Give("The display has no surface: give DFBARGS a mode, as bench/run does.");
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
    const std::string name = std::string(size_t(iName), '/') + FONT; // "//usr" is "/usr", under another name
    kova_sint32 siFont = -1;

    m_pDisplay->CreateFont(m_pDisplay, 0, name.c_str(), uiHeight, KOVA_FONTATTR_NONE, &siFont);
    if (siFont < 0) Give("No font to measure with: is fonts-dejavu-core installed?");
    m_pDisplay->SetFont(m_pDisplay, 0, siFont, uiHeight, KOVA_FONTATTR_NONE);
    return siFont;
}

double Median(std::vector<double> values)
{
    const auto middle = values.begin() + ptrdiff_t(values.size() / 2);

    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void SetComparison(benchmark::State &state, const std::vector<double> &ours,
                   const std::vector<double> &theirs)
{
    std::vector<double> ratios;

    for (size_t i = 0; i < ours.size(); i++) ratios.push_back(ours[i] / theirs[i]);
    state.counters["ours"] = Median(ours) * 1e9;
    state.counters["beside"] = Median(theirs) * 1e9;
    state.counters["ratio"] = Median(ratios);
}

} // namespace bench
