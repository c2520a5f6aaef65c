// SPDX-License-Identifier: MIT
// How far a long work has come, for one who watches it on a terminal.
#ifndef KOVA_CAPTION_TERMINAL_PROGRESS_H
#define KOVA_CAPTION_TERMINAL_PROGRESS_H

#include <cstddef>

namespace caption
{

// A bar on standard error while it lives; nothing where that is no terminal.
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
