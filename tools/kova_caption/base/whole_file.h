// SPDX-License-Identifier: MIT
// An output file that is complete or not there.
#ifndef KOVA_CAPTION_BASE_WHOLE_FILE_H
#define KOVA_CAPTION_BASE_WHOLE_FILE_H

#include <cstddef>
#include <cstdio>
#include <filesystem>

namespace caption
{

// Writes a temporary file beside the named one, and renames it at the end. Every member throws Failure, which names
// the file and the reason, if it cannot do its work; nothing is left behind then.
class WholeFile
{
public:
    // The option is the one that names the file; advice refers to it.
    explicit WholeFile(const std::filesystem::path &file, const char *option = "-o");
    ~WholeFile();
    WholeFile(const WholeFile &) = delete;
    WholeFile &operator=(const WholeFile &) = delete;

    void Write(const void *bytes, std::size_t size);
    void Finish();

private:
    [[noreturn]] void Fail(const char *advice) const;

    const char *option_;

    std::filesystem::path file_;
    std::filesystem::path unfinished_;
    std::FILE *out_ = nullptr;
};

} // namespace caption

#endif
