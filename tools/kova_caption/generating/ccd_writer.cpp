// SPDX-License-Identifier: MIT
#include "generating/writers.h"

#include <cstdio>

#include "base/timestamp.h"

namespace caption
{

std::string HexText(const encoding::ByteString &bytes)
{
    std::string text;

    for (const std::uint8_t byte : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%02X", unsigned(byte));
        text += digits;
    }
    return text;
}

std::string CcdText(const Recording &recording)
{
    const std::size_t last = recording.frames.size() - 1;
    std::string text = "# " + recording.title + "\n";

    for (std::size_t i = 0; i <= last; ++i) {
        const std::string triplets = HexText(SentTriplets(recording.frames[i]));
        // The last line lets the time run to the end.
        if (triplets.empty() && i < last) continue;
        text += Timestamp((FrameTime(i) + 500) / 1000) + " " + triplets + "\n";
    }
    return text;
}

} // namespace caption
