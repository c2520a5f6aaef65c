// SPDX-License-Identifier: MIT
// Helpers for expectations in several files.
#ifndef TESTS_EXPECT_H
#define TESTS_EXPECT_H

#include "support.h"

#include <cstring>
#include <thread>

namespace test
{

// Whether another thread could lock the display now.
inline bool LockIsFree(pKovaITextDisplay_t pDisplay)
{
    bool bFree = false;

    std::thread([&] {
        pthread_mutex_t *const pMutex = &RecordOf(pDisplay)->display_mutex;
        bFree = pthread_mutex_trylock(pMutex) == 0;
        if (bFree) pthread_mutex_unlock(pMutex);
    }).join();
    return bFree;
}

inline bool Contains(const std::string &text, const std::string &part)
{
    return text.find(part) != std::string::npos;
}

inline int CountOf(const std::string &text, const std::string &part)
{
    int iCount = 0;
    for (size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) iCount++;
    return iCount;
}

// A trace without the hundreds of records of loaded colours and encodings, and with one name for all
// palettes: each request creates an object.
inline std::string Tidy(const std::string &trace)
{
    std::string tidy;

    for (size_t at = 0; at < trace.size();) {
        const size_t end = trace.find('\n', at) + 1;
        std::string line = trace.substr(at, end - at);
        at = end;
        if (Contains(line, "log SetPaletteInternal: colors[")) continue;
        if (Contains(line, "log encoding_callback: id:")) continue;
        const size_t number = line.find("palette") + strlen("palette");
        if (Contains(line, "palette"))
            line.erase(number, line.find_first_not_of("0123456789", number) - number);
        tidy += line;
    }
    return tidy;
}

// Inserts a line into a trace after the first line that contains the call.
inline std::string PutAfter(const std::string &trace, const std::string &call, const std::string &line)
{
    const size_t at = trace.find(call);

    EXPECT_NE(at, std::string::npos) << call;
    return at == std::string::npos ? trace : std::string(trace).insert(trace.find('\n', at) + 1, line);
}

// The calls that clear the plane in Show and Hide, under the lock, on the named surface.
inline std::string Wiped(const std::string &surface, ColorMode_e eMode, const std::string &size)
{
    const std::string fetched = "  " + surface +
                                ".GetPalette\n"
                                "  palette.SetEntries 1 at 0: 0,0,0,0\n"
                                "  palette.Release\n";

    return (eMode == INDEX_COLORS ? fetched + "  " + surface + ".SetColorIndex 0\n"
                                  : "  " + surface + ".SetColor 0,0,0,0\n") +
           "  " + surface + ".FillRectangle 0,0 " + size + "\n";
}

} // namespace test

#endif
