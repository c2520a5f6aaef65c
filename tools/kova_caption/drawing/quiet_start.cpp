// SPDX-License-Identifier: MIT
#include "drawing/quiet_start.h"

#include <cstdio>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

namespace caption
{

// DirectFB prints the words of the command line, and Debian's package lacks the library of one module.
static bool IsHarmless(const std::string &line)
{
    return line.rfind("commandline read:", 0) == 0 ||
           line.find("libdirectfb_mesa_system.so") != std::string::npos;
}

static void PassOn(const std::string &text)
{
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = text.find('\n', begin);
        const std::string line = text.substr(begin, end == std::string::npos ? end : end - begin + 1);
        if (!IsHarmless(line)) std::fputs(line.c_str(), stderr);
        begin += line.size();
    }
}

QuietStart::QuietStart() : standardError_(-1), kept_(memfd_create("start", MFD_CLOEXEC))
{
    std::fflush(stderr);
    if (kept_ < 0) return;
    standardError_ = dup(STDERR_FILENO);
    dup2(kept_, STDERR_FILENO);
}

QuietStart::~QuietStart()
{
    if (standardError_ < 0) return;
    std::fflush(stderr);
    dup2(standardError_, STDERR_FILENO);
    close(standardError_);

    std::string text;
    char part[4096];
    lseek(kept_, 0, SEEK_SET);
    for (ssize_t length; (length = read(kept_, part, sizeof part)) > 0;)
        text.append(part, std::size_t(length));
    close(kept_);
    PassOn(text);
}

} // namespace caption
