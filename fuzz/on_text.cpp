// SPDX-License-Identifier: MIT
// Fuzzes the conversion of 16-bit text, with buffers of exactly the given sizes. The result is decoded by an
// independent decoder and must be the text as far as it fits.
#include "kova_textdisp_dfb/operations.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t uiSize);

static void Demand(bool bCondition, const char *pcWhat)
{
    if (bCondition) return;
    fprintf(stderr, "Wrong conversion: %s\n", pcWhat);
    abort();
}

// The number of bytes of a unit.
static uint32_t Length(unsigned uiUnit)
{
    return 1 + (uiUnit > 0x7F) + (uiUnit > 0x7FF);
}

static unsigned Decode(const unsigned char *puc, uint32_t uiLength)
{
    static const unsigned LEADS[] = {0, 0, 0xC0, 0xE0};
    unsigned uiUnit = puc[0] - LEADS[uiLength];

    for (uint32_t i = 1; i < uiLength; i++) {
        Demand(puc[i] >= 0x80 && puc[i] < 0xC0, "invalid continuation byte");
        uiUnit = uiUnit * 64 + puc[i] - 0x80;
    }
    return uiUnit;
}

static void Convert(const unsigned short *pusUnits, uint8_t ucUnits, uint32_t uiRoom)
{
    const std::unique_ptr<char[]> out(new char[uiRoom]);
    const auto *const puc = reinterpret_cast<const unsigned char *>(out.get());
    kova_uint32 uiBytes = 0, uiRead = 0;

    textdisp::ConvertUnicode2UTF8(pusUnits, ucUnits, out.get(), uiRoom, &uiBytes);
    Demand(uiBytes <= uiRoom, "more bytes than fit");
    uint8_t ucUnit = 0;
    for (; ucUnit < ucUnits && uiRead + Length(pusUnits[ucUnit]) <= uiRoom; ucUnit++) {
        const uint32_t uiLength = Length(pusUnits[ucUnit]);
        Demand(uiRead + uiLength <= uiBytes, "a unit that fits is missing");
        Demand(Decode(puc + uiRead, uiLength) == pusUnits[ucUnit], "a unit has another value");
        uiRead += uiLength;
    }
    Demand(uiRead == uiBytes, "bytes after the last unit that fits");
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t uiSize)
{
    if (uiSize < 2) return 0;
    const uint32_t uiRoom = pData[0] < 250 ? pData[0] : pData[0] < 253 ? 256 : 1024;
    const auto eEncoding = KovaTextEncoding_e(pData[1] % 4);
    const auto ucBytes = uint8_t(uiSize - 2 > 255 ? 255 : uiSize - 2);
    const std::unique_ptr<uint8_t[]> text(new uint8_t[ucBytes]);
    memcpy(text.get(), pData + 2, ucBytes);
    const auto *const pusUnits = reinterpret_cast<const unsigned short *>(text.get());

    Convert(pusUnits, ucBytes / 2, uiRoom);

    // As called for drawing and measuring; 256 bytes is the smallest buffer of any caller.
    const std::unique_ptr<char[]> out(new char[256]);
    const kova_uint32 uiBytes = textdisp::ToUTF8(pusUnits, ucBytes, eEncoding, out.get(), 256);
    Demand(uiBytes <= 256, "more bytes than fit");
    if (eEncoding == KOVA_TEXT_UTF8) {
        Demand(uiBytes == ucBytes && memcmp(out.get(), text.get(), ucBytes) == 0, "UTF-8 was changed");
    } else if (eEncoding != KOVA_TEXT_UNICODE) {
        Demand(uiBytes == 0, "an encoding without a conversion gave bytes");
    }
    return 0;
}
