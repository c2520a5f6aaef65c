// SPDX-License-Identifier: MIT
// What the renderer reads from a font file: which characters of the Basic Multilingual Plane it has, where its base line
// is, and its underline. The table of operations cannot say the first two.
#ifndef KOVA_CAPTIONS_COVERAGE_H
#define KOVA_CAPTIONS_COVERAGE_H

#include <stdint.h>

namespace captions
{

struct Coverage {
    // Bit n % 8 of byte n / 8 is character n.
    uint8_t characters[0x10000 / 8];
    // In 4096ths of the line's height: from its top to the base line.
    uint16_t ascent;
    // In 4096ths of the font's height, from the base line down.
    int16_t underline_top;
    int16_t underline_thickness;

    bool Has(uint16_t character) const
    {
        return characters[character / 8] >> character % 8 & 1;
    }
};

constexpr int kCoverageUnit = 4096;

// Reads TrueType and OpenType files, and the first face of a collection. What cannot be read has every character and usual
// proportions.
void ReadCoverage(const char *file, Coverage &coverage);

} // namespace captions

#endif
