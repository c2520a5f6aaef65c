// SPDX-License-Identifier: MIT
#include "playing/keys.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <string>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include "drawing/owned.h"
#include "kova/kova_textdisp_dfb.h"

namespace caption
{

static const char g_escape[] = "\x1B";

// Delivers keys one by one without echo. Ctrl-C still works. Ctrl-Z and Ctrl-\ are disabled because they
// would leave the terminal in this state.
class Keys::Terminal
{
public:
    Terminal()
    {
        // In the background the terminal belongs to another process group.
        if (tcgetpgrp(STDIN_FILENO) != getpgrp() || tcgetattr(STDIN_FILENO, &before_) != 0) return;
        termios raw = before_;
        raw.c_lflag &= ~tcflag_t(ICANON | ECHO);
        raw.c_cc[VSUSP] = raw.c_cc[VQUIT] = _POSIX_VDISABLE;
        raw.c_cc[VMIN] = 1;
        raw.c_cc[VTIME] = 0;
        file_ = tcsetattr(STDIN_FILENO, TCSANOW, &raw) == 0 ? STDIN_FILENO : -1;
    }
    ~Terminal()
    {
        if (file_ >= 0) tcsetattr(file_, TCSANOW, &before_);
    }

    int File() const
    {
        return file_;
    }

    // NOLINTNEXTLINE(misc-no-recursion): once, for the rest of a sequence
    std::optional<Key> Read()
    {
        char bytes[64];
        const ssize_t length = read(file_, bytes, sizeof bytes);

        if (length <= 0) {
            file_ = -1; // closed
            return {};
        }
        given_.append(bytes, std::size_t(length));
        // A single escape is the Escape key, unless the rest of a longer sequence is still to come.
        pollfd rest = {file_, POLLIN, 0};
        if (given_ == g_escape && poll(&rest, 1, 25) > 0) return Read();
        return Next();
    }

    // Keys that arrived together with the previous one.
    std::optional<Key> Next()
    {
        static const struct {
            const char *bytes;
            Key key;
        } meanings[] = {{" ", Key::PAUSE},        {"q", Key::END},       {"Q", Key::END},
                        {"\x1B[D", Key::BACK},    {"\x1BOD", Key::BACK}, {"\x1B[C", Key::FORWARD},
                        {"\x1BOC", Key::FORWARD}, {"\x1B[A", Key::UP},   {"\x1BOA", Key::UP},
                        {"\x1B[B", Key::DOWN},    {"\x1BOB", Key::DOWN}, {"r", Key::RESET},
                        {"R", Key::RESET},        {"s", Key::SAVE},      {"S", Key::SAVE},
                        {"\r", Key::SAVE},        {"\n", Key::SAVE},     {"\x1B\x1B", Key::END}};

        while (!given_.empty()) {
            for (const auto &meaning : meanings) {
                const std::size_t length = std::strlen(meaning.bytes);
                if (given_.compare(0, length, meaning.bytes) != 0) continue;
                given_.erase(0, length);
                return meaning.key;
            }
            const bool escape = given_ == g_escape;
            given_.erase(0, LengthOfUnknown());
            if (escape) return Key::END;
        }
        return {};
    }

private:
    // Of one character, or of the sequence of a function key.
    std::size_t LengthOfUnknown() const
    {
        if (given_.compare(0, 1, g_escape) != 0) return 1;
        if (given_.compare(1, 1, "[") != 0) return given_.compare(1, 1, "O") == 0 ? 3 : 2;
        std::size_t end = 2;
        while (end < given_.size() && given_[end] < '@') ++end;
        return end + 1;
    }

    termios before_ = {};
    int file_ = -1;
    std::string given_;
};

// An event buffer of our own on the main interface that the display holds.
class Keys::Window
{
public:
    Window()
    {
        auto *const directfb = static_cast<IDirectFB *>(Kova_TextDisp_GetDFB());
        IDirectFBEventBuffer *buffer = nullptr;

        if (!directfb) return;
        if (directfb->CreateInputEventBuffer(directfb, DICAPS_KEYS, DFB_TRUE, &buffer) != DFB_OK) return;
        buffer_.reset(buffer);
        if (buffer->CreateFileDescriptor(buffer, &file_) != DFB_OK) file_ = -1;
    }
    int File() const
    {
        return file_;
    }

    // NOLINTNEXTLINE(misc-no-recursion): once, for the rest of a sequence
    std::optional<Key> Read()
    {
        static const struct {
            DFBInputDeviceKeySymbol symbol;
            Key key;
        } meanings[] = {
            {DIKS_SPACE, Key::PAUSE},      {DIKS_PAUSE, Key::PAUSE},      {DIKS_PLAYPAUSE, Key::PAUSE},
            {DIKS_CURSOR_LEFT, Key::BACK}, {DIKS_PREVIOUS, Key::BACK},    {DIKS_CURSOR_RIGHT, Key::FORWARD},
            {DIKS_NEXT, Key::FORWARD},     {DIKS_SMALL_Q, Key::END},      {DIKS_CAPITAL_Q, Key::END},
            {DIKS_CURSOR_UP, Key::UP},     {DIKS_CURSOR_DOWN, Key::DOWN}, {DIKS_SMALL_R, Key::RESET},
            {DIKS_CAPITAL_R, Key::RESET},  {DIKS_SMALL_S, Key::SAVE},     {DIKS_CAPITAL_S, Key::SAVE},
            {DIKS_RETURN, Key::SAVE},      {DIKS_OK, Key::SAVE},          {DIKS_ESCAPE, Key::END},
            {DIKS_EXIT, Key::END},         {DIKS_STOP, Key::END}};
        DFBEvent event = {};

        if (read(file_, &event, sizeof event) != ssize_t(sizeof event)) {
            file_ = -1;
            return {};
        }
        if (event.clazz != DFEC_INPUT || event.input.type != DIET_KEYPRESS) return {};
        for (const auto &meaning : meanings) {
            if (event.input.key_symbol == meaning.symbol) return meaning.key;
        }
        return {};
    }

private:
    Owned<IDirectFBEventBuffer> buffer_;
    int file_ = -1;
};

Keys::Keys(bool window)
    : signals_(std::make_unique<StopSignals>()), terminal_(std::make_unique<Terminal>()),
      window_(window ? std::make_unique<Window>() : nullptr)
{
}

Keys::~Keys() = default;

static timespec Until(SteadyTime moment)
{
    using namespace std::chrono;
    const auto left = std::max(duration_cast<nanoseconds>(moment - steady_clock::now()), nanoseconds(0));

    return {time_t(left.count() / 1000000000), long(left.count() % 1000000000)};
}

SteadyTime Keys::Now() const
{
    return std::chrono::steady_clock::now();
}

void Keys::SleepUntil(SteadyTime time)
{
    std::this_thread::sleep_until(time);
}

std::optional<Key> Keys::Wait(SteadyTime until)
{
    for (;;) {
        if (const std::optional<Key> key = terminal_->Next()) return key;
        std::array<pollfd, 3> files = {{{signals_->File(), POLLIN, 0},
                                        {terminal_->File(), POLLIN, 0},
                                        {window_ ? window_->File() : -1, POLLIN, 0}}};
        const timespec left = Until(until);
        const int ready =
            ppoll(files.data(), files.size(), until == SteadyTime::max() ? nullptr : &left, nullptr);

        if (ready == 0) return {};
        if (files[0].revents) signals_->Read();
        std::optional<Key> key;
        if (files[1].revents) key = terminal_->Read();
        if (!key && files[2].revents) key = window_->Read();
        if (key) return key;
    }
}

} // namespace caption
