// SPDX-License-Identifier: MIT
// Lines of text for people: lists of names, and writing into the caller's room.
#ifndef KOVA_CAPTIONS_LINES_H
#define KOVA_CAPTIONS_LINES_H

#include <stddef.h>

namespace captions
{

// Lists of names are bytes in a row, each name with its zero byte, and an empty one ends a list: tables of pointers would
// take twice the room, and every program that loads the library would have to relocate them.

// The name after this one.
const char *After(const char *name);

// The name of a number in a list, or the empty name at its end.
const char *Nth(const char *list, unsigned number);

// The names of an argument's or a setting's values, by the letter of their kind; an empty list for other letters.
const char *ValueNames(char letter);

// Room of the caller.
struct Line {
    char *text;
    size_t size;
    // Of everything written; what is beyond size is only counted.
    size_t length;
    bool cut;
};

// Room that holds an empty text.
Line Start(char *text, size_t size);

// Writes bytes that belong together, or none of them once something did not fit.
void Write(Line &line, const char *bytes, size_t count);

void Write(Line &line, const char *text);
void WriteDecimal(Line &line, unsigned value);

// A colour of 708 as red, green and blue with commas between them.
void WriteColor(Line &line, unsigned color);

} // namespace captions

#endif // KOVA_CAPTIONS_LINES_H
