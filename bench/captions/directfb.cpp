// SPDX-License-Identifier: MIT
#include "contender.h"

#include "direct_window.h"
#include "fixture.h"

const char *const CONTENDER = "raw DirectFB";
const char *const DIFFERENCES = "the same passes by direct calls";

static bench::DirectWindow *g_pWindow;
static Edge_e g_eEdge;

void Start()
{
    g_pWindow = new bench::DirectWindow(bench::KeepDirectFB());
    g_pWindow->Open(WIDTH, HEIGHT, 0);
}

void Open(Edge_e eEdge)
{
    IDirectFB *const pDfb = bench::KeepDirectFB();
    IDirectFBFont *pFont = nullptr;
    DFBFontDescription font = {};

    g_eEdge = eEdge;
    font.flags = DFDESC_HEIGHT;
    font.height = FONT_SIZE;
    pDfb->CreateFont(pDfb, FONT_FILE, &font, &pFont);
    g_pWindow->Surface()->SetFont(g_pWindow->Surface(), pFont);
}

void Draw(int iCaption)
{
    IDirectFBSurface *const pSurface = g_pWindow->Surface();

    pSurface->SetColor(pSurface, 0, 0, 0, 0);
    pSurface->FillRectangle(pSurface, BOX_X, BOX_Y, BOX_WIDTH, BOX_HEIGHT);
    for (int i = 0; i < 2; i++) {
        for (const Pass_t &pass : Passes(g_eEdge)) {
            const kova_uint8 ucColor = pass.bEdge ? 0 : 255;
            pSurface->SetColor(pSurface, ucColor, ucColor, ucColor, 255);
            pSurface->DrawString(pSurface, CAPTIONS[iCaption][i], LINE_LENGTH, LEFT + pass.iX,
                                 TOPS[i] + pass.iY, DSTF_TOPLEFT);
        }
    }
}

const uint32_t *Pixels(int *piPitch)
{
    IDirectFBSurface *const pSurface = g_pWindow->Surface();
    void *pData;

    pSurface->Lock(pSurface, DSLF_WRITE, &pData,
                   piPitch);    // the back buffer; a read lock would return the front buffer
    pSurface->Unlock(pSurface); // the address does not change while nothing flips
    *piPitch /= 4;
    return static_cast<const uint32_t *>(pData);
}
