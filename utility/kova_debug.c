// SPDX-License-Identifier: MIT
/* A stub of the platform's libUtility.so, for development machines. It writes records to standard error as
   lines:

       LOG     default Src/kova_textdisp_dfb DrawString:131 [7f3a41c0] text

   A line consists of level, category, source, function and line, thread, and the text.

   KOVA_DEBUG=0 to 5 in the environment sets the threshold (default 1: errors). The library logs an error as
   three records, and only the last one ends the line. The stub keeps them together, whatever other threads
   log meanwhile. */
#define _GNU_SOURCE
#include "kova_debug.h"

#include <pthread.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

struct KovaDebugCategory {
    char acName[32];
    unsigned int uiColour; /* foreground 0 to 7, background 16 times 0 to 7, bold 256 */
};

static KovaDebugCategory s_default = {"default", 7};
KovaDebugCategory *KOVA_CAT_DEFAULT = &s_default;
int __kova_debug_min = 1;

/* An unfinished line, and the function and line number that logged it. */
struct line {
    char acText[2048];
    size_t uiLength;
    const char *pcFunction;
    int iLine;
};

static pthread_key_t s_lineKey;
static int s_bColoured;

static const char *const s_apcLevel[] = {"NONE", "ERROR", "WARNING", "INFO", "DEBUG", "LOG"};
static const char *const s_apcLevelColour[] = {"",         "\033[1;31m", "\033[33m",
                                               "\033[32m", "\033[36m",   "\033[2m"};

static void FlushLine(struct line *pLine)
{
    if (pLine->uiLength == 0) return;
    fprintf(stderr, "%.*s%s\n", (int)pLine->uiLength, pLine->acText, s_bColoured ? "\033[0m" : "");
    pLine->uiLength = 0;
}

static void EndThread(void *pArgument)
{
    FlushLine(pArgument);
}

__attribute__((constructor)) static void Start(void)
{
    const char *const pcThreshold = getenv("KOVA_DEBUG");

    pthread_key_create(&s_lineKey, EndThread);
    s_bColoured = isatty(STDERR_FILENO);
    if (pcThreshold && strlen(pcThreshold) == 1 && *pcThreshold >= '0' && *pcThreshold <= '5') {
        __kova_debug_min = *pcThreshold - '0';
    } else if (pcThreshold) {
        fprintf(stderr, "KOVA_DEBUG=%s is not understood: give 0 (nothing) to 5 (everything).\n",
                pcThreshold);
    }
}

__attribute__((destructor)) static void Finish(void)
{
    struct line *const pLine = pthread_getspecific(s_lineKey);

    if (pLine) EndThread(pLine);
    pthread_key_delete(s_lineKey);
}

static struct line *ThisThreadsLine(void)
{
    static _Thread_local struct line t_line;

    /* The key's destructor flushes the line when the thread ends. */
    if (!pthread_getspecific(s_lineKey)) pthread_setspecific(s_lineKey, &t_line);
    return &t_line;
}

static void Append(struct line *pLine, const char *pcText, size_t uiLength)
{
    const size_t uiRoom = sizeof pLine->acText - pLine->uiLength;

    if (uiLength > uiRoom) uiLength = uiRoom;
    memcpy(pLine->acText + pLine->uiLength, pcText, uiLength);
    pLine->uiLength += uiLength;
}

static void BeginLine(struct line *pLine, const KovaDebugCategory *pCategory, int iLevel, const char *pcFile)
{
    char acHead[256];
    const int iShown = iLevel >= 1 && iLevel <= 5 ? iLevel : 0;
    const int iLength =
        snprintf(acHead, sizeof acHead, "%s%-7s %s %s %s:%d [%lx] ",
                 s_bColoured ? s_apcLevelColour[iShown] : "", s_apcLevel[iShown], pCategory->acName, pcFile,
                 pLine->pcFunction, pLine->iLine, (unsigned long)pthread_self());

    Append(pLine, acHead, iLength < (int)sizeof acHead ? (size_t)iLength : sizeof acHead - 1);
}

KovaDebugCategory *kova_debug_category_new(const char *name, unsigned int colour, const char *description)
{
    KovaDebugCategory *const pCategory = calloc(1, sizeof *pCategory);

    (void)description;
    if (!pCategory) return NULL;
    snprintf(pCategory->acName, sizeof pCategory->acName, "%s", name);
    pCategory->uiColour = colour;
    return pCategory;
}

void kova_debug_log(KovaDebugCategory *category, int level, const char *file, const char *function, int line,
                    const char *format, ...)
{
    struct line *const pLine = ThisThreadsLine();
    char acText[1024];
    va_list arguments;

    va_start(arguments, format);
    const int iLength = vsnprintf(acText, sizeof acText, format, arguments);
    va_end(arguments);
    if (iLength < 0) return;
    if (iLength >= (int)sizeof acText && format[strlen(format) - 1] == '\n') {
        acText[sizeof acText - 2] = '\n'; /* a truncated record still ends its line */
    }

    /* A record from another location: the pending line is complete. */
    if (pLine->pcFunction != function || pLine->iLine != line) FlushLine(pLine);
    pLine->pcFunction = function;
    pLine->iLine = line;

    /* Empty lines around a banner are dropped; a record can contain several lines. */
    for (const char *pcRest = acText; *pcRest;) {
        const size_t uiPiece = strcspn(pcRest, "\n");
        if (uiPiece) {
            if (pLine->uiLength == 0) BeginLine(pLine, category, level, file);
            Append(pLine, pcRest, uiPiece);
        }
        if (pcRest[uiPiece] == '\n') FlushLine(pLine);
        pcRest += uiPiece + (pcRest[uiPiece] == '\n');
    }
}
