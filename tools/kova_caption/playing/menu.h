// SPDX-License-Identifier: MIT
// The menu of the viewer's settings: which setting is chosen, and what the keys make of it. Draws nothing.
#ifndef KOVA_CAPTION_PLAYING_MENU_H
#define KOVA_CAPTION_PLAYING_MENU_H

#include <cstddef>
#include <string>
#include <vector>

#include "base/viewer.h"
#include "playing/keys.h"

namespace caption
{

class Menu
{
public:
    struct Row {
        unsigned setting; // its number in the library
        std::string label;
    };

    explicit Menu(const ViewerSettings &settings);

    // All settings but the font files, which have no list of values.
    const std::vector<Row> &rows() const
    {
        return rows_;
    }
    std::size_t chosen() const
    {
        return chosen_;
    }
    const ViewerSettings &settings() const
    {
        return settings_;
    }

    // The value of a row, for the viewer.
    std::string Value(std::size_t row) const;

    // Up and down choose a row, left and right change its value, both around the end. RESET makes every setting
    // the default. Other keys do nothing here.
    void Press(Key key);

private:
    std::vector<std::string> Values(std::size_t row) const;
    void Step(int direction);

    ViewerSettings settings_;
    std::vector<Row> rows_;
    std::size_t chosen_ = 0;
};

} // namespace caption

#endif
