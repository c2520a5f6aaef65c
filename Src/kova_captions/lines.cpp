// SPDX-License-Identifier: MIT
#include "lines.h"

#include <string.h>

namespace captions
{

const char *After(const char *name)
{
    return name + strlen(name) + 1;
}

const char *Nth(const char *list, unsigned number)
{
    while (*list && number-- > 0) list = After(list);
    return list;
}

struct Values {
    char letter;
    char names[62];
};

static const Values kValues[] = {
    {'O', "solid\0flash\0translucent\0transparent\0"},
    {'o', "solid\0flash\0semi-transparent\0transparent\0"},
    {'D', "left-to-right\0right-to-left\0top-to-bottom\0bottom-to-top\0"},
    {'J', "left\0right\0center\0full\0"},
    {'F', "snap\0fade\0wipe\0reserved\0"},
    {'E', "none\0raised\0depressed\0uniform\0shadow-left\0shadow-right\0"},
    {'S', "small\0standard\0large\0"},
    {'V', "subscript\0normal\0superscript\0"},
    {'R', "none\0mpa\0us-tv\0canadian-english\0canadian-french\0"},
    // The colours of 608, by red, green and blue, each of which is off or full.
    {'c', "black\0blue\0green\0cyan\0red\0magenta\0yellow\0white\0"},
};

const char *ValueNames(char letter)
{
    for (const Values &values : kValues) {
        if (values.letter == letter) return values.names;
    }
    return "";
}

Line Start(char *text, size_t size)
{
    if (size > 0) text[0] = '\0';
    return {text, size, 0, false};
}

void Write(Line &line, const char *bytes, size_t count)
{
    line.cut |= line.length + count >= line.size;
    if (!line.cut) memcpy(line.text + line.length, bytes, count);
    if (!line.cut) line.text[line.length + count] = '\0';
    line.length += count;
}

void Write(Line &line, const char *text)
{
    for (; *text; ++text) Write(line, text, 1);
}

void WriteDecimal(Line &line, unsigned value)
{
    unsigned power = 1;
    while (value / power >= 10) power *= 10;
    for (; power > 0; power /= 10) Write(line, &"0123456789"[value / power % 10], 1);
}

void WriteColor(Line &line, unsigned color)
{
    WriteDecimal(line, color >> 4 & 3);
    Write(line, ",");
    WriteDecimal(line, color >> 2 & 3);
    Write(line, ",");
    WriteDecimal(line, color & 3);
}

} // namespace captions
