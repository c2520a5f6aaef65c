// SPDX-License-Identifier: MIT
// Bytes played as calls: each byte sequence is a program of operations with hostile arguments, inside what a
// caller owes the library (pointers that point to what the other arguments say).
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
    // A number that is often small, often at a limit, and sometimes anything.
    uint32_t Number();
    // A number of which the DirectFB below only stands the ones under a bound.
    uint32_t Bounded(bool bAny, uint32_t uiBound)
    {
        const uint32_t uiNumber = Number();
        return bAny ? uiNumber : uiNumber % uiBound;
    }
    // A plane's width or height: mostly small, for memory takes time, now and then more than a plane may
    // have.
    uint32_t Size(bool bAny = false)
    {
        const uint8_t uc = Byte();
        return uc < 230 ? uc : bAny && uc > 250 ? Number() : Word() % 2100;
    }
    // A value of an enumeration: one of the first, or any.
    int Choice(uint8_t ucFirst)
    {
        const uint8_t uc = Byte();
        return uc == 255 ? int(Word()) : uc % ucFirst;
    }
    // One in 256 of the pointers a caller may leave out, or must not and is refused for.
    template <typename T> T *Maybe(T *p)
    {
        return Byte() == 255 ? nullptr : p;
    }
    // Mostly a context that may act.
    kova_sint8 Context()
    {
        const uint8_t uc = Byte();
        return kova_sint8(uc < 200 ? uc % 4 : uc);
    }

private:
    const uint8_t *m_pNext, *m_pEnd;
};

// What the DirectFB below stands: the library hands most numbers on as they are, and the published one
// crashes by itself at copies and fonts far out of every bound.
struct Below {
    std::vector<std::string> fonts; // names to open
    bool bAnyNumber; // sizes of planes and fonts, copies and far ends of lines may be any number
};

// Calls operations of the table until the bytes end.
void PlayOperations(pKovaITextDisplay_t pDisplay, Bytes &bytes, const Below &below);

// Calls the facade too: contexts are created, activated and destroyed in between.
void PlayDisplay(pKovaITextDisplay_t pDisplay, Bytes &bytes, const Below &below);

// Destroys the contexts that are there.
void EndContexts(pKovaITextDisplay_t pDisplay);

} // namespace fuzz

#endif
