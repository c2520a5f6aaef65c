// SPDX-License-Identifier: MIT
// What the player takes from outside while captions play: time, keys and signals.
#ifndef KOVA_CAPTION_PLAYING_KEYS_H
#define KOVA_CAPTION_PLAYING_KEYS_H

#include <chrono>
#include <memory>
#include <optional>

#include "terminal/stop_signals.h"

namespace caption
{

using SteadyTime = std::chrono::steady_clock::time_point;

// Enter saves in a menu, Escape ends.
enum class Key { PAUSE, BACK, FORWARD, UP, DOWN, RESET, SAVE, END };

// Time and keys. Tests script them.
class PlayerInput
{
public:
    virtual ~PlayerInput() = default;

    virtual SteadyTime Now() const = 0;

    // The next key, or nothing once the time is reached; SteadyTime::max() waits for a key alone.
    virtual std::optional<Key> Wait(SteadyTime until) = 0;

    virtual void SleepUntil(SteadyTime time) = 0;
};

// The steady clock, the keys of the terminal and of DirectFB's window.
class Keys : public PlayerInput
{
public:
    // Construct it after DirectFB has started. During its lifetime the terminal, if standard input is one,
    // delivers each key as it is pressed. Keys of DirectFB's window are read where `window` is set.
    explicit Keys(bool window);
    ~Keys() override;
    Keys(const Keys &) = delete;
    Keys &operator=(const Keys &) = delete;

    SteadyTime Now() const override;

    // Throws Interrupted when a signal asks the tool to stop.
    std::optional<Key> Wait(SteadyTime until) override;

    void SleepUntil(SteadyTime time) override;

private:
    class Terminal;
    class Window;

    std::unique_ptr<StopSignals> signals_;
    std::unique_ptr<Terminal> terminal_;
    std::unique_ptr<Window> window_;
};

} // namespace caption

#endif
