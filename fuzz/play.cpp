// SPDX-License-Identifier: MIT
#include "play.h"

#include "kova_textdisp_dfb/record.h"

#include <algorithm>
#include <cstring>

namespace fuzz
{

uint32_t Bytes::Number()
{
    static const uint32_t LIMITS[] = {0,    1,          2,          47,         48,        49,   99,
                                      100,  101,        127,        255,        256,       1079, 1080,
                                      1919, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF};
    const uint8_t uc = Byte();

    if (uc < 160) return uc;
    if (uc < 180) return LIMITS[uc % (sizeof LIMITS / sizeof *LIMITS)];
    if (uc < 220) return uint32_t(uc % 8) << 8 | Byte();
    return Word();
}

// Memory of exactly the size that a call may read, so that the sanitizer detects any access beyond it.
template <typename T> class Exact
{
public:
    explicit Exact(size_t uiCount) : m_pData(new T[uiCount]())
    {
    }
    // Filled from the input.
    Exact(Bytes &bytes, size_t uiCount) : Exact(uiCount)
    {
        for (size_t i = 0; i < uiCount; i++) m_pData[i] = T(bytes.AtEnd() ? i * 37 : bytes.Byte());
    }
    T *Get() const
    {
        return m_pData.get();
    }
    T &operator[](size_t i) const
    {
        return m_pData[i];
    }

private:
    std::unique_ptr<T[]> m_pData;
};

// Each statement below reads at most one value from the input: the evaluation order of arguments differs
// between compilers, and an input must mean the same with all of them.

static KovaTextRect_t Rect(Bytes &bytes, bool bAny = true)
{
    KovaTextRect_t rect;
    rect.uiX = bytes.Bounded(bAny, 4000);
    rect.uiY = bytes.Bounded(bAny, 4000);
    rect.uiWidth = bytes.Bounded(bAny, 4000);
    rect.uiHeight = bytes.Bounded(bAny, 4000);
    return rect;
}

static void PlayFont(pKovaITextDisplay_t p, Bytes &bytes, bool bCreate, const Limits &limits)
{
    pKovaITextDisplay_t const pThiz = bytes.Maybe(p);
    const kova_sint8 c = bytes.Context();
    const uint8_t ucName = bytes.Byte();
    const kova_uint32 uiHeight = bytes.Bounded(limits.bAnyNumber, 200);
    const auto eAttr = KovaTextFontAttr_e(bytes.Choice(64));

    if (bCreate) {
        // The longest valid name has 99 bytes.
        const std::string name = ucName >= 236 ? std::string(90u + ucName - 236u, 'x')
                                               : limits.fonts[ucName % limits.fonts.size()];
        kova_sint32 siFont = 0;
        const char *const pcName = bytes.Maybe(name.c_str());
        p->CreateFont(pThiz, c, pcName, uiHeight, eAttr, bytes.Maybe(&siFont));
    } else {
        p->SetFont(pThiz, c, ucName == 255 ? kova_sint32(bytes.Word()) : ucName % 10, uiHeight, eAttr);
    }
}

static void PlayString(pKovaITextDisplay_t p, Bytes &bytes, bool bDraw)
{
    pKovaITextDisplay_t const pThiz = bytes.Maybe(p);
    const kova_sint8 c = bytes.Context();
    const uint8_t ucBytes = bytes.Byte();
    const auto eEncoding = KovaTextEncoding_e(bytes.Choice(4));
    const Exact<uint8_t> text(bytes, ucBytes);
    const auto *const pusText = bytes.Maybe(reinterpret_cast<const unsigned short *>(text.Get()));

    if (bDraw) {
        const kova_uint32 x = bytes.Number();
        const kova_uint32 y = bytes.Number();
        p->DrawString(pThiz, c, pusText, ucBytes, x, y, eEncoding, KovaTextAlignFlag_e(bytes.Choice(16)));
    } else {
        kova_uint32 uiWidth;
        p->GetStringWidth(pThiz, c, pusText, ucBytes, eEncoding, bytes.Maybe(&uiWidth));
    }
}

static void PlayText(pKovaITextDisplay_t p, Bytes &bytes, uint8_t ucWhat, const Limits &limits)
{
    ucWhat %= 9;
    if (ucWhat < 2) return PlayFont(p, bytes, ucWhat == 0, limits);
    if (ucWhat < 4) return PlayString(p, bytes, ucWhat == 2);
    pKovaITextDisplay_t const pThiz = bytes.Maybe(p);
    const kova_sint8 c = bytes.Context();

    switch (ucWhat) {
    case 4: {
        kova_sint32 siPosition, siThickness;
        kova_sint32 *const psiPosition = bytes.Maybe(&siPosition);
        p->GetUnderlineInfo(pThiz, c, 0, 0, 0, psiPosition, bytes.Maybe(&siThickness));
        break;
    }
    case 5: {
        kova_sint32 siHeight = 0;
        p->GetFontHeight(pThiz, c, &siHeight);
        break;
    }
    case 6: {
        const kova_uint32 uiFactor = bytes.Word();
        p->ScaleFontWidth(pThiz, c, bytes.Byte(), limits.bAnyNumber ? uiFactor : uiFactor % (1 << 19));
        break;
    }
    case 7: {
        const int iEdge = bytes.Choice(128);
        p->SetEdgeType(pThiz, c, KovaTextEdgeType_e(iEdge >= 0 && iEdge < 64 ? 1 << iEdge % 7 : iEdge));
        break;
    }
    default:
        p->SetEdgeColor(pThiz, c, bytes.Number());
        p->SetTextForeColor(pThiz, c, bytes.Number());
        break;
    }
}

static void PlayBitmap(pKovaITextDisplay_t p, Bytes &bytes)
{
    // Valid memory for bitmaps too large to be created for each input: more than any surface can show.
    static const std::vector<uint8_t> PIXELS(2100 * 2100 + 2100, 5);
    constexpr size_t SMALL = 4096;
    pKovaITextDisplay_t const pThiz = bytes.Maybe(p);
    const kova_sint8 c = bytes.Context();
    const kova_uint32 x = bytes.Number();
    const kova_uint32 y = bytes.Number();
    const kova_uint32 uiWidth = bytes.Number();
    const kova_uint32 uiHeight = bytes.Number();
    const kova_uint32 uiRow = bytes.Number() % 2100;
    const uint64_t uiBytes = uiHeight ? uint64_t(uiHeight - 1) * uiRow + uiWidth : 0;
    const Exact<uint8_t> small(bytes, uiBytes <= SMALL ? size_t(uiBytes) : 0);

    uint8_t *const pucPixels = uiBytes <= SMALL ? small.Get() : const_cast<uint8_t *>(PIXELS.data());
    p->DrawPixel(pThiz, c, bytes.Maybe(pucPixels), x, y, uiWidth, uiHeight, uiRow);
}

static void PlayGlyphs(pKovaITextDisplay_t p, Bytes &bytes, bool bBatch)
{
    pKovaITextDisplay_t const pThiz = bytes.Maybe(p);
    const kova_sint8 c = bytes.Context();
    const size_t uiCount = bBatch ? bytes.Byte() : 1; // at most 100 are accepted
    std::vector<Exact<uint8_t>> data;
    const Exact<kova_uint8 *> pointers(uiCount);
    const Exact<kova_uint32> x(uiCount), y(uiCount), w(uiCount), h(uiCount), row(uiCount), offset(uiCount);
    const Exact<kova_sint32> bg(uiCount), fg(uiCount);
    const Exact<KovaTextExpand_e> expand(uiCount);

    for (size_t i = 0; i < uiCount; i++) {
        x[i] = bytes.Number();
        y[i] = bytes.Number();
        w[i] = bytes.Number();
        h[i] = bytes.Number();
        row[i] = bytes.Byte() % 12;
        offset[i] = bytes.Byte();
        bg[i] = kova_sint32(bytes.Number());
        fg[i] = kova_sint32(bytes.Number());
        expand[i] = KovaTextExpand_e(bytes.Choice(8));
        // A bitmap larger than 48 by 48 is refused, and none of its bytes are read.
        const bool bTaken = w[i] <= 48 && h[i] <= 48;
        data.emplace_back(bytes, bTaken ? offset[i] / 8 + (h[i] ? h[i] - 1 : 0) * row[i] +
                                              (offset[i] % 8 + w[i] + 7) / 8
                                        : 0);
        pointers[i] = data.back().Get();
    }
    if (bBatch) {
        p->BatchDrawPixelExpand(pThiz, c, bytes.Maybe(pointers.Get()), x.Get(), y.Get(), w.Get(), h.Get(),
                                row.Get(), bg.Get(), fg.Get(), offset.Get(), expand.Get(),
                                kova_uint8(uiCount));
    } else {
        p->DrawPixelExpand(pThiz, c, bytes.Maybe(pointers[0]), x[0], y[0], w[0], h[0], row[0], bg[0], fg[0],
                           offset[0], expand[0]);
    }
}

static void PlayPixels(pKovaITextDisplay_t p, Bytes &bytes, uint8_t ucWhat, const Limits &limits)
{
    switch (ucWhat % 4) {
    case 0:
        PlayBitmap(p, bytes);
        break;
    case 1: {
        pKovaITextDisplay_t const pThiz = bytes.Maybe(p);
        const kova_sint8 c = bytes.Context();
        KovaTextRect_t rect = Rect(bytes, limits.bAnyNumber);
        KovaTextRect_t *const pRect = bytes.Maybe(&rect);
        const kova_uint32 x = bytes.Bounded(limits.bAnyNumber, 4000);
        p->Blit(pThiz, c, pRect, x, bytes.Bounded(limits.bAnyNumber, 4000));
        break;
    }
    default:
        PlayGlyphs(p, bytes, ucWhat % 4 == 3);
        break;
    }
}

static void PlayState(pKovaITextDisplay_t p, Bytes &bytes, uint8_t ucWhat, const Limits &limits)
{
    pKovaITextDisplay_t const pThiz = bytes.Maybe(p);
    const kova_sint8 c = bytes.Context();

    switch (ucWhat % 16) {
    case 0:
        p->Show(pThiz, c);
        break;
    case 1:
        if (bytes.Byte() & 1) p->Hide(pThiz, c);
        break;
    case 2: {
        const kova_uint32 uiNumber = bytes.Number();
        const uint8_t ucOffset = bytes.Byte();
        // More than 256 are refused, and none of them are read.
        const Exact<uint8_t> colors(bytes, uiNumber <= 256 ? sizeof(KovaTextColor_t) * uiNumber : 0);
        p->SetPalette(pThiz, c, bytes.Maybe(reinterpret_cast<pKovaTextColor_t>(colors.Get())), uiNumber,
                      ucOffset);
        break;
    }
    case 3: {
        KovaTextRect_t rect = Rect(bytes);
        KovaTextRect_t *const pRect = bytes.Maybe(&rect);
        p->FillRect(pThiz, c, pRect, bytes.Number());
        break;
    }
    case 4:
        p->Flip(pThiz, c);
        break;
    case 5:
        p->SetBlittingFlags(pThiz, c, KovaTextBlitFlag_e(bytes.Choice(32)));
        break;
    case 6:
        p->SetDrawingFlags(pThiz, c, KovaTextDrawFlag_e(bytes.Choice(64)));
        break;
    case 7:
        p->SetDstColorKey(pThiz, c, bytes.Number());
        break;
    case 8: {
        KovaTextRect_t rect = Rect(bytes);
        p->SetClip(pThiz, c, bytes.Byte() & 1 ? nullptr : &rect);
        break;
    }
    case 9: {
        const auto x1 = kova_sint32(bytes.Bounded(limits.bAnyNumber, 4000));
        const auto y1 = kova_sint32(bytes.Bounded(limits.bAnyNumber, 4000));
        const auto x2 = kova_sint32(bytes.Bounded(limits.bAnyNumber, 4000));
        const auto y2 = kova_sint32(bytes.Bounded(limits.bAnyNumber, 4000));
        p->DrawLine(pThiz, c, x1, y1, x2, y2, bytes.Number());
        break;
    }
    case 10:
        p->SetFlip(pThiz, bytes.Byte() & 3);
        break;
    case 11:
        p->UseBackupSurface(pThiz, c, bytes.Byte() & 3);
        break;
    case 12: {
        KovaTextRect_t rect = Rect(bytes, limits.bAnyNumber);
        KovaTextRect_t *const pRect = bytes.Maybe(&rect);
        const kova_uint32 x = bytes.Bounded(limits.bAnyNumber, 4000);
        p->BlitBackupSurface(pThiz, c, pRect, x, bytes.Bounded(limits.bAnyNumber, 4000));
        break;
    }
    case 13: {
        Surface_OsdScaleInfo info = {};
        for (int *piField : {&info.plane_x, &info.plane_y, &info.plane_w, &info.plane_h, &info.buf_w,
                             &info.buf_h, &info.crop_x, &info.crop_y, &info.crop_w, &info.crop_h}) {
            *piField = int(bytes.Number());
        }
        p->SetSurface_OsdScaleInfo(pThiz, bytes.Maybe(&info));
        break;
    }
    case 14: {
        const kova_uint32 w = bytes.Number();
        p->SetTextWindowSize(pThiz, c, w, bytes.Number());
        break;
    }
    default: {
        const KovaTextRect_t window = Rect(bytes);
        p->SetDisplayWindow(pThiz, c, window.uiX, window.uiY, window.uiWidth, window.uiHeight);
        break;
    }
    }
}

static void PlayOne(pKovaITextDisplay_t pDisplay, Bytes &bytes, uint8_t ucWhat, const Limits &limits)
{
    if (ucWhat < 70) {
        PlayText(pDisplay, bytes, ucWhat, limits);
    } else if (ucWhat < 140) {
        PlayPixels(pDisplay, bytes, ucWhat, limits);
    } else {
        PlayState(pDisplay, bytes, ucWhat, limits);
    }
}

void PlayOperations(pKovaITextDisplay_t pDisplay, Bytes &bytes, const Limits &limits)
{
    while (!bytes.AtEnd()) PlayOne(pDisplay, bytes, bytes.Byte(), limits);
}

static void PlayPlane(pKovaITextDisplay_t p, Bytes &bytes, uint8_t ucWhat, const Limits &limits)
{
    auto *const pRecord = reinterpret_cast<KovaDFBDisplay_t *>(p);
    const kova_sint8 c = bytes.Context();
    const kova_uint32 uiWidth = bytes.Size(limits.bAnyNumber);
    const kova_uint32 uiHeight = bytes.Size(limits.bAnyNumber);

    switch (ucWhat % 8) {
    case 0: {
        KovaTextContextParam_t param = {uiWidth, uiHeight, 1, 2, 3, 4, 5, 6};
        KovaTextContextParam_t *const pParam = bytes.Maybe(&param);
        const bool bFull = pParam && pRecord->ucContextMask == 15;
        Kova_TextDisp_CreateContext(p, pParam);
        if (bFull) pthread_mutex_unlock(&pRecord->display_mutex); // this refusal keeps the lock
        break;
    }
    case 1: {
        const bool bThere = kova_uint8(c) > 3 || (pRecord->ucContextMask >> c & 1);
        Kova_TextDisp_DestroyContext(p, c);
        if (!bThere) pthread_mutex_unlock(&pRecord->display_mutex);
        break;
    }
    case 2:
        Kova_TextDisp_SetActive(p, c, bytes.Byte() < 230);
        break;
    case 3:
        p->SetPlane(bytes.Maybe(p), c, 0, 0, uiWidth, uiHeight);
        break;
    case 4:
        p->AdjustDisplaySize(bytes.Maybe(p), c, 0, 0, uiWidth, uiHeight);
        break;
    case 5:
        p->Create32BitPlane(bytes.Maybe(p), c, 0, 0, uiWidth, uiHeight);
        break;
    case 6:
        if (bytes.Byte() & 1) p->Release32BitPlane(p);
        break;
    default:
        Kova_TextDisp_GetDisplayByID(c);
        Kova_TextDisp_GetLayer();
        Kova_TextDisp_GetDFB();
        p->Release32BitPlane(nullptr);
        break;
    }
}

void PlayDisplay(pKovaITextDisplay_t pDisplay, Bytes &bytes, const Limits &limits)
{
    while (!bytes.AtEnd()) {
        const uint8_t ucWhat = bytes.Byte();
        if (ucWhat < 230) {
            PlayOne(pDisplay, bytes, ucWhat, limits);
        } else {
            PlayPlane(pDisplay, bytes, ucWhat, limits);
        }
    }
}

void EndContexts(pKovaITextDisplay_t pDisplay)
{
    const auto *const pRecord = reinterpret_cast<KovaDFBDisplay_t *>(pDisplay);

    for (int i = 0; i < 4; i++) {
        if (pRecord->ucContextMask >> i & 1) Kova_TextDisp_DestroyContext(pDisplay, kova_sint8(i));
    }
}

} // namespace fuzz
