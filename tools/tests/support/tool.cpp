// SPDX-License-Identifier: MIT
#include "support/tool.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <png.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

Folder::Folder()
{
    std::string name = (std::filesystem::temp_directory_path() / "kova-caption-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    path_ = name;
}

Folder::~Folder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::vector<std::string> Folder::Names(const std::string &within) const
{
    std::set<std::string> names;
    for (const auto &entry : std::filesystem::directory_iterator(path_ / within)) {
        names.insert(entry.path().filename().string());
    }
    return {names.begin(), names.end()};
}

std::string Folder::Write(const std::string &name, const std::string &text) const
{
    std::ofstream(path_ / name, std::ios::binary) << text;
    return *this / name;
}

static std::string Contents(const std::string &file)
{
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

static Outcome RunCommand(const std::string &command)
{
    const Folder folder;
    const std::string whole = command + " >'" + folder / "out" + "' 2>'" + folder / "err" + "' </dev/null";
    const int status = std::system(whole.c_str());

    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Contents(folder / "out"), Contents(folder / "err")};
}

// Under the leak sanitizer what DirectFB itself forgets is left out.
static const std::string g_clean =
    "env -u DISPLAY -u DFBARGS XDG_CONFIG_HOME=/nonexistent KOVA_XVFB_SECONDS=500 "
    "LSAN_OPTIONS=print_suppressions=0:suppressions='" LSAN_SUPPRESSIONS "' ";

Outcome RunTool(const std::string &arguments, const std::string &environment)
{
    return RunCommand(g_clean + environment + " '" KOVA_CAPTION "' " + arguments);
}

Outcome RunToolUnderX(const std::string &arguments)
{
    return RunCommand(g_clean + "'" WITH_XVFB "' '" KOVA_CAPTION "' " + arguments);
}

Outcome RunScriptUnderX(const std::string &script)
{
    const Folder folder;
    const std::string file = folder.Write("script", ". '" WINDOW_KEYS "'\n" + script);

    return RunCommand(g_clean +
                      "SCREEN_SHOWS='" SCREEN_SHOWS "' TOOL='" KOVA_CAPTION "' '" WITH_XVFB "' sh '" + file +
                      "'");
}

Terminal::Terminal(const std::string &arguments)
{
    tool_ = forkpty(&file_, nullptr, nullptr, nullptr);
    if (tool_ < 0) throw std::runtime_error("no terminal");
    if (tool_ == 0) {
        const std::string command = "exec " + g_clean + "'" KOVA_CAPTION "' " + arguments;
        execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
        _exit(127);
    }
}

Terminal::~Terminal()
{
    if (tool_ > 0) kill(tool_, SIGKILL);
    if (tool_ > 0) waitpid(tool_, nullptr, 0);
    close(file_);
}

// Reads what is there, or waits a tenth of a second.
void Terminal::Read()
{
    char bytes[4096];
    pollfd file = {file_, POLLIN, 0};
    const ssize_t length = poll(&file, 1, 100) > 0 ? read(file_, bytes, sizeof bytes) : 0;

    if (length > 0) shown_.append(bytes, std::size_t(length));
}

bool Terminal::Shows(const std::string &text)
{
    const auto longest = std::chrono::steady_clock::now() + std::chrono::seconds(60);

    while (std::chrono::steady_clock::now() < longest) {
        const std::size_t at = shown_.find(text, seen_);
        if (at != std::string::npos) {
            seen_ = at + text.size();
            return true;
        }
        Read();
    }
    return false;
}

void Terminal::Type(const std::string &keys)
{
    if (write(file_, keys.data(), keys.size()) != ssize_t(keys.size())) throw std::runtime_error("not typed");
}

bool Terminal::IsEchoing() const
{
    termios state = {};

    return tcgetattr(file_, &state) == 0 && (state.c_lflag & ECHO) && (state.c_lflag & ICANON) &&
           state.c_cc[VSUSP] != _POSIX_VDISABLE && state.c_cc[VQUIT] != _POSIX_VDISABLE;
}

int Terminal::End()
{
    int status = -1;
    const auto longest = std::chrono::steady_clock::now() + std::chrono::seconds(60);

    while (std::chrono::steady_clock::now() < longest) {
        Read(); // or a full terminal would keep it from ending
        if (waitpid(tool_, &status, WNOHANG) == tool_) {
            tool_ = -1;
            return status;
        }
    }
    return -1;
}

caption::Picture ReadPng(const std::string &file)
{
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, file.c_str())) throw std::runtime_error(file + " is no PNG");
    if (image.format != PNG_FORMAT_RGBA) throw std::runtime_error(file + " is not RGBA");
    caption::Picture picture({int(image.width), int(image.height)});
    if (!png_image_finish_read(&image, nullptr, &picture.At(0, 0), 0, nullptr)) {
        throw std::runtime_error(file + " is damaged");
    }
    return picture;
}

// XWD: a header of big-endian words, the colour map, then the pixels, four bytes each.
caption::Picture ReadScreen(const std::string &file, caption::Size size)
{
    const std::string bytes = Contents(file);
    const auto byte = [&bytes](std::size_t at) { return std::uint8_t(bytes.at(at)); };
    const auto word = [&byte](std::size_t i) {
        return std::size_t(byte(i * 4)) << 24 | std::size_t(byte(i * 4 + 1)) << 16 |
               std::size_t(byte(i * 4 + 2)) << 8 | byte(i * 4 + 3);
    };
    const std::size_t pixels = word(0) + word(19) * 12;
    caption::Picture picture(size);

    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            const std::size_t at = pixels + std::size_t(y) * word(12) + std::size_t(x) * 4;
            picture.At(x, y) = {byte(at + 2), byte(at + 1), byte(at), 255};
        }
    }
    return picture;
}

int Differences(const caption::Picture &screen, const caption::Picture &caption)
{
    const caption::Color black = {0, 0, 0, 255};
    int differences = 0;

    for (int y = 0; y < caption.size().height; ++y) {
        for (int x = 0; x < caption.size().width; ++x) {
            const caption::Color &drawn = caption.At(x, y);
            if (drawn.alpha == 0) differences += !(screen.At(x, y) == black);
            if (drawn.alpha == 255) differences += !(screen.At(x, y) == drawn);
        }
    }
    return differences;
}

Points Where(const caption::Picture &picture, bool (*matches)(const caption::Color &))
{
    Points points;
    for (int y = 0; y < picture.size().height; ++y) {
        for (int x = 0; x < picture.size().width; ++x) {
            if (matches(picture.At(x, y))) points.insert({x, y});
        }
    }
    return points;
}

Points Moved(const Points &points, int right, int down)
{
    Points moved;
    for (const auto &point : points) moved.insert({point.first + right, point.second + down});
    return moved;
}

Points Both(const Points &one, const Points &other)
{
    Points both = one;
    both.insert(other.begin(), other.end());
    return both;
}

Points Without(const Points &points, const Points &left)
{
    Points rest;
    for (const auto &point : points) {
        if (!left.count(point)) rest.insert(point);
    }
    return rest;
}
