// SPDX-License-Identifier: MIT
#include "terminal/stop_signals.h"

#include <cerrno>
#include <cstddef>
#include <iterator>

#include <fcntl.h>
#include <unistd.h>

namespace caption
{

static const int g_signals[] = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};
static int g_ends[2] = {-1, -1}; // of the pipe

StopSignals::StopSignals()
{
    static_assert(std::size(g_signals) == std::size(decltype(before_){}));
    struct sigaction noted = {};

    if (pipe2(g_ends, O_CLOEXEC | O_NONBLOCK) != 0) return;
    noted.sa_handler = [](int signal) {
        const int before = errno;
        const auto number = static_cast<unsigned char>(signal);
        if (write(g_ends[1], &number, 1) < 0) errno = before; // a full pipe has a signal in it already
    };
    for (std::size_t i = 0; i < std::size(g_signals); ++i) sigaction(g_signals[i], &noted, &before_[i]);
}

StopSignals::~StopSignals()
{
    for (std::size_t i = 0; i < std::size(g_signals); ++i) sigaction(g_signals[i], &before_[i], nullptr);
    close(g_ends[0]);
    close(g_ends[1]);
}

int StopSignals::File() const
{
    return g_ends[0];
}

void StopSignals::Read() const
{
    unsigned char number = 0;
    if (read(g_ends[0], &number, 1) == 1) throw Interrupted{number};
}

} // namespace caption
