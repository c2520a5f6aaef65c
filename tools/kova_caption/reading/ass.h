// SPDX-License-Identifier: MIT
// Reads an ASS script: its styles, and the text of its events. libavcodec converts nearly every text subtitle
// to such events.
#ifndef KOVA_CAPTION_READING_ASS_H
#define KOVA_CAPTION_READING_ASS_H

#include <map>
#include <string>
#include <vector>

#include "base/notices.h"
#include "cues/cue.h"

namespace caption
{

// How much of the script's header comes from the source. libavcodec filled in the rest.
enum class AssHeader { NOTHING, STYLES, STYLES_AND_MARGINS };

class AssScript
{
public:
    AssScript(const std::string &header, AssHeader asked, Notices &notices);

    // Reads an event as libavcodec returns it: read order, layer, style, name, three margins, effect, text.
    // Adds a block to the cue, unless the event has no text, and sets the cue's layer and canvas.
    void Read(const std::string &event, Cue &cue);

private:
    struct StyleEntry {
        Style style;
        int alignment = 2; // as on a numeric keypad
        double left = 0;   // margins, pixels of the canvas
        double right = 0;
        double vertical = 0;
        double size = 0;         // of the text, pixels of the canvas
        bool vertically = false; // vertical text
    };
    struct Reading;

    void ReadStyle(const std::vector<std::string> &names, const std::vector<std::string> &values);
    const StyleEntry &Find(const std::string &name) const;
    double SizeOf(const StyleEntry &style) const;
    void SetSize(double size, const StyleEntry &base, Style &style) const;
    void ReadTags(const std::string &tags, Reading &reading);
    void ReadTag(const std::string &name, const std::string &value, Reading &reading);
    void ReadText(const std::string &text, Reading &reading);
    void Place(const std::vector<std::string> &fields, Reading &reading) const;
    void Unsupported(const std::string &what);

    AssHeader asked_;
    Notices &notices_;
    Size canvas_;
    std::map<std::string, StyleEntry> styles_;
    std::string defaultStyle_;
    double usualSize_ = 0; // of the header's first style, whether asked for or filled in
};

} // namespace caption

#endif
