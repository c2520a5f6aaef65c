// SPDX-License-Identifier: MIT
// The forms in which the library speaks. Each half defines TEXTDISP_SOURCE, the name its records carry as
// their file, before it includes this. Every form is one expression: none returns, jumps or declares.
#ifndef TEXTDISP_LOG_H
#define TEXTDISP_LOG_H

#include "kova_debug.h"

#include <pthread.h>

namespace textdisp
{

enum { LEVEL_ERROR = 1, LEVEL_LOG = 5 };

// The operation that a record speaks for. A helper that reports for its caller takes one, made by
// TEXTDISP_HERE.
struct Place_t {
    const char *pcFunction;
    int iLine;
};

// Off as a rule: one load and one branch then.
inline bool IsLogged(int iLevel)
{
    return __builtin_expect(__atomic_load_n(&__kova_debug_min, __ATOMIC_RELAXED) >= iLevel, false);
}

inline unsigned long Self()
{
    return (unsigned long)pthread_self();
}

// What "%ld" prints of a 32-bit value on the set: sign-extended, on every machine.
template <typename Value> long Long(Value value)
{
    return long(static_cast<int>(value));
}

// Out of line, for they are written many times and seldom run: cold, so that the compiler keeps the ways that
// lead there small and out of the way. The gate of the two traces is their caller's.
#define TEXTDISP_COLD __attribute__((cold))
TEXTDISP_COLD void LogError(const char *pcFile, const char *pcFunction, int iLine, const char *pcMessage);
TEXTDISP_COLD void LogEntry(const char *pcFile, const char *pcFunction, int iLine);
TEXTDISP_COLD void LogExit(const char *pcFile, const char *pcFunction, int iLine);

} // namespace textdisp

#define TEXTDISP_HERE (textdisp::Place_t{__func__, __LINE__})

#define TEXTDISP_RECORD_AT(place, level, ...)                                                                \
    (textdisp::IsLogged(level) ? kova_debug_log(KOVA_CAT_DEFAULT, level, TEXTDISP_SOURCE,                    \
                                                (place).pcFunction, (place).iLine, __VA_ARGS__)              \
                               : void())

#define TEXTDISP_RECORD(level, ...) TEXTDISP_RECORD_AT(TEXTDISP_HERE, level, __VA_ARGS__)

// Three records: where, what, and the end of the line. Each is gated on its own.
#define TEXTDISP_ERROR(message) textdisp::LogError(TEXTDISP_SOURCE, __func__, __LINE__, message)
#define TEXTDISP_ERROR_WITH(...)                                                                             \
    (TEXTDISP_RECORD(textdisp::LEVEL_ERROR, "[File:%s Function:%s Line:%d]:", TEXTDISP_SOURCE, __func__,     \
                     __LINE__),                                                                              \
     TEXTDISP_RECORD(textdisp::LEVEL_ERROR, __VA_ARGS__), TEXTDISP_RECORD(textdisp::LEVEL_ERROR, "\n"))

// One record, for the failures that have a format of their own.
#define TEXTDISP_ERROR_RECORD(...) TEXTDISP_RECORD(textdisp::LEVEL_ERROR, __VA_ARGS__)

#define TEXTDISP_TRACE(...) TEXTDISP_RECORD(textdisp::LEVEL_LOG, __VA_ARGS__)

// The same with the place first, and the operation's own format and values behind it.
#define TEXTDISP_TRACE_WITH(prefix, text, ...)                                                               \
    TEXTDISP_TRACE("TextDisp: " prefix "%s():%d tpid:0x%lx " text "\n", __func__, __LINE__,                  \
                   textdisp::Self(), __VA_ARGS__)

#define TEXTDISP_ENTER()                                                                                     \
    (textdisp::IsLogged(textdisp::LEVEL_LOG) ? textdisp::LogEntry(TEXTDISP_SOURCE, __func__, __LINE__)       \
                                             : void())
#define TEXTDISP_ENTER_TEXT(text)                                                                            \
    TEXTDISP_TRACE("TextDisp: %s():%d tpid:0x%lx " text "\n", __func__, __LINE__, textdisp::Self())
#define TEXTDISP_ENTER_WITH(text, ...) TEXTDISP_TRACE_WITH("", text, __VA_ARGS__)
#define TEXTDISP_EXIT()                                                                                      \
    (textdisp::IsLogged(textdisp::LEVEL_LOG) ? textdisp::LogExit(TEXTDISP_SOURCE, __func__, __LINE__)        \
                                             : void())
#define TEXTDISP_EXIT_WITH(text, ...) TEXTDISP_TRACE_WITH("Exit ", text, __VA_ARGS__)

#endif
