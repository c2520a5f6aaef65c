// SPDX-License-Identifier: MIT
// What an ASS script says: its styles, and the text of its events. libavcodec makes such an event of nearly
// every text subtitle.
#ifndef KOVA_CAPTION_READING_ASS_H
#define KOVA_CAPTION_READING_ASS_H

#include <map>
#include <set>
#include <string>
#include <vector>

#include "base/notices.h"
#include "cues/cue.h"

namespace caption
{

// How much of the script's header the source itself asked for. The rest is what libavcodec filled in.
enum class AssHeader { NOTHING, STYLES, STYLES_AND_MARGINS };

class AssScript
{
public:
    AssScript(const std::string &header, AssHeader asked, Notices &notices);

    // The event as libavcodec gives it: read order, layer, style, name, three margins, effect, text. Adds a
    // block to the cue unless there is no text in it, and sets the cue's layer and canvas.
    void Read(const std::string &event, Cue &cue);

private:
    struct StyleEntry {
        Style style;
        int alignment = 2; // as on the keys of a number pad
        double left = 0;   // margins, pixels of the canvas
        double right = 0;
        double vertical = 0;
        std::string size;
        bool vertically = false; // one character below the other
    };
    struct Reading;

    void ReadStyle(const std::vector<std::string> &names, const std::vector<std::string> &values);
    const StyleEntry &Find(const std::string &name) const;
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
    std::set<std::string> sizes_;
};

} // namespace caption

#endif
