// SPDX-License-Identifier: MIT
#include "reading/captions/mcc.h"

#include <algorithm>
#include <optional>
#include <string>

#include "reading/captions/time_code.h"
#include "reading/text_lines.h"

namespace caption
{

namespace
{

// A letter that abbreviates bytes.
struct Letter {
    char letter;
    int times;
    std::array<std::uint8_t, 4> bytes;
    std::size_t size;
};

struct Rate {
    std::string_view name;
    KovaCaptionsFrameRate rate;
    bool drop;
};

} // namespace

static const Letter g_letters[] = {
    {'G', 1, {0xFA, 0x00, 0x00}, 3},
    {'H', 2, {0xFA, 0x00, 0x00}, 3},
    {'I', 3, {0xFA, 0x00, 0x00}, 3},
    {'J', 4, {0xFA, 0x00, 0x00}, 3},
    {'K', 5, {0xFA, 0x00, 0x00}, 3},
    {'L', 6, {0xFA, 0x00, 0x00}, 3},
    {'M', 7, {0xFA, 0x00, 0x00}, 3},
    {'N', 8, {0xFA, 0x00, 0x00}, 3},
    {'O', 9, {0xFA, 0x00, 0x00}, 3},
    {'P', 1, {0xFB, 0x80, 0x80}, 3},
    {'Q', 1, {0xFC, 0x80, 0x80}, 3},
    {'R', 1, {0xFD, 0x80, 0x80}, 3},
    {'S', 1, {0x96, 0x69}, 2},
    {'T', 1, {0x61, 0x01}, 2},
    {'U', 1, {0xE1, 0x00, 0x00, 0x00}, 4},
    {'Z', 1, {0x00}, 1},
};

// 30 and 60 are those of television, 30000/1001 and 60000/1001.
static const Rate g_rates[] = {
    {"24", KOVA_CAPTIONS_RATE_24, false},       {"25", KOVA_CAPTIONS_RATE_25, false},
    {"30", KOVA_CAPTIONS_RATE_29_97, false},    {"30DF", KOVA_CAPTIONS_RATE_29_97, true},
    {"50", KOVA_CAPTIONS_RATE_50, false},       {"60", KOVA_CAPTIONS_RATE_59_94, false},
    {"60DF", KOVA_CAPTIONS_RATE_59_94, true},   {"23.976", KOVA_CAPTIONS_RATE_23_976, false},
    {"29.97", KOVA_CAPTIONS_RATE_29_97, false}, {"29.97DF", KOVA_CAPTIONS_RATE_29_97, true},
    {"59.94", KOVA_CAPTIONS_RATE_59_94, false}, {"59.94DF", KOVA_CAPTIONS_RATE_59_94, true},
};

bool IsMcc(std::string_view text)
{
    return StartsWith(FirstLine(text), "File Format=MacCaption_MCC");
}

// None if there is something else in it than hexadecimal digits and letters that have a meaning.
static std::optional<std::vector<std::uint8_t>> Expanded(std::string_view text)
{
    std::vector<std::uint8_t> bytes;

    while (!text.empty()) {
        const char capital = char(text[0] >= 'a' && text[0] <= 'z' ? text[0] - 'a' + 'A' : text[0]);
        const auto *const letter = std::find_if(std::begin(g_letters), std::end(g_letters),
                                                [&](const Letter &known) { return known.letter == capital; });
        if (letter != std::end(g_letters)) {
            for (int i = 0; i < letter->times; ++i) {
                bytes.insert(bytes.end(), letter->bytes.begin(),
                             letter->bytes.begin() + std::ptrdiff_t(letter->size));
            }
            text.remove_prefix(1);
            continue;
        }
        const auto byte = text.size() >= 2 ? Hexadecimal(text.substr(0, 2)) : std::nullopt;
        if (!byte) return std::nullopt;
        bytes.push_back(std::uint8_t(*byte));
        text.remove_prefix(2);
    }
    return bytes;
}

// A time code, which field and line of the picture may follow (".1,9").
static std::optional<KovaCaptionsTimeCode> ParseLabel(std::string_view label)
{
    const std::size_t point = label.find('.');

    if (point != std::string_view::npos) {
        const std::string_view place = label.substr(point + 1);
        const std::size_t comma = place.find(',');
        if (!Decimal(place.substr(0, comma))) return std::nullopt;
        if (comma != std::string_view::npos && !Decimal(place.substr(comma + 1))) return std::nullopt;
    }
    return ParseTimeCode(label.substr(0, point));
}

static const Rate *FindRate(std::string_view name)
{
    const auto *const rate = std::find_if(std::begin(g_rates), std::end(g_rates),
                                          [&](const Rate &known) { return known.name == name; });
    return rate == std::end(g_rates) ? nullptr : rate;
}

// The rate that the file names counts. That of its packets tells 23.976 from 24, and serves where it names
// none.
static KovaCaptionsFrameRate RateOf(const Rate *named, KovaCaptionsFrameRate packets)
{
    if (!named) return packets == KOVA_CAPTIONS_RATE_UNKNOWN ? KOVA_CAPTIONS_RATE_29_97 : packets;
    const bool film = named->rate == KOVA_CAPTIONS_RATE_24 && packets == KOVA_CAPTIONS_RATE_23_976;
    return film ? packets : named->rate;
}

namespace
{

class MccReader
{
public:
    explicit MccReader(Notices &notices) : damaged_(notices)
    {
    }

    Triplets Read(std::string_view text)
    {
        TextLines lines(text);

        for (auto line = lines.Next(); line; line = lines.Next()) {
            const std::string problem = ReadLine(*line);
            if (!problem.empty()) damaged_.Report(lines.number(), problem + "; the line is ignored");
        }
        damaged_.Finish();
        return std::move(read_);
    }

private:
    // Returns what is wrong with the line.
    std::string ReadLine(std::string_view line)
    {
        if (line.empty() || StartsWith(line, "//")) return "";
        const std::size_t equals = line.find('=');
        if (equals != std::string_view::npos) {
            return ReadProperty(line.substr(0, equals), Trimmed(line.substr(equals + 1)));
        }
        auto timeCode = ParseLabel(TakeWord(line));
        if (!timeCode) return "it does not begin with a time code (HH:MM:SS:FF)";
        const auto data = Expanded(line);
        if (!data) return "its data has other characters than hexadecimal digits, the letters G to U, and Z";
        return ReadPacket(*timeCode, *data);
    }

    std::string ReadProperty(std::string_view key, std::string_view value)
    {
        if (key != "Time Code Rate") return "";
        named_ = FindRate(value);
        return named_ ? "" : "unknown time code rate '" + std::string(value.substr(0, 40)) + "'";
    }

    std::string ReadPacket(KovaCaptionsTimeCode timeCode, const std::vector<std::uint8_t> &data)
    {
        std::array<std::uint8_t, std::size_t(3) * 256> bytes;
        KovaCaptionsTriplets found = {bytes.data(), bytes.size() / 3, 0, 0, 0};
        KovaCaptionsCdp cdp = {};

        if (Kova_Captions_ReadAncillary(data.data(), data.size(), &found, &cdp) < 0) {
            return "it holds no packet of captions";
        }
        if (packets_ == KOVA_CAPTIONS_RATE_UNKNOWN) packets_ = cdp.rate;
        const KovaCaptionsFrameRate rate = RateOf(named_, packets_);
        if (named_ && named_->drop) timeCode.drop = 1;
        const std::int64_t frames = Kova_Captions_CountFrames(rate, &timeCode);
        if (frames < 0) return "its time code does not fit the file's rate";
        const std::int64_t time = Kova_Captions_FramesToTime(rate, frames);
        for (std::size_t i = 0; i < found.count; ++i) {
            const std::uint8_t *const triplet = &bytes[3 * i];
            if (IsValid(triplet[0])) read_.triplets.push_back({time, {triplet[0], triplet[1], triplet[2]}});
        }
        read_.end = std::max(read_.end, time);
        return "";
    }

    Triplets read_;
    DamagedLines damaged_;
    const Rate *named_ = nullptr; // by the file's header
    KovaCaptionsFrameRate packets_ = KOVA_CAPTIONS_RATE_UNKNOWN;
};

} // namespace

Triplets ReadMcc(std::string_view text, Notices &notices)
{
    return MccReader(notices).Read(text);
}

} // namespace caption
