// SPDX-License-Identifier: MIT
// What the viewer asks for while captions play: keys of the terminal, keys of DirectFB's window, and signals.
#ifndef KOVA_CAPTION_PLAYING_KEYS_H
#define KOVA_CAPTION_PLAYING_KEYS_H

#include <chrono>
#include <memory>
#include <optional>

#include "terminal/stop_signals.h"

namespace caption
{

using SteadyTime = std::chrono::steady_clock::time_point;

enum class Key { PAUSE, BACK, FORWARD, END };

class Keys
{
public:
    // After DirectFB has started. While it lives the terminal, if standard input is one, hands over each key
    // as it is pressed; DirectFB's own keys are listened to where asked.
    explicit Keys(bool window);
    ~Keys();
    Keys(const Keys &) = delete;
    Keys &operator=(const Keys &) = delete;

    // The next key, or nothing once the moment is there; SteadyTime::max() waits for a key alone. Throws
    // Interrupted.
    std::optional<Key> Wait(SteadyTime until);

private:
    class Terminal;
    class Window;

    std::unique_ptr<StopSignals> signals_;
    std::unique_ptr<Terminal> terminal_;
    std::unique_ptr<Window> window_;
};

} // namespace caption

#endif
