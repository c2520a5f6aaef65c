/* SPDX-License-Identifier: MIT */
/* The integer types that directfb.h uses, without the C library headers that published DirectFB includes for them. */
#ifndef LEAN_DIRECT_TYPES_H
#define LEAN_DIRECT_TYPES_H

#include <stdint.h>
#include <sys/time.h>

typedef uint8_t u8;
typedef uint16_t u16;
typedef uint32_t u32;
typedef uint64_t u64;
typedef int8_t s8;
typedef int16_t s16;
typedef int32_t s32;
typedef int64_t s64;

#ifndef DIRECT_API
#define DIRECT_API
#endif
#include <direct/result.h>

#endif
