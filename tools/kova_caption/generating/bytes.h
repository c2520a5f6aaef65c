// SPDX-License-Identifier: MIT
#ifndef KOVA_CAPTION_GENERATING_BYTES_H
#define KOVA_CAPTION_GENERATING_BYTES_H

#include <cstdint>
#include <vector>

namespace caption::encoding
{

using ByteString = std::vector<std::uint8_t>;

inline ByteString operator+(ByteString left, const ByteString &right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

} // namespace caption::encoding

#endif
