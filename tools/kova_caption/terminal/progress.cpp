// SPDX-License-Identifier: MIT
#include "terminal/progress.h"

#include <cstdio>
#include <string>

#include <unistd.h>

namespace caption
{

Progress::Progress(std::size_t total) : total_(total), watched_(isatty(STDERR_FILENO) == 1)
{
}

Progress::~Progress()
{
    Hide();
}

void Progress::Show(std::size_t done) const
{
    static const std::size_t width = 40;
    if (!watched_) return;

    const std::size_t filled = width * done / total_;
    std::fprintf(stderr, "\r[%s%s] %zu of %zu", std::string(filled, '#').c_str(),
                 std::string(width - filled, ' ').c_str(), done, total_);
    std::fflush(stderr);
}

void Progress::Hide() const
{
    if (watched_) std::fputs("\r\x1B[K", stderr);
}

} // namespace caption
