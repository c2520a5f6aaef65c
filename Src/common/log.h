// SPDX-License-Identifier: MIT
// The logging macros. Each half of the library defines TEXTDISP_SOURCE, the file name in its records, before it
// includes this. Every macro is one expression: none returns, jumps or declares.
#ifndef TEXTDISP_LOG_H
#define TEXTDISP_LOG_H

#include "kova_debug.h"

#include <pthread.h>

namespace textdisp
{

enum { LEVEL_ERROR = 1, LEVEL_LOG = 5 };

// The operation whose name a record carries. A helper that reports for its caller takes one, made by TEXTDISP_HERE.
struct Place_t {
    const char *pcFunction;
    int iLine;
};

// Logging is off as a rule, and then costs one load and one branch.
inline bool IsLogged(int iLevel)
{
    return __builtin_expect(__atomic_load_n(&__kova_debug_min, __ATOMIC_RELAXED) >= iLevel, false);
}

inline unsigned long Self()
{
    return (unsigned long)pthread_self();
}

// Makes "%ld" print a 32-bit value as the 32-bit target prints it, sign-extended, on every machine.
template <typename Value> long Long(Value value)
{
    return long(static_cast<int>(value));
}

// Out of line, because they are written many times and seldom run; cold, so that the compiler keeps the paths that
// lead to them small and out of the way. The macros test the threshold of the two traces.
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

// Three records: the place, the message and the end of the line. Each tests the threshold on its own.
#define TEXTDISP_ERROR(message) textdisp::LogError(TEXTDISP_SOURCE, __func__, __LINE__, message)
#define TEXTDISP_ERROR_WITH(...)                                                                             \
    (TEXTDISP_RECORD(textdisp::LEVEL_ERROR, "[File:%s Function:%s Line:%d]:", TEXTDISP_SOURCE, __func__,     \
                     __LINE__),                                                                              \
     TEXTDISP_RECORD(textdisp::LEVEL_ERROR, __VA_ARGS__), TEXTDISP_RECORD(textdisp::LEVEL_ERROR, "\n"))

// One record, for the failures that have a format of their own.
#define TEXTDISP_ERROR_RECORD(...) TEXTDISP_RECORD(textdisp::LEVEL_ERROR, __VA_ARGS__)

#define TEXTDISP_TRACE(...) TEXTDISP_RECORD(textdisp::LEVEL_LOG, __VA_ARGS__)
#define TEXTDISP_TRACE_AT(place, ...) TEXTDISP_RECORD_AT(place, textdisp::LEVEL_LOG, __VA_ARGS__)

// The same with the place first and the operation's own format and values after it.
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
