#include "tool.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <png.h>
#include <sys/wait.h>
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
    "env -u DISPLAY -u DFBARGS LSAN_OPTIONS=print_suppressions=0:suppressions='" LSAN_SUPPRESSIONS "' ";

Outcome RunTool(const std::string &arguments, const std::string &environment)
{
    return RunCommand(g_clean + environment + " '" KOVA_CAPTION "' " + arguments);
}

Outcome RunToolUnderX(const std::string &arguments)
{
    return RunCommand(g_clean + "'" WITH_XVFB "' '" KOVA_CAPTION "' " + arguments);
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

Points Where(const caption::Picture &picture, bool (*matches)(const caption::Pixel &))
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
