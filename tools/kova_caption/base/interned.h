// SPDX-License-Identifier: MIT
#ifndef KOVA_CAPTION_BASE_INTERNED_H
#define KOVA_CAPTION_BASE_INTERNED_H

#include <functional>
#include <set>
#include <string>

namespace caption
{

// A text of which equal copies share one string for good: copying and comparing cost nothing. Every letter of
// a subtitle has its font's name. For one thread.
class Interned
{
public:
    Interned() = default;
    explicit Interned(const std::string &text) : text_(text.empty() ? nullptr : &*Pool().insert(text).first)
    {
    }

    bool empty() const
    {
        return !text_;
    }
    std::string text() const
    {
        return text_ ? *text_ : "";
    }
    bool operator==(const Interned &other) const
    {
        return text_ == other.text_;
    }
    // An order for maps, not the alphabet's.
    bool operator<(const Interned &other) const
    {
        return std::less<const std::string *>()(text_, other.text_);
    }

private:
    static std::set<std::string> &Pool()
    {
        static std::set<std::string> pool;
        return pool;
    }

    const std::string *text_ = nullptr; // none for the empty text
};

} // namespace caption

#endif
