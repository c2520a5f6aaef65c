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

// Memory of exactly the size that a call may read, so that one byte too far is seen.
class Exact
{
public:
    Exact(Bytes &bytes, size_t uiSize) : m_pData(new uint8_t[uiSize])
    {
        for (size_t i = 0; i < uiSize; i++) m_pData[i] = uint8_t(bytes.AtEnd() ? i * 37 : bytes.Byte());
    }
    uint8_t *Get() const
    {
        return m_pData.get();
    }

private:
    std::unique_ptr<uint8_t[]> m_pData;
};

static KovaTextRect_t Rect(Bytes &bytes)
{
    KovaTextRect_t rect;
    rect.uiX = bytes.Number();
    rect.uiY = bytes.Number();
    rect.uiWidth = bytes.Number();
    rect.uiHeight = bytes.Number();
    return rect;
}

static void PlayText(pKovaITextDisplay_t p, Bytes &bytes, uint8_t ucWhat,
                     const std::vector<std::string> &fonts)
{
    const kova_sint8 c = bytes.Context();

    switch (ucWhat % 9) {
    case 0: {
        kova_sint32 siFont = 0;
        const std::string name = bytes.Byte() == 255 ? std::string(90 + bytes.Byte() % 20, 'x')
                                                     : fonts[bytes.Byte() % fonts.size()];
        p->CreateFont(p, c, name.c_str(), bytes.Number() % 200, KovaTextFontAttr_e(bytes.Byte() & 63),
                      bytes.Byte() == 255 ? nullptr : &siFont);
        break;
    }
    case 1:
        p->SetFont(p, c, kova_sint32(bytes.Number() % 10), bytes.Number() % 200,
                   KovaTextFontAttr_e(bytes.Byte() & 63));
        break;
    case 2:
    case 3: {
        const uint8_t ucBytes = bytes.Byte();
        const auto eEncoding = KovaTextEncoding_e(bytes.Byte() % 4);
        const bool bNull = bytes.Byte() == 255;
        const Exact text(bytes, ucBytes);
        const auto *pusText = bNull ? nullptr : reinterpret_cast<const unsigned short *>(text.Get());
        kova_uint32 uiWidth;
        if (ucWhat % 9 == 2) {
            const kova_uint32 x = bytes.Number(), y = bytes.Number();
            p->DrawString(p, c, pusText, ucBytes, x, y, eEncoding, KovaTextAlignFlag_e(bytes.Byte() & 15));
        } else {
            p->GetStringWidth(p, c, pusText, ucBytes, eEncoding, bytes.Byte() == 255 ? nullptr : &uiWidth);
        }
        break;
    }
    case 4: {
        kova_sint32 siPosition, siThickness;
        p->GetUnderlineInfo(p, c, 0, 0, 0, bytes.Byte() == 255 ? nullptr : &siPosition, &siThickness);
        break;
    }
    case 5: {
        kova_sint32 siHeight = 0;
        p->GetFontHeight(p, c, &siHeight);
        break;
    }
    case 6:
        p->ScaleFontWidth(p, c, bytes.Byte() & 1, bytes.Word() % (1 << 19));
        break;
    case 7:
        p->SetEdgeType(p, c, KovaTextEdgeType_e(bytes.Byte() & 1 ? 1 << bytes.Byte() % 7 : bytes.Byte()));
        break;
    default:
        p->SetEdgeColor(p, c, bytes.Number());
        p->SetTextForeColor(p, c, bytes.Number());
        break;
    }
}

static void PlayPixels(pKovaITextDisplay_t p, Bytes &bytes, uint8_t ucWhat)
{
    // As much as the largest plane takes at the widest pitch below.
    static const std::vector<uint8_t> PIXELS(2100 * 2100 + 2100, 5);
    const kova_sint8 c = bytes.Context();

    switch (ucWhat % 4) {
    case 0: {
        const kova_uint32 x = bytes.Number(), y = bytes.Number(), w = bytes.Number(), h = bytes.Number();
        p->DrawPixel(p, c, bytes.Byte() == 255 ? nullptr : const_cast<uint8_t *>(PIXELS.data()), x, y, w, h,
                     bytes.Number() % 2100);
        break;
    }
    case 1: {
        KovaTextRect_t rect = Rect(bytes);
        const kova_uint32 x = bytes.Number();
        p->Blit(p, c, bytes.Byte() == 255 ? nullptr : &rect, x, bytes.Number());
        break;
    }
    default: {
        constexpr size_t MAX = 104;
        const size_t uiCount = ucWhat % 4 == 2 ? 1 : bytes.Byte() % MAX;
        std::vector<Exact> data;
        std::vector<kova_uint8 *> pointers(MAX);
        std::vector<kova_uint32> x(MAX), y(MAX), w(MAX), h(MAX), row(MAX), offset(MAX);
        std::vector<kova_sint32> bg(MAX), fg(MAX);
        std::vector<KovaTextExpand_e> expand(MAX);

        for (size_t i = 0; i < uiCount; i++) {
            x[i] = bytes.Number();
            y[i] = bytes.Number();
            w[i] = bytes.Number() % 51;
            h[i] = bytes.Number() % 51;
            row[i] = bytes.Byte() % 12;
            offset[i] = bytes.Byte();
            bg[i] = kova_sint32(bytes.Number());
            fg[i] = kova_sint32(bytes.Number());
            expand[i] = KovaTextExpand_e(bytes.Byte() & 7);
            data.emplace_back(bytes, offset[i] / 8 + (h[i] ? h[i] - 1 : 0) * row[i] +
                                         (offset[i] % 8 + w[i] + 7) / 8);
            pointers[i] = data.back().Get();
        }
        if (ucWhat % 4 == 2) {
            p->DrawPixelExpand(p, c, pointers[0], x[0], y[0], w[0], h[0], row[0], bg[0], fg[0], offset[0],
                               expand[0]);
        } else {
            p->BatchDrawPixelExpand(p, c, pointers.data(), x.data(), y.data(), w.data(), h.data(), row.data(),
                                    bg.data(), fg.data(), offset.data(), expand.data(), kova_uint8(uiCount));
        }
        break;
    }
    }
}

static void PlayState(pKovaITextDisplay_t p, Bytes &bytes, uint8_t ucWhat)
{
    const kova_sint8 c = bytes.Context();

    switch (ucWhat % 14) {
    case 0:
        p->Show(p, c);
        break;
    case 1:
        if (bytes.Byte() & 1) p->Hide(p, c);
        break;
    case 2: {
        const kova_uint32 uiNumber = bytes.Number() % 260;
        const Exact colors(bytes, sizeof(KovaTextColor_t) * std::min<kova_uint32>(uiNumber, 256));
        p->SetPalette(p, c, reinterpret_cast<pKovaTextColor_t>(colors.Get()), uiNumber, bytes.Byte());
        break;
    }
    case 3: {
        KovaTextRect_t rect = Rect(bytes);
        p->FillRect(p, c, bytes.Byte() == 255 ? nullptr : &rect, bytes.Number());
        break;
    }
    case 4:
        p->Flip(p, c);
        break;
    case 5:
        p->SetBlittingFlags(p, c, KovaTextBlitFlag_e(bytes.Byte() & 31));
        break;
    case 6:
        p->SetDrawingFlags(p, c, KovaTextDrawFlag_e(bytes.Byte() & 63));
        break;
    case 7:
        p->SetDstColorKey(p, c, bytes.Number());
        break;
    case 8: {
        KovaTextRect_t rect = Rect(bytes);
        p->SetClip(p, c, bytes.Byte() & 1 ? nullptr : &rect);
        break;
    }
    case 9: {
        const auto x1 = kova_sint32(bytes.Number() % 4000), y1 = kova_sint32(bytes.Number() % 4000);
        const auto x2 = kova_sint32(bytes.Number() % 4000), y2 = kova_sint32(bytes.Number() % 4000);
        p->DrawLine(p, c, x1, y1, x2, y2, bytes.Number());
        break;
    }
    case 10:
        p->SetFlip(p, bytes.Byte() & 3);
        break;
    case 11: {
        KovaTextRect_t rect = Rect(bytes);
        p->UseBackupSurface(p, c, bytes.Byte() & 1);
        p->BlitBackupSurface(p, c, &rect, 0, 0);
        p->UseBackupSurface(p, c, 0);
        break;
    }
    case 12: {
        Surface_OsdScaleInfo info = {};
        info.crop_w = int(bytes.Number());
        info.plane_x = int(bytes.Number());
        p->SetSurface_OsdScaleInfo(p, bytes.Byte() == 255 ? nullptr : &info);
        break;
    }
    default: {
        const kova_uint32 x = bytes.Number(), w = bytes.Number();
        p->SetTextWindowSize(p, c, x, w);
        p->SetDisplayWindow(p, c, x, x, w, w);
        break;
    }
    }
}

static void PlayOne(pKovaITextDisplay_t pDisplay, Bytes &bytes, uint8_t ucWhat,
                    const std::vector<std::string> &fonts)
{
    if (ucWhat < 70) {
        PlayText(pDisplay, bytes, ucWhat, fonts);
    } else if (ucWhat < 140) {
        PlayPixels(pDisplay, bytes, ucWhat);
    } else {
        PlayState(pDisplay, bytes, ucWhat);
    }
}

void PlayOperations(pKovaITextDisplay_t pDisplay, Bytes &bytes, const std::vector<std::string> &fonts)
{
    while (!bytes.AtEnd()) PlayOne(pDisplay, bytes, bytes.Byte(), fonts);
}

static void PlayPlane(pKovaITextDisplay_t p, Bytes &bytes, uint8_t ucWhat)
{
    auto *const pRecord = reinterpret_cast<KovaDFBDisplay_t *>(p);
    const kova_sint8 c = bytes.Context();
    const kova_uint32 uiWidth = bytes.Size(), uiHeight = bytes.Size();

    switch (ucWhat % 7) {
    case 0: {
        KovaTextContextParam_t param = {uiWidth, uiHeight, 1, 2, 3, 4, 5, 6};
        const bool bFull = pRecord->ucContextMask == 15;
        Kova_TextDisp_CreateContext(p, &param);
        if (bFull) pthread_mutex_unlock(&pRecord->display_mutex); // a refusal keeps the lock
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
        p->SetPlane(p, c, 0, 0, uiWidth, uiHeight);
        break;
    case 4:
        p->AdjustDisplaySize(p, c, 0, 0, uiWidth, uiHeight);
        break;
    case 5:
        p->Create32BitPlane(p, c, 0, 0, uiWidth, uiHeight);
        break;
    default:
        if (bytes.Byte() & 1) p->Release32BitPlane(p);
        break;
    }
}

void PlayDisplay(pKovaITextDisplay_t pDisplay, Bytes &bytes, const std::vector<std::string> &fonts)
{
    while (!bytes.AtEnd()) {
        const uint8_t ucWhat = bytes.Byte();
        if (ucWhat < 230) {
            PlayOne(pDisplay, bytes, ucWhat, fonts);
        } else {
            PlayPlane(pDisplay, bytes, ucWhat);
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
