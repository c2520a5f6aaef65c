// SPDX-License-Identifier: MIT
// Caption bytes as a text file holds them, before they are decoded.
#ifndef KOVA_CAPTION_READING_CAPTIONS_TRIPLETS_H
#define KOVA_CAPTION_READING_CAPTIONS_TRIPLETS_H

#include <array>
#include <cstdint>
#include <vector>

namespace caption
{

// A cc_type with its flags, and two bytes of caption data.
struct Triplet {
    std::int64_t time = 0; // microseconds of the file's own clock
    std::array<std::uint8_t, 3> bytes = {};
};

struct Triplets {
    std::vector<Triplet> triplets; // in the order of the file
    std::int64_t end = 0;          // microseconds: the latest time that the file names
};

// Whether cc_valid is set; other triplets are filler.
inline bool IsValid(std::uint8_t flags)
{
    return (flags & 4) != 0;
}

} // namespace caption

#endif
