// SPDX-License-Identifier: MIT
#include "generating/writers.h"

#include <cstdio>

namespace caption
{

std::string BeyondScc(const Recording &recording)
{
    for (const Frame &frame : recording.frames) {
        if (!frame.packets.empty()) return "CEA-708";
        if (frame.fields[1]) return "field 2 of CEA-608 (CC3, CC4, T3, T4)";
    }
    return "";
}

std::string FrameLabel(std::size_t frame)
{
    const std::size_t inTenMinutes = 17982;
    const std::size_t inMinute = 1798; // but in every tenth, which has two more
    const std::size_t rest = frame % inTenMinutes;
    const std::size_t dropped = frame / inTenMinutes * 18 + (rest < 2 ? 0 : (rest - 2) / inMinute * 2);
    const std::size_t label = frame + dropped;
    char text[40];

    std::snprintf(text, sizeof text, "%02zu:%02zu:%02zu;%02zu", label / 108000, label / 1800 % 60,
                  label / 30 % 60, label % 30);
    return text;
}

std::string SccText(const Recording &recording)
{
    std::string text = "Scenarist_SCC V1.0\n";
    bool inLine = false;

    for (std::size_t i = 0; i < recording.frames.size(); ++i) {
        const auto &pair = recording.frames[i].fields[0];
        if (pair) {
            char word[8];
            std::snprintf(word, sizeof word, "%02x%02x", unsigned(pair->first), unsigned(pair->second));
            text += inLine ? " " : "\n" + FrameLabel(i) + "\t";
            text += word;
        } else if (inLine) {
            text += "\n";
        }
        inLine = pair.has_value();
    }
    return inLine ? text + "\n" : text;
}

} // namespace caption
