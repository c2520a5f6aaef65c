// SPDX-License-Identifier: MIT
/* The part of the platform's logging library, libUtility.so, that TextDisplay uses. */
#ifndef KOVA_DEBUG_H
#define KOVA_DEBUG_H

#ifdef __cplusplus
extern "C" {
#endif

typedef struct KovaDebugCategory KovaDebugCategory;

extern KovaDebugCategory *KOVA_CAT_DEFAULT; /* the default category */
extern int __kova_debug_min;                /* the global threshold, 0 (nothing) to 5 (everything) */

KovaDebugCategory *kova_debug_category_new(const char *name, unsigned int colour, const char *description);

void kova_debug_log(KovaDebugCategory *category, int level, const char *file, const char *function, int line,
                    const char *format, ...) __attribute__((format(printf, 6, 7)));

#ifdef __cplusplus
}
#endif

#endif
