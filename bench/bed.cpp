#include "bed.h"

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

namespace bench
{

static DFBResult KeepStill(IDirectFBSurface *, const DFBRegion *, DFBSurfaceFlipFlags)
{
    return DFB_OK;
}

// Published DirectFB does not survive being taken down and brought up again in one process, now and then it
// hangs. A reference of our own keeps it up from the first display to the end.
static void KeepDirectFB()
{
    static IDirectFB *pDfb;
    void *const pHandle = dlopen("libdirectfb.so", RTLD_NOW | RTLD_GLOBAL);

    if (!pHandle || pDfb) return;
    reinterpret_cast<DFBResult (*)(int *, char ***)>(dlsym(pHandle, "DirectFBInit"))(nullptr, nullptr);
    reinterpret_cast<DFBResult (*)(IDirectFB **)>(dlsym(pHandle, "DirectFBCreate"))(&pDfb);
}

Display::Display(bool bPalette)
{
    KeepDirectFB();
    KovaTextInitParam_t init = {};
    KovaTextContextParam_t context = {PLANE_WIDTH, PLANE_HEIGHT, 0, 0, 0, 0, PLANE_WIDTH, PLANE_HEIGHT};

    init.eLayer = KOVA_GRAPHIC_LAYER1;
    init.uiPlaneWidth = PLANE_WIDTH;
    init.uiPlaneHeight = PLANE_HEIGHT;
    init.bTextDisp_Palette = bPalette;
    Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &init);
    m_pDisplay = Kova_TextDisp_GetDisplayByID(0);
    if (!m_pDisplay || Kova_TextDisp_CreateContext(m_pDisplay, &context) != 0) {
        std::fprintf(stderr, "No display to measure on: is libdirectfb-dev installed, and DFBARGS right?\n");
        std::exit(1);
    }
    Kova_TextDisp_SetActive(m_pDisplay, 0, 1);
    m_pDisplay->Show(m_pDisplay, 0);
    if (!Surface()) {
        std::fprintf(stderr, "The display has no surface: give DFBARGS a mode, as bench/run does.\n");
        std::exit(1);
    }
    Surface()->Flip = KeepStill;
}

Display::~Display()
{
    Kova_TextDisp_DestroyContext(m_pDisplay, 0);
    Kova_TextDisp_Destroy(0);
}

} // namespace bench
