// SPDX-License-Identifier: MIT
#include "log.h"

namespace textdisp
{

// The formats are the library's own texts, so nothing from outside is ever used as one.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
template <typename... Values>
static void WriteError(const char *pcFile, const char *pcFunction, int iLine, const char *pcFormat,
                       Values... values)
{
    if (!IsLogged(LEVEL_ERROR)) return;
    kova_debug_log(KOVA_CAT_DEFAULT, LEVEL_ERROR, pcFile, pcFunction, iLine, pcFormat, values...);
}
#pragma GCC diagnostic pop

void LogError(const char *pcFile, const char *pcFunction, int iLine, const char *pcMessage)
{
    WriteError(pcFile, pcFunction, iLine, "[File:%s Function:%s Line:%d]:", pcFile, pcFunction, iLine);
    WriteError(pcFile, pcFunction, iLine, pcMessage);
    WriteError(pcFile, pcFunction, iLine, "\n");
}

void LogEntry(const char *pcFile, const char *pcFunction, int iLine)
{
    kova_debug_log(KOVA_CAT_DEFAULT, LEVEL_LOG, pcFile, pcFunction, iLine, "TextDisp: %s():%d tpid:0x%lx \n",
                   pcFunction, iLine, Self());
}

void LogExit(const char *pcFile, const char *pcFunction, int iLine)
{
    kova_debug_log(KOVA_CAT_DEFAULT, LEVEL_LOG, pcFile, pcFunction, iLine,
                   "TextDisp: Exit %s():%d tpid:0x%lx \n", pcFunction, iLine, Self());
}

} // namespace textdisp
