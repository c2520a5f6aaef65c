// SPDX-License-Identifier: MIT
// Streams with errors, which a decoder must live with.
#include "generating/patterns.h"

namespace caption::patterns
{

using namespace encoding;

// The parity of the first or second byte is wrong.
static Pairs WithBadFirst(Pairs pairs)
{
    pairs.front().first ^= 0x80;
    return pairs;
}

static Pairs WithBadSecond(Pairs pairs)
{
    pairs.front().second ^= 0x80;
    return pairs;
}

void Damaged608(Script &script)
{
    const auto step = [&](const std::string &text, const Pairs &pairs) {
        script.Show({text, {BoxOfCells(14, 0, 32), BoxOfCells(15, 0, 32)}});
        script.Send(pairs);
        script.Hold(3);
    };
    const Pairs begin = Code(EDM) + Code(RDC) + PacIndent(15, 0);

    step("A solid block in place of the second letter: L_TTER.",
         begin + WithBadSecond(Text("LE")) + Text("TTER"));
    step("COMMAND in row 14: the first transmission of a preamble was damaged, its repetition acts.",
         begin + WithBadSecond(Once(0x14, 0x50)) + Once(0x14, 0x50) + Text("COMMAND"));
    step("ONCE: the repetition of a preamble was damaged and is ignored.",
         begin + Once(0x14, 0x70) + WithBadFirst(Once(0x14, 0x70)) + Text("ONCE"));
    step("SINGLE: no control code was repeated.",
         Once(0x14, EDM) + Once(0x14, RDC) + Once(0x14, 0x70) + Text("SINGLE"));
    step("ABC without gaps: unassigned control codes between the letters.",
         begin + Text("A") + Twice(0x10, 0x60) + Text("B") + Twice(0x17, 0x20) + Text("C"));
    step("FILLERS: pairs of zeros between the letters are no error.",
         begin + Text("FI") + Pairs{{0x00, 0x00}} + Text("LL") + NULL_PAIR + Text("ER") +
             Pairs{{0x00, 0x00}} + Text("S"));
    step("Blocks, then nothing: 45 damaged pairs in a row reset the captions.",
         begin + Times(45, WithBadFirst(WithBadSecond(Text("XX")))));
    step("RECOVERED", begin + Text("RECOVERED"));
}

void Damaged708(Script &script)
{
    const Window window = Window(0).Anchor(7, 70, 105).Rows(2).Columns(30).Styles(1, 1);
    const ByteString begin = DeleteWindows(0xFF) + Define(window);
    const auto show = [&](const std::string &text) { script.Show({text, {BoxOf(window)}}); };

    show("Nothing after a second: a packet is missing, which resets every service.");
    script.SendService(begin + Ascii("BEFORE THE GAP"));
    script.Hold(1);
    script.SetSequence((script.sequence() + 1) % 4);
    script.SendService(Ascii("NO WINDOW FOR THIS"));
    script.Hold(2);

    show("SAME NUMBER TWICE: a sequence number that comes again is no gap.");
    script.SendService(begin + Ascii("SAME NUMBER "));
    script.SetSequence((script.sequence() + 3) % 4);
    script.SendService(Ascii("TWICE"));
    script.Hold(3);

    show("SHORT PACKET: its end is missing, and the packet that follows is intact.");
    ByteString shortened =
        PacketTriplets(Packet(script.sequence(), Block(1, begin + Ascii("SHORT ")) + ByteString(40)));
    shortened.resize(shortened.size() - 3 * 10);
    script.SendTriplets(shortened);
    script.SetSequence((script.sequence() + 1) % 4);
    script.SendService(Ascii("PACKET"));
    script.Hold(3);

    show("SKIPPED: unknown codes of every length between the letters.");
    script.SendService(begin + Ascii("SK") + Bytes({0x11, 'x'}) + Bytes({0x19, 'x', 'x'}) +
                       Bytes({EXT1, 0x01}) + Bytes({EXT1, 0x09, 'x'}) + Ascii("IP") +
                       Bytes({EXT1, 0x11, 'x', 'x'}) + Bytes({EXT1, 0x19, 'x', 'x', 'x'}) +
                       Bytes({EXT1, 0x81, 'x', 'x', 'x', 'x'}) + Ascii("P") +
                       Bytes({EXT1, 0x89, 'x', 'x', 'x', 'x', 'x'}) + Bytes({EXT1, 0x91, 0x02, 'x', 'x'}) +
                       Bytes({0x93}) + Ascii("ED"));
    script.Hold(3);

    show("CUT: a command that a packet's end cuts is dropped, and so is data without a packet.");
    script.SendService(begin + Ascii("CU"));
    script.SendBlocks(Block(1, {0x97, 0x30})); // two bytes of SetWindowAttributes
    script.SendTriplets({0xFE, 'X', 'X'});
    script.SendService(Ascii("T"));
    script.Hold(3);

    show("BLOCK: a service block with an impossible extended header is skipped.");
    script.SendService(begin + Ascii("BLO"));
    script.SendBlocks(Bytes({0xE2, 0x03, 'X', 'X'}) + Block(1, Ascii("C")));
    script.SendService(Ascii("K"));
    script.Hold(3);

    show("END: captions go on.");
    script.SendService(begin + Ascii("END"));
    script.Hold(3);
}

} // namespace caption::patterns
