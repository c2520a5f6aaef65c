// SPDX-License-Identifier: MIT
#ifndef KOVA_CAPTION_BASE_TIMESTAMP_H
#define KOVA_CAPTION_BASE_TIMESTAMP_H

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <string>

namespace caption
{

// Hours, minutes, seconds and milliseconds: 01:02:03.004.
inline std::string Timestamp(std::int64_t milliseconds)
{
    char text[40];
    const char *const sign = milliseconds < 0 ? "-" : "";
    const std::int64_t time = milliseconds < 0 ? -milliseconds : milliseconds;

    std::snprintf(text, sizeof text, "%s%02" PRId64 ":%02" PRId64 ":%02" PRId64 ".%03" PRId64, sign,
                  time / 3600000, time / 60000 % 60, time / 1000 % 60, time % 1000);
    return text;
}

} // namespace caption

#endif
