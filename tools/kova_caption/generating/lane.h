// SPDX-License-Identifier: MIT
// When the parts of captions are sent: an item a frame, each caption loaded before it is shown.
#ifndef KOVA_CAPTION_GENERATING_LANE_H
#define KOVA_CAPTION_GENERATING_LANE_H

#include <algorithm>
#include <cstddef>
#include <map>
#include <vector>

namespace caption
{

// Items are pairs of CEA-608 or service blocks of CEA-708.
template <class Item> class Lane
{
public:
    using Group = std::vector<Item>; // sent without interruption

    struct Caption {
        std::size_t start = 0; // frames
        std::size_t end = 0;
        std::vector<Group> load;
        std::vector<Group> briefly; // the same in fewer items
        Group show;
        Group erase;
    };

    // In the order of their starts.
    void Add(const Caption &caption)
    {
        if (showing_ && end_ < caption.start) Erase(caption.start);
        std::size_t shown = caption.start;
        if (!FitsBefore(caption.load, shown) && !FitsBefore(caption.briefly, shown)) {
            shown = std::max(shown, LoadFrom(free_, caption.briefly));
        }
        if (shown > caption.start) {
            ++late_;
            latest_ = std::max(latest_, shown - caption.start);
        }
        Put(shown, caption.show);
        free_ = shown + caption.show.size();
        end_ = std::max(caption.end, shown > caption.start ? shown + shortest_ : free_);
        erase_ = caption.erase;
        shown_.push_back(shown);
        showing_ = true;
    }

    // Erases the last one. Returns the frame after the last item.
    std::size_t Finish()
    {
        if (showing_) Erase(end_ + erase_.size());
        return end_;
    }

    const std::map<std::size_t, Item> &items() const
    {
        return items_;
    }
    // The frame in which each caption appears.
    const std::vector<std::size_t> &shown() const
    {
        return shown_;
    }
    std::size_t late() const
    {
        return late_;
    }
    std::size_t latest() const // frames
    {
        return latest_;
    }

private:
    static constexpr std::size_t shortest_ =
        15; // frames that a late caption stays, unless the next one comes

    bool IsFree(std::size_t frame, std::size_t count) const
    {
        const auto next = items_.lower_bound(frame);
        return next == items_.end() || next->first >= frame + count;
    }

    void Put(std::size_t frame, const Group &group)
    {
        for (const Item &item : group) items_.emplace(frame++, item);
    }

    // Ends the caption on display, in as many items as there is room for before the next one appears.
    void Erase(std::size_t next)
    {
        for (const Item &item : erase_) {
            const std::size_t frame = std::max(end_, free_);
            if (frame >= next) break;
            items_.emplace(frame, item);
            ++end_;
        }
        showing_ = false;
    }

    // Places the groups as late as possible before a frame; changes nothing if they do not fit.
    bool FitsBefore(const std::vector<Group> &groups, std::size_t frame)
    {
        std::vector<std::size_t> places;
        std::size_t at = frame;

        for (auto group = groups.rbegin(); group != groups.rend(); ++group) {
            const std::size_t size = group->size();
            do {
                if (at < free_ + size) return false;
                --at;
            } while (!IsFree(at - (size - 1), size));
            at -= size - 1;
            places.push_back(at);
        }
        for (std::size_t i = 0; i < groups.size(); ++i) Put(places[groups.size() - 1 - i], groups[i]);
        return true;
    }

    // Places the groups as early as possible; returns the frame after the last.
    std::size_t LoadFrom(std::size_t frame, const std::vector<Group> &groups)
    {
        for (const Group &group : groups) {
            while (!IsFree(frame, group.size())) ++frame;
            Put(frame, group);
            frame += group.size();
        }
        return frame;
    }

    std::map<std::size_t, Item> items_;
    std::vector<std::size_t> shown_;
    Group erase_; // of the caption on display
    bool showing_ = false;
    std::size_t end_ = 0;  // of that caption
    std::size_t free_ = 0; // the first frame for the next one
    std::size_t late_ = 0;
    std::size_t latest_ = 0;
};

} // namespace caption

#endif
