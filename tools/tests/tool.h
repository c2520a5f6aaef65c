// Runs kova-caption as its user does, and looks at what it made.
#ifndef KOVA_CAPTION_TESTS_TOOL_H
#define KOVA_CAPTION_TESTS_TOOL_H

#include <filesystem>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "picture.h"

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

// The arguments as a shell reads them. No X server, and nothing in the environment that steers DirectFB,
// unless given: NAME=VALUE.
Outcome RunTool(const std::string &arguments, const std::string &environment = "");

// The same under an X server of its own.
Outcome RunToolUnderX(const std::string &arguments);

caption::Picture ReadPng(const std::string &file);

using Points = std::set<std::pair<int, int>>;

Points Where(const caption::Picture &picture, bool (*matches)(const caption::Pixel &));
Points Moved(const Points &points, int right, int down);
Points Both(const Points &one, const Points &other);
Points Without(const Points &points, const Points &left);

#endif
