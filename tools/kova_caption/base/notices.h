// SPDX-License-Identifier: MIT
// Messages about a source, without duplicates.
#ifndef KOVA_CAPTION_BASE_NOTICES_H
#define KOVA_CAPTION_BASE_NOTICES_H

#include <algorithm>
#include <string>
#include <vector>

namespace caption
{

class Notices
{
public:
    void Say(const std::string &text)
    {
        if (std::find(said_.begin(), said_.end(), text) == said_.end()) said_.push_back(text);
    }

    const std::vector<std::string> &said() const
    {
        return said_;
    }

private:
    std::vector<std::string> said_;
};

} // namespace caption

#endif
