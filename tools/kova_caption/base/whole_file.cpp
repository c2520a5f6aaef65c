// SPDX-License-Identifier: MIT
#include "base/whole_file.h"

#include <cerrno>
#include <cstring>
#include <string>

#include <unistd.h>

#include "base/failure.h"

namespace caption
{

static const char g_space[] = "free some space, or choose";

WholeFile::WholeFile(const std::filesystem::path &file, const char *option)
    : option_(option), file_(file), unfinished_(file.string() + "." + std::to_string(getpid()) + ".part")
{
    out_ = std::fopen(unfinished_.c_str(), "wb");
    if (!out_) Fail("choose");
}

WholeFile::~WholeFile()
{
    if (out_) std::fclose(out_);
    std::remove(unfinished_.c_str());
}

void WholeFile::Fail(const char *advice) const
{
    throw Failure(file_.string() + ": cannot be written (" + std::strerror(errno) + "); " + advice +
                  " another path with " + option_);
}

void WholeFile::Write(const void *bytes, std::size_t size)
{
    if (std::fwrite(bytes, 1, size, out_) != size) Fail(g_space);
}

void WholeFile::Finish()
{
    std::FILE *const out = out_;

    out_ = nullptr;
    if (std::fclose(out) != 0 || std::rename(unfinished_.c_str(), file_.c_str()) != 0) Fail(g_space);
}

} // namespace caption
