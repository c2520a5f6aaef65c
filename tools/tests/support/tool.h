// SPDX-License-Identifier: MIT
// Runs kova-caption as its user does, and looks at what it made.
#ifndef KOVA_CAPTION_TESTS_TOOL_H
#define KOVA_CAPTION_TESTS_TOOL_H

#include <filesystem>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "drawing/picture.h"

struct Outcome {
    int exit = -1;
    std::string out;
    std::string err;
};

// A folder that goes with its owner.
class Folder
{
public:
    Folder();
    ~Folder();
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;

    std::string operator/(const std::string &name) const
    {
        return (path_ / name).string();
    }
    std::vector<std::string> Names(const std::string &within = "") const;
    std::string Write(const std::string &name, const std::string &text) const;

private:
    std::filesystem::path path_;
};

// The arguments as a shell reads them. No X server, no settings of a user, and nothing in the environment that
// steers DirectFB, unless given: NAME=VALUE.
Outcome RunTool(const std::string &arguments, const std::string &environment = "");

// The same under an X server of its own.
Outcome RunToolUnderX(const std::string &arguments);

// A shell script under an X server of its own; $TOOL is the tool. Functions: Start ARGUMENT... runs the tool
// and goes on, WaitFor TEXT waits until the tool has printed it, Press KEY presses a key over the window,
// KeepScreen FILE PNG keeps the X server's screen once it shows that picture, End waits for the tool's end and answers as it did.
Outcome RunScriptUnderX(const std::string &script);

// The tool on a terminal of its own.
class Terminal
{
public:
    // The arguments as a shell reads them.
    explicit Terminal(const std::string &arguments);
    ~Terminal();
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    // Whether this was printed within a minute, after what was waited for before.
    bool Shows(const std::string &text);
    void Type(const std::string &keys);
    bool IsEchoing() const; // as it was before the tool started
    int End();              // what wait() says of the tool
    const std::string &shown() const
    {
        return shown_;
    }

private:
    void Read();

    int file_ = -1; // the terminal's other end
    int tool_ = -1; // process
    std::string shown_;
    std::size_t seen_ = 0;
};

caption::Picture ReadPng(const std::string &file);

// What KeepScreen kept, of that size from the top left corner.
caption::Picture ReadScreen(const std::string &file, caption::Size size);

// How many pixels of a screen differ from the caption on black. Half-transparent pixels are not compared, because how
// DirectFB's desktop blends them is up to it.
int Differences(const caption::Picture &screen, const caption::Picture &caption);

using Points = std::set<std::pair<int, int>>;

Points Where(const caption::Picture &picture, bool (*matches)(const caption::Color &));
Points Moved(const Points &points, int right, int down);
Points Both(const Points &one, const Points &other);
Points Without(const Points &points, const Points &left);

#endif
