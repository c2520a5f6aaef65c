// SPDX-License-Identifier: MIT
#include "generating/characters.h"

#include <algorithm>

#include <uninorm.h>

#include "base/utf8.h"

namespace caption
{

using namespace encoding;

// 20 to 7F. [47 CFR 79.101(g)]
static const std::u32string_view g_basic = U" !\"#$%&\u2019()\u00E1+,-./0123456789:;<=>?"
                                           U"@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\u00E9]\u00ED\u00F3"
                                           U"\u00FAabcdefghijklmnopqrstuvwxyz\u00E7\u00F7\u00D1\u00F1\u2588";

// 11 30 to 11 3F; the tenth is the transparent space, which no text has.
static const std::u32string_view g_special = U"\u00AE\u00B0\u00BD\u00BF\u2122\u00A2\u00A3\u266A"
                                             U"\u00E0\uFFFF\u00E8\u00E2\u00EA\u00EE\u00F4\u00FB";

// 12 20 to 12 3F and 13 20 to 13 3F, each with what is sent before it for decoders that have only the basic set.
static const std::u32string_view g_extended[] = {
    U"\u00C1\u00C9\u00D3\u00DA\u00DC\u00FC\u2018\u00A1*'\u2014\u00A9\u2120\u2022\u201C\u201D"
    U"\u00C0\u00C2\u00C7\u00C8\u00CA\u00CB\u00EB\u00CE\u00CF\u00EF\u00D4\u00D9\u00F9\u00DB\u00AB\u00BB",
    U"\u00C3\u00E3\u00CD\u00CC\u00EC\u00D2\u00F2\u00D5\u00F5{}\\^_|~"
    U"\u00C4\u00E4\u00D6\u00F6\u00DF\u00A5\u00A4\u2502\u00C5\u00E5\u00D8\u00F8\u250C\u2510\u2514\u2518",
};
static const std::string_view g_instead[] = {"AEOUUu'!.'-cs.\"\"AACEEEeIIiOUuU\"\"",
                                             "AaIIiOoOo()/'-!-AaOosYo!AaOo++++"};

// What CEA-608 lacks, by what resembles it.
static const struct {
    char32_t character;
    std::u32string_view like;
} g_alike[] = {
    {U'\t', U" "},          {U'\u00A0', U" "},      {U'\u00AD', U""},       {U'\u00B4', U"'"},
    {U'`', U"'"},           {U'\u00B7', U"\u2022"}, {U'\u00D7', U"x"},      {U'\u00C6', U"AE"},
    {U'\u00E6', U"ae"},     {U'\u0152', U"OE"},     {U'\u0153', U"oe"},     {U'\u0131', U"i"},
    {U'\u0141', U"L"},      {U'\u0142', U"l"},      {U'\u0110', U"D"},      {U'\u0111', U"d"},
    {U'\u2010', U"-"},      {U'\u2011', U"-"},      {U'\u2012', U"-"},      {U'\u2013', U"-"},
    {U'\u2015', U"\u2014"}, {U'\u201A', U","},      {U'\u201B', U"\u2018"}, {U'\u201E', U"\u201D"},
    {U'\u2026', U"..."},    {U'\u2032', U"'"},      {U'\u2033', U"\""},     {U'\u2039', U"<"},
    {U'\u203A', U">"},      {U'\u20AC', U"EUR"},    {U'\u2212', U"-"},      {U'\u2669', U"\u266A"},
    {U'\u266B', U"\u266A"}, {U'\u266C', U"\u266A"}, {U'\u2500', U"-"},
};

// G2. [47 CFR 79.102(d)]
static const struct {
    char32_t character;
    unsigned code;
} g_g2[] = {
    {U'\u2026', 0x25}, {U'\u0160', 0x2A}, {U'\u0152', 0x2C}, {U'\u2588', 0x30}, {U'\u2018', 0x31},
    {U'\u2019', 0x32}, {U'\u201C', 0x33}, {U'\u201D', 0x34}, {U'\u2022', 0x35}, {U'\u2122', 0x39},
    {U'\u0161', 0x3A}, {U'\u0153', 0x3C}, {U'\u2120', 0x3D}, {U'\u0178', 0x3F}, {U'\u215B', 0x76},
    {U'\u215C', 0x77}, {U'\u215D', 0x78}, {U'\u215E', 0x79}, {U'\u2502', 0x7A}, {U'\u2510', 0x7B},
    {U'\u2514', 0x7C}, {U'\u2500', 0x7D}, {U'\u2518', 0x7E}, {U'\u250C', 0x7F},
};

static std::u32string Normalized(uninorm_t form, const std::u32string &text)
{
    std::size_t length = 0;
    std::uint32_t *const result = u32_normalize(form, reinterpret_cast<const std::uint32_t *>(text.data()),
                                                text.size(), nullptr, &length);
    std::u32string normalized(result, result + length);

    std::free(result);
    return normalized;
}

std::u32string Composed(const std::string &text)
{
    std::u32string codes;

    for (const Character &character : Characters(text)) {
        if (!IsInvisible(character.code)) codes += character.code;
    }
    return Normalized(UNINORM_NFC, codes);
}

static std::optional<unsigned> Find(std::u32string_view set, char32_t character)
{
    const std::size_t at = set.find(character);
    return at == std::u32string_view::npos ? std::nullopt : std::optional<unsigned>(unsigned(at));
}

static bool Has608(char32_t character)
{
    return Find(g_basic, character) || Find(g_special, character) || Find(g_extended[0], character) ||
           Find(g_extended[1], character);
}

std::optional<std::u32string> In608(char32_t character)
{
    // Every decoder shows 27 as an apostrophe; the plain one takes three pairs.
    if (character == U'\'') return U"\u2019";
    if (Has608(character)) return std::u32string(1, character);
    for (const auto &alike : g_alike) {
        if (alike.character == character) return std::u32string(alike.like);
    }
    const char32_t base = Normalized(UNINORM_NFKD, {character}).front();
    if (base != character && Has608(base)) return std::u32string(1, base);
    return std::nullopt;
}

void PairWriter::PutBasic(unsigned code)
{
    if (waiting_) pairs_ = pairs_ + Raw(*waiting_, code);
    waiting_ = waiting_ ? std::nullopt : std::optional<unsigned>(code);
}

void PairWriter::Put(char32_t character)
{
    if (const auto basic = Find(g_basic, character)) return PutBasic(0x20 + *basic);
    if (const auto special = Find(g_special, character)) return Put(Twice(0x11, 0x30 + *special));
    for (unsigned set = 0; set < 2; ++set) {
        const auto extended = Find(g_extended[set], character);
        if (!extended) continue;
        PutBasic(std::uint8_t(g_instead[set][*extended]));
        Put(Twice(0x12 + set, 0x20 + *extended));
    }
}

void PairWriter::Put(const Pairs &codes)
{
    if (waiting_) pairs_ = pairs_ + Raw(*waiting_, 0);
    waiting_.reset();
    pairs_ = pairs_ + codes;
}

Pairs PairWriter::Finish()
{
    Put(Pairs{});
    return std::move(pairs_);
}

std::optional<ByteString> In708(char32_t character)
{
    const bool latin = (character >= 0x20 && character < 0x7F) || (character >= 0xA0 && character <= 0xFF);
    const auto *const g2 = std::find_if(std::begin(g_g2), std::end(g_g2),
                                        [&](const auto &known) { return known.character == character; });

    if (latin) return Bytes({unsigned(character)});
    if (character == U'\u266A') return Bytes({0x7F});
    if (g2 != std::end(g_g2)) return Bytes({EXT1, g2->code});
    if (character >= 0x100 && character <= 0xFFFF) return Wide(unsigned(character));
    return std::nullopt;
}

} // namespace caption
