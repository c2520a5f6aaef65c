// SPDX-License-Identifier: MIT
#ifndef KOVA_CAPTION_STATISTICS_H
#define KOVA_CAPTION_STATISTICS_H

#include <algorithm>
#include <cmath>
#include <vector>

namespace caption
{

// The value that so many per cent of all do not exceed; of none 0.
inline double Percentile(std::vector<double> values, double percent)
{
    if (values.empty()) return 0;
    const auto rank = std::size_t(std::ceil(percent / 100 * double(values.size())));
    const auto place = values.begin() + std::ptrdiff_t(std::clamp<std::size_t>(rank, 1, values.size()) - 1);
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

} // namespace caption

#endif
