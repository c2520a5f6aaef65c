// SPDX-License-Identifier: MIT
// Counts what a program allocates: the C library's own functions come behind these, for the whole program. For one source
// file of a program.
#ifndef KOVA_TESTS_CAPTIONS_ALLOCATIONS_H
#define KOVA_TESTS_CAPTIONS_ALLOCATIONS_H

#include <cstddef>
#include <cstdlib>

// NOLINTBEGIN(bugprone-reserved-identifier): the C library's names
extern "C" void *__libc_malloc(size_t size);
extern "C" void *__libc_calloc(size_t count, size_t size);
extern "C" void *__libc_realloc(void *block, size_t size);
// NOLINTEND(bugprone-reserved-identifier)

static bool s_counts;
static size_t s_allocations;
static size_t s_bytes;

static void Count(size_t bytes)
{
    if (!s_counts) return;
    s_allocations++;
    s_bytes += bytes;
}

extern "C" void *malloc(size_t size)
{
    Count(size);
    return __libc_malloc(size);
}

extern "C" void *calloc(size_t count, size_t size)
{
    Count(count * size);
    return __libc_calloc(count, size);
}

extern "C" void *realloc(void *block, size_t size)
{
    Count(size);
    return __libc_realloc(block, size);
}

#endif
