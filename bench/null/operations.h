// SPDX-License-Identifier: MIT
// Every operation of the table, called once, on a display that the null DirectFB carries.
#ifndef BENCH_NULL_OPERATIONS_H
#define BENCH_NULL_OPERATIONS_H

#include "bed.h"

namespace bench
{

// What an operation is called with. A call alternates between two sets of values where the operation does
// nothing if it is given the same again.
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
    void (*pPrepare)(NullDisplay &display); // before each call, or null: the call may be repeated
    KovaGraphicLayer_e eLayer;
    Colors_e eColors;
};

const std::vector<Operation> &Operations();

} // namespace bench

#endif
