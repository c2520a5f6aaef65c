// SPDX-License-Identifier: MIT
// CEA-608: styles of captions, places, attributes, characters and channels.
#include "generating/patterns.h"

namespace caption::patterns
{

using namespace encoding;

static Pairs Row(unsigned row, unsigned column, const std::string &text)
{
    return MoveTo(row, column) + Text(text);
}

void PopOn(Script &script)
{
    script.Show({"Two rows appear at once, in the middle of the bottom.",
                 {BoxOfCells(14, 8, 16), BoxOfCells(15, 10, 12)}});
    script.Send(Code(RCL) + Code(ENM) + Row(14, 8, "POP-ON CAPTION 1") + Row(15, 10, "LOADED FIRST"));
    script.Hold(1);
    script.Send(Code(EOC));
    script.Hold(3);

    script.Show({"Four full rows replace them at once.",
                 {BoxOfCells(1, 0, 32), BoxOfCells(5, 0, 32), BoxOfCells(10, 0, 32), BoxOfCells(15, 0, 32)}});
    Pairs rows = Code(ENM);
    for (const unsigned row : {1u, 5u, 10u, 15u})
        rows = rows + Row(row, 0, "12345678901234567890123456789012");
    script.Send(rows);
    script.Hold(1);
    script.Send(Code(EOC));
    script.Hold(3);

    script.Show({"Nothing: the displayed memory was erased."});
    script.Send(Code(EDM));
    script.Hold(2);

    script.Show({"The first caption again: nobody erased the memory that it went to.",
                 {BoxOfCells(14, 8, 16), BoxOfCells(15, 10, 12)}});
    script.Send(Code(ENM) + Row(14, 8, "POP-ON CAPTION 1") + Row(15, 10, "LOADED FIRST") + Code(EOC));
    script.Hold(4);
}

void RollUp(Script &script)
{
    static const Misc depths[] = {RU2, RU3, RU4};
    unsigned line = 0;
    const auto next = [&] {
        script.Send(Code(CR) + Text("LINE " + std::to_string(++line)));
        script.Hold(1);
    };

    for (unsigned depth = 2; depth <= 4; ++depth) {
        script.Show(
            {"Lines roll up smoothly, " + std::to_string(depth) + " rows at a time, the last in row 15.",
             {BoxOfCells(16 - depth, 0, 32), BoxOfCells(15, 0, 32)}});
        script.Send(Code(depths[depth - 2]) + PacIndent(15, 0));
        for (unsigned i = 0; i <= depth; ++i) next();
    }

    script.Show({"The four rows jump to rows 5 to 8 at once, and go on there.",
                 {BoxOfCells(5, 0, 32), BoxOfCells(8, 0, 32)}});
    script.Send(PacIndent(8, 0));
    script.Hold(1);
    next();
    next();
    script.Show({"Two rows are left: the others were erased.", {BoxOfCells(7, 0, 32), BoxOfCells(8, 0, 32)}});
    script.Send(Code(RU2));
    script.Hold(4);
}

void PaintOn(Script &script)
{
    script.Show({"Letters appear one after the other.", {BoxOfCells(14, 4, 24)}});
    script.Send(Code(EDM) + Code(RDC) + MoveTo(14, 4));
    for (const char *const pair : {"PA", "IN", "T-", "ON", " C", "AP", "TI", "ON"}) {
        script.Send(Text(pair));
        script.Hold(0.2);
    }
    script.Hold(1);
    script.Show({"The first word is overwritten: PRINTED. A second row comes.",
                 {BoxOfCells(14, 4, 24), BoxOfCells(15, 4, 24)}});
    script.Send(Row(15, 4, "SECOND ROW") + Row(14, 4, "PRINTED ") + MoveTo(14, 12));
    script.Hold(2);
    script.Show({"Delete to end of row: PRINTED alone in the first row.",
                 {BoxOfCells(14, 4, 24), BoxOfCells(15, 4, 24)}});
    script.Send(Code(DER));
    script.Hold(2);
    script.Show(
        {"Backspaces: SECOND WORD in the second row.", {BoxOfCells(14, 4, 24), BoxOfCells(15, 4, 24)}});
    script.Send(MoveTo(15, 14) + Times(3, Code(BS)) + Text("WORD"));
    script.Hold(4);
}

void Rows(Script &script)
{
    Scene scene = {"Rows 1 to 15, each two columns further to the right, in boxes of the grid of 15 by 32."};
    Pairs pairs = Code(RCL) + Code(ENM);

    for (unsigned row = 1; row <= 15; ++row) {
        const unsigned column = 2 * (row - 1);
        const std::string number = (row < 10 ? "0" : "") + std::to_string(row);
        pairs = pairs + Row(row, column, number);
        scene.boxes.push_back(BoxOfCells(row, column, 2));
    }
    script.Send(pairs);
    script.Show(scene);
    script.Send(Code(EOC));
    script.Hold(5);

    script.Show(
        {"The four corners of the grid, and every tab offset in row 8: A B C D, the gaps one, two and three "
         "columns wide.",
         {BoxOfCells(1, 0, 1), BoxOfCells(1, 31, 1), BoxOfCells(15, 0, 1), BoxOfCells(15, 31, 1),
          BoxOfCells(8, 8, 10)}});
    script.Send(Code(ENM) + Row(1, 0, "1") + Row(1, 31, "2") + Row(15, 0, "3") + Row(15, 31, "4") +
                MoveTo(8, 8) + Text("A") + Tab(1) + Text("B") + Tab(2) + Text("C") + Tab(3) + Text("D") +
                Code(EOC));
    script.Hold(5);
}

void Attributes608(Script &script)
{
    static const char *const names[] = {"WHITE", "GREEN",  "BLUE",    "CYAN",
                                        "RED",   "YELLOW", "MAGENTA", "ITALICS"};
    Pairs pairs = Code(RCL) + Code(ENM);

    for (unsigned color = 0; color < 8; ++color) {
        pairs = pairs + Pac(2 + color, Color608(color)) + Text(names[color]) + MidRow(Color608(color), true) +
                Text("UNDERLINED");
    }
    script.Send(pairs);
    script.Show(
        {"Seven colours and italics in rows 2 to 9, on black. The second word of each row is underlined.",
         {BoxOfCells(2, 0, 20), BoxOfCells(9, 0, 20)}});
    script.Send(Code(EOC));
    script.Hold(5);

    pairs = Code(ENM);
    for (unsigned color = 0; color < 8; ++color) {
        const std::string name = color == BLACK ? "BLACK" : names[color];
        pairs = pairs + PacIndent(2 + color, 0) + Background(Color608(color)) + Text(name) +
                Background(Color608(color), true) + Text("TRANSLUCENT");
    }
    pairs = pairs + PacIndent(10, 0) + TransparentBackground() + Text("NO BACKGROUND") + PacIndent(11, 0) +
            Background(WHITE) + BlackForeground() + Text("BLACK ON WHITE");
    script.Send(pairs);
    script.Show({"Eight backgrounds in rows 2 to 9, solid, then translucent, with white letters. Row 10: no "
                 "background. "
                 "Row 11: black letters on white.",
                 {BoxOfCells(2, 0, 24), BoxOfCells(11, 0, 24)}});
    script.Send(Code(EOC));
    script.Hold(5);

    script.Send(Code(ENM) + PacIndent(14, 4) + Text("STEADY") + Code(FON) + Text("FLASHING") +
                PacIndent(15, 4) + MidRow(RED) + MidRow(ITALICS, true) + Code(FON) +
                Text("RED ITALIC UNDERLINED"));
    script.Show(
        {"Row 14: STEADY, then FLASHING, which flashes. Row 15 after three spaces: red, italic, underlined, "
         "flashing.",
         {BoxOfCells(14, 4, 28), BoxOfCells(15, 4, 28)}});
    script.Send(Code(EOC));
    script.Hold(6);
}

// 16 special or 32 extended characters of a first byte. An extended one replaces the letter before it.
static Pairs Table(unsigned first, unsigned from, unsigned to)
{
    Pairs pairs;

    for (unsigned second = from; second <= to; ++second) {
        if (first > 0x11) pairs = pairs + Text("x");
        pairs = pairs + Twice(first, second);
    }
    return pairs;
}

void Characters608(Script &script)
{
    Pairs pairs = Code(RCL) + Code(ENM);

    for (unsigned row = 0; row < 3; ++row) {
        std::string codes;
        for (unsigned code = 0; code < 32; ++code) codes += char(0x20 + 32 * row + code);
        pairs = pairs + Row(3 + row, 0, codes);
    }
    script.Send(pairs + MoveTo(7, 8) + Table(0x11, 0x30, 0x3F));
    script.Show({"Rows 3 to 5: the basic set, ASCII but for eleven characters. Row 7: the special "
                 "characters; the tenth is "
                 "a gap without background.",
                 {BoxOfCells(3, 0, 32), BoxOfCells(7, 8, 16)}});
    script.Send(Code(EOC));
    script.Hold(5);

    script.Send(Code(ENM) + MoveTo(3, 0) + Table(0x12, 0x20, 0x3F) + MoveTo(5, 0) + Table(0x13, 0x20, 0x3F));
    script.Show(
        {"Row 3: Spanish, various, French. Row 5: Portuguese, German, Danish, box corners. No x is left.",
         {BoxOfCells(3, 0, 32), BoxOfCells(5, 0, 32)}});
    script.Send(Code(EOC));
    script.Hold(6);
}

void Channels608(Script &script)
{
    script.Show({"Each channel shows its own name: CC1 to CC4 at the bottom, T1 to T4 in a black box from "
                 "the top. Choose one."});
    for (unsigned channel = 1; channel <= 4; ++channel) {
        const unsigned field = channel > 2 ? 2 : 1;
        const std::string number = std::to_string(channel);
        script.Send(Code(EDM, channel) + Code(RDC, channel) + PacIndent(15, 8, false, channel) +
                        Text("CAPTIONS CC" + number),
                    field);
        script.Send(Code(TR, channel) + Text("TEXT T" + number) + Code(CR, channel) + Text("SECOND LINE"),
                    field);
    }
    script.Hold(6);

    // Field 1 changes between its channels in the middle of their rows.
    script.Show({"CC1 and CC2 each get the end of their row: ONE and TWO. CC3, CC4, T1 to T4 stay."});
    script.Send(Code(RDC, 1) + Text(" ONE") + Code(RDC, 2) + Text(" TWO"));
    script.Hold(6);
}

} // namespace caption::patterns
