// SPDX-License-Identifier: MIT
#include "operations.h"

#include <algorithm>
#include <string.h>
#include <unistd.h>

namespace textdisp
{

struct Area_t {
    kova_uint32 uiLeft, uiTop, uiWidth, uiHeight; // pixels
};

// Intersects the target rectangle with the clip; false when nothing is left. All arithmetic is unsigned and may wrap.
static bool GetCommonRect(const DFBRegion &clip, kova_uint32 uiStartX, kova_uint32 uiStartY,
                          kova_uint32 uiWidth, kova_uint32 uiHeight, Area_t *pArea)
{
    const kova_uint32 uiRight = std::min(kova_uint32(clip.x2), uiStartX + uiWidth - 1);
    const kova_uint32 uiBottom = std::min(kova_uint32(clip.y2), uiStartY + uiHeight - 1);

    pArea->uiLeft = std::max(uiStartX, kova_uint32(clip.x1));
    pArea->uiTop = std::max(uiStartY, kova_uint32(clip.y1));
    if (uiWidth == 0 || uiHeight == 0 || pArea->uiLeft > uiRight || pArea->uiTop > uiBottom) return false;
    pArea->uiWidth = uiRight - pArea->uiLeft + 1;
    pArea->uiHeight = uiBottom - pArea->uiTop + 1;
    return pArea->uiWidth != 0 && pArea->uiHeight != 0;
}

static KovaDFBSize_t TargetSize(KovaDFBDisplay_t *pDisplay) HOLDS_DISPLAY
{
    if (pDisplay->pActiveSurface != pDisplay->pBaseSurface) return MeasureBackupSurface(pDisplay);
    return pDisplay->bWindowSurface ? pDisplay->sWindowSurfaceSize : pDisplay->sLayerSize;
}

// The clip may reach past the surface; no byte is written there.
static void CutToSurface(KovaDFBDisplay_t *pDisplay, Area_t *pArea) HOLDS_DISPLAY
{
    const KovaDFBSize_t size = TargetSize(pDisplay);

    pArea->uiWidth =
        pArea->uiLeft < size.uiWidth ? std::min(pArea->uiWidth, size.uiWidth - pArea->uiLeft) : 0;
    pArea->uiHeight =
        pArea->uiTop < size.uiHeight ? std::min(pArea->uiHeight, size.uiHeight - pArea->uiTop) : 0;
}

int DrawPixel(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, kova_uint8 *ucPixel, kova_uint32 uiStartX,
              kova_uint32 uiStartY, kova_uint32 uiWidth, kova_uint32 uiHeight, kova_uint32 uiRowByte)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!ucPixel) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    if (!IsShown(pDisplay)) return TEXTDISP_EXIT(), 0;
    Area_t area;
    if (!GetCommonRect(PeekRegion(pDisplay->clip), uiStartX, uiStartY, uiWidth, uiHeight, &area)) return 0;
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    IDirectFBSurface *const pSurface = pDisplay->pActiveSurface;
    void *pData = nullptr;
    int iPitch = 0;
    if (Call(pSurface, &IDirectFBSurface::Lock, DSLF_WRITE, &pData, &iPitch) != DFB_OK) {
        return Unlock(pDisplay), TEXTDISP_EXIT(), -1;
    }
    pDisplay->blast_frame_changed = 1;
    CutToSurface(pDisplay, &area);
    // The source starts at its own first pixel, whatever the clip cut off: a clipped bitmap shows its top left corner.
    if (area.uiWidth != 0 && area.uiHeight != 0) {
        auto *pucTo = static_cast<kova_uint8 *>(pData) + size_t(area.uiTop) * size_t(iPitch) + area.uiLeft;
        const kova_uint8 *pucFrom = ucPixel;
        for (kova_uint32 uiRow = 0; uiRow < area.uiHeight; uiRow++, pucTo += iPitch, pucFrom += uiRowByte) {
            memcpy(pucTo, pucFrom, area.uiWidth); // one byte a pixel, in every format
        }
    }
    if (Call(pSurface, &IDirectFBSurface::Unlock) != DFB_OK) return Unlock(pDisplay), TEXTDISP_EXIT(), -1;
    FilpInternal(pThiz);
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

int Blit(pKovaITextDisplay_t pThiz, kova_sint8 scContextID, pKovaTextRect_t pRect, kova_uint32 uiDstX,
         kova_uint32 uiDstY)
{
    KovaDFBDisplay_t *const pDisplay = Record(pThiz);

    TEXTDISP_ENTER();
    if (!pThiz) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsContextID(scContextID)) return TEXTDISP_ERROR("Invalid context ID!"), -1;
    if (!pRect) return TEXTDISP_ERROR("NULL Pointer!"), -1;
    if (!IsShown(pDisplay)) return TEXTDISP_EXIT(), 0;
    Lock(pDisplay);
    if (!MayAct(pDisplay, scContextID)) return TEXTDISP_ERROR("Inactive context!"), Unlock(pDisplay), -1;
    const DFBRectangle source = {int(pRect->uiX), int(pRect->uiY), int(pRect->uiWidth), int(pRect->uiHeight)};
    while (Peek(pDisplay->has_flipping_req)) { // the pending flip shows the surface as it is before the copy
        Unlock(pDisplay);
        usleep(16000);
        Lock(pDisplay);
    }
    DFB_CHECK(Call(pDisplay->pActiveSurface, &IDirectFBSurface::Blit, pDisplay->pActiveSurface, &source,
                   uiDstX, uiDstY));
    pDisplay->blast_frame_changed = 1;
    FilpInternal(pThiz);
    return Unlock(pDisplay), TEXTDISP_EXIT(), 0;
}

} // namespace textdisp
