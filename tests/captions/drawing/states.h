// SPDX-License-Identifier: MIT
// States as a decoder holds them, made by hand, and a renderer on a recorded display.
#ifndef KOVA_TESTS_CAPTIONS_DRAWING_STATES_H
#define KOVA_TESTS_CAPTIONS_DRAWING_STATES_H

#include "fake_display.h"

#include "../requirement.h"

#include "kova/kova_captions_draw.h"

#include <array>
#include <memory>
#include <string>

constexpr int64_t START = 1000000;

// Palette entries of a colour.
constexpr kova_uint32 Solid(unsigned color)
{
    return 1 + color;
}
constexpr kova_uint32 Translucent(unsigned color)
{
    return 65 + color;
}
constexpr kova_uint32 Flashing(unsigned color)
{
    return 129 + color;
}

// Pen style 1, and what differs from it.
KovaCaptionsPen PenStyle1();

// A service with its eight windows. Every change counts, as in a decoder.
class ServiceState
{
public:
    ServiceState();

    // A visible window of window style 1 at an anchor in the grid, by its top left corner.
    KovaCaptionsWindow &Define(unsigned window, unsigned row, unsigned column, unsigned rows,
                               unsigned columns);
    void Print(unsigned window, unsigned row, unsigned column, const std::u16string &text,
               const KovaCaptionsPen &pen = PenStyle1());
    // The rows move up by one, as by a carriage return at a time.
    void Scroll(unsigned window, int64_t time);

    KovaCaptionsService service = {};
    std::array<KovaCaptionsWindow, KOVA_CAPTIONS_WINDOWS> windows;
};

// A 608 channel.
class ChannelState
{
public:
    ChannelState();

    // From a row and column on, counted from 1 as CEA-608 does; white on black.
    void Print(unsigned row, unsigned column, const std::u16string &text);
    KovaCaptionsChannelCell &At(unsigned row, unsigned column);
    void RollUp(unsigned depth, unsigned base_row);
    // A carriage return at a time.
    void Roll(int64_t time);

    std::unique_ptr<KovaCaptionsChannel> channel;
};

// A renderer with its display. The plane is 1050 by 375 times a factor, so that a safe area of 80 % is 840 by 300, and
// cells of the wide grid are 20 by 20.
class Stage
{
public:
    explicit Stage(int width = 1050, int height = 375);
    Stage(const KovaCaptionsScreen &screen, int width, int height);

    int Draw(const ServiceState &state, int64_t time = START);
    int Draw(const ChannelState &state, int64_t time = START);
    int Preview(const char *text, int64_t time = START);
    void Set(const KovaCaptionsSettings &settings);

    KovaCaptionsRenderer *operator*() const
    {
        return m_renderer.get();
    }

    std::unique_ptr<FakeDisplay> display;

private:
    struct Destroy {
        void operator()(KovaCaptionsRenderer *renderer) const
        {
            Kova_Captions_DestroyRenderer(renderer);
        }
    };
    std::unique_ptr<KovaCaptionsRenderer, Destroy> m_renderer;
};

// Font files that do not exist, so that they count as having every character: "mono" for style 0, "prop" and so on.
KovaCaptionsScreen GivenScreen();
KovaCaptionsSettings Defaults();

// Where the safe area begins on the plane of a Stage, and a cell of the wide grid in it.
constexpr int LEFT = 105, TOP = 37, CELL = 20;
Box CellBox(int row, int column, int rows = 1, int columns = 1);

#endif
