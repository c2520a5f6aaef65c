// SPDX-License-Identifier: MIT
// The progress of a long operation, for a user at a terminal.
#ifndef KOVA_CAPTION_TERMINAL_PROGRESS_H
#define KOVA_CAPTION_TERMINAL_PROGRESS_H

#include <cstddef>

namespace caption
{

// A progress bar on standard error for its lifetime. Prints nothing where standard error is no terminal.
class Progress
{
public:
    explicit Progress(std::size_t total);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    void Show(std::size_t done) const;
    void Hide() const; // before anything else is printed

private:
    std::size_t total_;
    bool watched_;
};

} // namespace caption

#endif
