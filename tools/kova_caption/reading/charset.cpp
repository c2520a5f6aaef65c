// SPDX-License-Identifier: MIT
#include "reading/charset.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <vector>

#include <iconv.h>
#include <uchardet/uchardet.h>

#include "base/failure.h"

namespace caption
{

namespace
{

struct Mark {
    const char *charset;
    std::string bytes;
};

struct Converted {
    std::string text;
    std::size_t wrong = 0; // invalid sequences, NULs included
    std::size_t line = 0;  // of the first of them, from 1
    std::size_t multibyte = 0;
};

class Converter
{
public:
    explicit Converter(const std::string &from) : iconv_(iconv_open("UTF-8", from.c_str()))
    {
    }
    ~Converter()
    {
        if (known()) iconv_close(iconv_);
    }
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;

    bool known() const
    {
        return iconv_ != iconv_t(-1); // NOLINT(performance-no-int-to-ptr): as iconv_open() fails
    }

    // Converts up to the first invalid byte or the end, and consumes what it converted.
    void Convert(char *&at, std::size_t &left, std::string &to)
    {
        char buffer[4096];
        for (bool more = true; more;) {
            char *out = buffer;
            std::size_t room = sizeof buffer;
            more = iconv(iconv_, &at, &left, &out, &room) == std::size_t(-1) && errno == E2BIG;
            to.append(buffer, std::size_t(out - buffer));
        }
    }

private:
    iconv_t iconv_;
};

} // namespace

static const char g_replacement[] = "\xEF\xBF\xBD";
static const char g_mark[] = "\xEF\xBB\xBF";
static const char g_fallback[] = "WINDOWS-1252";

static bool StartsWith(const std::string &text, const std::string &start)
{
    return text.compare(0, start.size(), start) == 0;
}

// The longer marks first: that of UTF-32 begins like that of UTF-16.
static const std::vector<Mark> &Marks()
{
    static const std::vector<Mark> marks = {{"UTF-8", g_mark},
                                            {"UTF-32LE", std::string("\xFF\xFE\0\0", 4)},
                                            {"UTF-32BE", std::string("\0\0\xFE\xFF", 4)},
                                            {"UTF-16LE", "\xFF\xFE"},
                                            {"UTF-16BE", "\xFE\xFF"}};
    return marks;
}

static const Mark *MarkOf(const std::string &bytes)
{
    for (const Mark &mark : Marks()) {
        if (StartsWith(bytes, mark.bytes)) return &mark;
    }
    return nullptr;
}

static std::size_t WidthOf(const std::string &charset)
{
    if (StartsWith(charset, "UTF-16") || StartsWith(charset, "UCS-2")) return 2;
    if (StartsWith(charset, "UTF-32") || StartsWith(charset, "UCS-4")) return 4;
    return 1;
}

static Converted Convert(const std::string &bytes, const std::string &charset)
{
    Converter converter(charset);
    std::string input = bytes;
    char *at = input.data();
    std::size_t left = input.size();
    std::string text;
    Converted converted;

    if (!converter.known()) {
        throw WrongUsage("--charset " + charset + ": unknown character set; iconv -l lists the names");
    }
    // Invalid bytes become NULs first, because NULs are invalid themselves.
    for (converter.Convert(at, left, text); left > 0; converter.Convert(at, left, text)) {
        const std::size_t step = std::min(left, WidthOf(charset));
        text += '\0';
        at += step;
        left -= step;
    }
    std::size_t line = 1;
    for (const char byte : text) {
        if (byte == '\n') ++line;
        if ((static_cast<unsigned char>(byte) & 0xC0) == 0xC0) ++converted.multibyte;
        if (byte) {
            converted.text += byte;
            continue;
        }
        if (converted.wrong++ == 0) converted.line = line;
        converted.text += g_replacement;
    }
    if (StartsWith(converted.text, g_mark)) converted.text.erase(0, sizeof g_mark - 1);
    return converted;
}

static bool IsControl(char byte)
{
    const auto code = static_cast<unsigned char>(byte);
    return code < 0x20 && code != '\t' && code != '\n' && code != '\f' && code != '\r' && code != 0x1A &&
           code != 0x1B;
}

// UTF-16 or UTF-32 without a byte order mark. Text in other character sets has no NULs, and other files with
// NULs are hardly valid without control characters.
static std::string WideCharset(const std::string &bytes)
{
    if (bytes.find('\0') == std::string::npos) return "";
    for (const char *const charset : {"UTF-32LE", "UTF-32BE", "UTF-16LE", "UTF-16BE"}) {
        const Converted converted = Convert(bytes.substr(0, bytes.size() / 4 * 4), charset);
        // A surrogate pair may be cut at the end.
        const bool valid = converted.wrong == 0 ||
                           (converted.wrong == 1 && bytes.size() > 64 &&
                            converted.text.compare(converted.text.size() - 3, 3, g_replacement) == 0);
        if (valid && std::none_of(converted.text.begin(), converted.text.end(), IsControl) &&
            converted.text.find('\n') != std::string::npos) {
            return charset;
        }
    }
    return "";
}

// Text may have a few stray control characters, but not many at its beginning, where other files have their
// header.
static bool HasFewControls(const std::string &bytes)
{
    return std::size_t(std::count_if(bytes.begin(), bytes.end(), IsControl)) <= 2 + bytes.size() / 500;
}

bool LooksLikeText(const std::string &head)
{
    if (MarkOf(head) || !WideCharset(head).empty()) return true;
    return HasFewControls(head) && HasFewControls(head.substr(0, 256));
}

static std::string Guess(const std::string &bytes)
{
    const std::unique_ptr<uchardet, void (*)(uchardet_t)> detector(uchardet_new(), uchardet_delete);

    uchardet_handle_data(detector.get(), bytes.data(), bytes.size());
    uchardet_data_end(detector.get());
    const std::string guess = uchardet_get_charset(detector.get());
    // Nobody uses the control characters of Latin 1; in their place Windows-1252 has quotes and dashes.
    if (guess.empty() || guess == "ASCII" || guess == "UTF-8" || guess == "ISO-8859-1") return g_fallback;
    return Converter(guess).known() ? guess : g_fallback;
}

static std::string Count(std::size_t count)
{
    return count == 1 ? "1 place" : std::to_string(count) + " places";
}

static std::string Report(Converted converted, const std::string &charset, const std::string &place,
                          Notices &notices)
{
    if (converted.wrong > 0) {
        notices.Say(place + ": " + Count(converted.wrong) + " of invalid " + charset +
                    ", shown as U+FFFD; if the file has another character set, name it with --charset");
    }
    return std::move(converted.text);
}

static std::string ReportLine(Converted converted, const std::string &charset, Notices &notices)
{
    const std::string place = (converted.wrong > 1 ? "from line " : "line ") + std::to_string(converted.line);
    return Report(std::move(converted), charset, place, notices);
}

std::string ToUtf8(const std::string &bytes, const std::string &charset, Notices &notices)
{
    if (!charset.empty()) return ReportLine(Convert(bytes, charset), charset, notices);
    if (const Mark *const mark = MarkOf(bytes)) {
        return ReportLine(Convert(bytes, mark->charset), mark->charset, notices);
    }
    const std::string wide = WideCharset(bytes);
    if (!wide.empty()) return ReportLine(Convert(bytes, wide), wide, notices);

    // Japanese and Korean seven-bit text changes its character set by escape sequences. A few invalid bytes
    // among many valid ones are damage, not another character set.
    Converted utf8 = Convert(bytes, "UTF-8");
    const std::size_t invalid = utf8.wrong - std::size_t(std::count(bytes.begin(), bytes.end(), '\0'));
    const std::string guess = invalid > 0 || bytes.find('\x1B') != std::string::npos ? Guess(bytes) : "";
    if (!StartsWith(guess, "ISO-2022") && utf8.multibyte >= 4 * invalid) {
        return ReportLine(std::move(utf8), "UTF-8", notices);
    }
    notices.Say("character set detected as " + guess + "; if that is wrong, set --charset");
    return ReportLine(Convert(bytes, guess), guess, notices);
}

std::string PieceToUtf8(const std::string &bytes, const std::string &charset, const std::string &place,
                        Notices &notices)
{
    const std::string name = charset.empty() ? "UTF-8" : charset;
    return Report(Convert(bytes, name), name, place, notices);
}

} // namespace caption
