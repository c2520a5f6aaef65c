// SPDX-License-Identifier: MIT
#include "coverage.h"

#include "../carriage/bytes.h"

#include <fcntl.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace captions
{

static constexpr uint32_t Tag(char a, char b, char c, char d)
{
    return uint32_t(a) << 24 | uint32_t(b) << 16 | uint32_t(c) << 8 | uint32_t(d);
}

static int Signed(uint32_t word)
{
    return int16_t(word);
}

// A table of the first face; empty if there is none.
static Bytes Table(Bytes file, uint32_t tag)
{
    constexpr size_t kHeader = 12, kRecord = 16;
    const Bytes face = file.Word32(0) == Tag('t', 't', 'c', 'f') ? file.From(file.Word32(12)) : file;
    const size_t count = face.Word16(4);

    for (size_t i = 0; i < count; ++i) {
        const Bytes record = face.From(kHeader + kRecord * i);
        if (record.Word32(0) == tag) return file.From(record.Word32(8)).First(record.Word32(12));
    }
    return {nullptr, 0};
}

static void Add(uint32_t character, Coverage &coverage)
{
    coverage.characters[character / 8] |= uint8_t(1u << character % 8);
}

// Segments of characters, each with an offset to glyph numbers or a difference to them.
static void ReadSegments(Bytes table, Coverage &coverage)
{
    const size_t twice = table.Word16(6) & ~1u;
    constexpr size_t kEnds = 14;
    const size_t starts = kEnds + twice + 2, deltas = starts + twice, offsets = deltas + twice;
    uint32_t next = 0;

    for (size_t i = 0; i < twice; i += 2) {
        const uint32_t first = table.Word16(starts + i), last = table.Word16(kEnds + i);
        const uint32_t offset = table.Word16(offsets + i);
        // They are in rising order, which also bounds the work on a damaged file.
        if (offsets + i + 2 > table.size || first < next) return;
        next = last + 1;
        for (uint32_t character = first; character <= last && character < 0xFFFF; ++character) {
            const uint32_t glyph = offset ? table.Word16(offsets + i + offset + 2 * (character - first))
                                          : (character + table.Word16(deltas + i)) & 0xFFFF;
            if (glyph != 0) Add(character, coverage);
        }
    }
}

// Groups of characters with consecutive glyphs.
static void ReadGroups(Bytes table, Coverage &coverage)
{
    constexpr size_t kHeader = 16, kGroup = 12;
    const size_t present = table.size > kHeader ? (table.size - kHeader) / kGroup : 0;
    const size_t announced = table.Word32(12);
    uint32_t next = 0;

    for (size_t i = 0; i < (announced < present ? announced : present); ++i) {
        const Bytes group = table.From(kHeader + kGroup * i);
        const uint32_t last = group.Word32(4) < 0xFFFF ? group.Word32(4) : 0xFFFF;
        if (group.Word32(0) < next || group.Word32(0) > 0xFFFF) return;
        next = last + 1;
        for (uint32_t character = group.Word32(0); character <= last; ++character) {
            if (group.Word32(8) + (character - group.Word32(0)) != 0) Add(character, coverage);
        }
    }
}

static bool ReadCharacters(Bytes map, Coverage &coverage)
{
    constexpr size_t kHeader = 4, kRecord = 8;
    constexpr uint32_t kUnicode = 0, kWindows = 3, kSegments = 4, kGroups = 12;
    const size_t count = map.Word16(2);
    bool found = false;

    for (size_t i = 0; i < count; ++i) {
        const Bytes record = map.From(kHeader + kRecord * i);
        const uint32_t platform = record.Word16(0), encoding = record.Word16(2);
        const bool unicode =
            platform == kUnicode || (platform == kWindows && (encoding == 1 || encoding == 10));
        const Bytes table = map.From(record.Word32(4));
        if (!unicode || table.size == 0) continue;
        if (table.Word16(0) == kSegments) {
            ReadSegments(table, coverage);
            found = true;
        } else if (table.Word16(0) == kGroups) {
            ReadGroups(table, coverage);
            found = true;
        }
    }
    return found;
}

static void ReadProportions(Bytes file, Coverage &coverage)
{
    const Bytes lines = Table(file, Tag('h', 'h', 'e', 'a'));
    const Bytes post = Table(file, Tag('p', 'o', 's', 't'));
    const int unit = int(Table(file, Tag('h', 'e', 'a', 'd')).Word16(18));
    const int ascent = Signed(lines.Word16(4)), descent = -Signed(lines.Word16(6));

    if (ascent > 0 && descent >= 0) coverage.ascent = uint16_t(ascent * kCoverageUnit / (ascent + descent));
    // Below the base line is negative there.
    const int top = -Signed(post.Word16(8)), thickness = Signed(post.Word16(10));
    if (unit < 16 || thickness <= 0 || thickness > unit || top < 0 || top > unit) return;
    coverage.underline_thickness = int16_t(thickness * kCoverageUnit / unit);
    coverage.underline_top = int16_t(top * kCoverageUnit / unit);
}

void ReadCoverage(const char *name, Coverage &coverage)
{
    struct stat status;
    const int file = open(name, O_RDONLY | O_CLOEXEC);
    bool found = false;

    memset(&coverage, 0, sizeof coverage);
    coverage.ascent = kCoverageUnit * 4 / 5;
    coverage.underline_top = kCoverageUnit / 16;
    coverage.underline_thickness = kCoverageUnit / 16;
    if (file >= 0) {
        const bool regular = fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0;
        const auto size = regular ? size_t(status.st_size) : 0;
        void *const data = regular ? mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0) : MAP_FAILED;
        if (data != MAP_FAILED) {
            const Bytes bytes = {static_cast<const uint8_t *>(data), size};
            ReadProportions(bytes, coverage);
            found = ReadCharacters(Table(bytes, Tag('c', 'm', 'a', 'p')), coverage);
            munmap(data, size);
        }
        close(file);
    }
    if (!found) memset(coverage.characters, 0xFF, sizeof coverage.characters);
}

} // namespace captions
