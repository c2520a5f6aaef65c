// SPDX-License-Identifier: MIT
#include "terminal/report.h"

#include <cstdio>

namespace caption
{

void Report(const std::string &message)
{
    std::fprintf(stderr, "kova-caption: %s.\n", message.c_str());
}

} // namespace caption
