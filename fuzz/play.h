// SPDX-License-Identifier: MIT
// Interprets bytes as calls: each input is a program of operations with hostile arguments, within the
// preconditions of the library (pointers are valid for the sizes in the other arguments).
#ifndef FUZZ_PLAY_H
#define FUZZ_PLAY_H

#include "kova/kova_textdisp.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace fuzz
{

class Bytes
{
public:
    Bytes(const uint8_t *pData, size_t uiSize) : m_pNext(pData), m_pEnd(pData + uiSize)
    {
    }

    bool AtEnd() const
    {
        return m_pNext == m_pEnd;
    }
    uint8_t Byte()
    {
        return AtEnd() ? uint8_t(0) : *m_pNext++;
    }
    uint32_t Word()
    {
        uint32_t uiWord = 0;
        for (int i = 0; i < 4; i++) uiWord = uiWord << 8 | Byte();
        return uiWord;
    }
    // Often a small number, often one at a limit, sometimes any.
    uint32_t Number();
    // A number below a bound, unless any number is allowed.
    uint32_t Bounded(bool bAny, uint32_t uiBound)
    {
        const uint32_t uiNumber = Number();
        return bAny ? uiNumber : uiNumber % uiBound;
    }
    // A plane's width or height: mostly small, because large planes take time, sometimes more than is valid.
    uint32_t Size(bool bAny = false)
    {
        const uint8_t uc = Byte();
        return uc < 230 ? uc : bAny && uc > 250 ? Number() : Word() % 2100;
    }
    // A value of an enumeration: mostly one of the first ones, sometimes any number.
    int Choice(uint8_t ucFirst)
    {
        const uint8_t uc = Byte();
        return uc == 255 ? int(Word()) : uc % ucFirst;
    }
    // Null once in 256 times, for pointers that may be null or are checked.
    template <typename T> T *Maybe(T *p)
    {
        return Byte() == 255 ? nullptr : p;
    }
    // Mostly a valid context identifier.
    kova_sint8 Context()
    {
        const uint8_t uc = Byte();
        return kova_sint8(uc < 200 ? uc % 4 : uc);
    }

private:
    const uint8_t *m_pNext, *m_pEnd;
};

// The limits of the DirectFB in use: the library passes most numbers on unchanged, and published DirectFB
// crashes on copies and fonts that are far out of range.
struct Limits {
    std::vector<std::string> fonts; // names to open
    bool bAnyNumber;                // planes, fonts, copies and end points of lines can have any size
};

// Calls operations of the table until the input ends.
void PlayOperations(pKovaITextDisplay_t pDisplay, Bytes &bytes, const Limits &limits);

// Also calls the facade, which creates, activates and destroys contexts in between.
void PlayDisplay(pKovaITextDisplay_t pDisplay, Bytes &bytes, const Limits &limits);

// Destroys the existing contexts.
void EndContexts(pKovaITextDisplay_t pDisplay);

} // namespace fuzz

#endif
