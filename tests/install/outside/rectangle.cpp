// SPDX-License-Identifier: MIT
// Brings a display up, draws, takes it down; and refuses nothing on the way.
#include <cstdio>
#include <kova/kova_textdisp.h>

int main()
{
    KovaTextInitParam_t param = {};
    KovaTextContextParam_t geometry = {};
    KovaTextRect_t area = {10, 10, 100, 50};

    param.eLayer = KOVA_GRAPHIC_LAYER1;
    param.bTextDisp_Palette = 1;
    param.uiPlaneWidth = geometry.uiPlaneWidth = 640;
    param.uiPlaneHeight = geometry.uiPlaneHeight = 360;
    Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param);
    const pKovaITextDisplay_t display = Kova_TextDisp_GetDisplayByID(0);
    if (!display) return std::puts("no display"), 1;

    const kova_sint8 context = Kova_TextDisp_CreateContext(display, &geometry);
    Kova_TextDisp_SetActive(display, context, 1);
    display->Show(display, context);
    const int filled = display->FillRect(display, context, &area, 0);
    Kova_TextDisp_DestroyContext(display, context);
    Kova_TextDisp_Destroy(0);
    std::printf("context %d, FillRect %d\n", context, filled);
    return context != 0 || filled != 0;
}
