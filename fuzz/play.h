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
    // A plane's width or height: large, but something that a surface can be made of.
    uint32_t Size()
    {
        return Word() % 2100;
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

// Calls operations of the table until the bytes end. Fonts are opened by the names given.
void PlayOperations(pKovaITextDisplay_t pDisplay, Bytes &bytes, const std::vector<std::string> &fonts);

// Calls the facade too: contexts are created, activated and destroyed in between.
void PlayDisplay(pKovaITextDisplay_t pDisplay, Bytes &bytes, const std::vector<std::string> &fonts);

// Destroys the contexts that are there.
void EndContexts(pKovaITextDisplay_t pDisplay);

} // namespace fuzz

#endif
