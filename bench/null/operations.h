// SPDX-License-Identifier: MIT
// Every operation of the table, as a single call on a display of the null DirectFB.
#ifndef BENCH_NULL_OPERATIONS_H
#define BENCH_NULL_OPERATIONS_H

#include "fixture.h"

namespace bench
{

// The display of the calls. Turn alternates between two values, for operations that do nothing if they get
// the same value again.
class NullDisplay
{
public:
    NullDisplay(Colors_e eColors, KovaGraphicLayer_e eLayer);

    pKovaITextDisplay_t operator->() const
    {
        return m_display;
    }
    operator pKovaITextDisplay_t() const
    {
        return m_display;
    }
    kova_uint32 Turn()
    {
        return m_uiTurn = 1 - m_uiTurn;
    }

private:
    Display m_display;
    kova_uint32 m_uiTurn = 0;
};

struct Operation {
    const char *pcName;
    void (*pCall)(NullDisplay &display);
    void (*pPrepare)(NullDisplay &display); // called before each call; null if the call can be repeated
    KovaGraphicLayer_e eLayer;
    Colors_e eColors;
};

const std::vector<Operation> &Operations();

} // namespace bench

#endif
