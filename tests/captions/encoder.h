// SPDX-License-Identifier: MIT
// An encoder of captions for the tests: CEA-608 pairs, extended data, CEA-708 packets, and what carries them. It knows
// nothing of the decoder; encoder_test.cpp holds it against bytes written by hand.
#ifndef KOVA_TESTS_CAPTIONS_ENCODER_H
#define KOVA_TESTS_CAPTIONS_ENCODER_H

#include "triplet_list.h"

#include <string>
#include <vector>

/* ------------------------------------------------------------------------------------------------------------- 608 */

uint8_t WithParity(unsigned byte);

// Two bytes of line 21, parity included.
struct Pair {
    uint8_t first;
    uint8_t second;
};
using Pairs = std::vector<Pair>;

Pairs operator+(Pairs left, const Pairs &right);
Pairs Times(unsigned count, const Pairs &pairs);

// Two bytes that get their parity.
Pairs Raw(unsigned first, unsigned second);

const Pairs NULL_PAIR = {{0x80, 0x80}};

// A control code of a channel, once or, as most encoders send it, twice. Channels 1 and 3 are data channel 1.
Pairs Once(unsigned first, unsigned second, unsigned channel = 1);
Pairs Twice(unsigned first, unsigned second, unsigned channel = 1);

// Miscellaneous codes, twice.
enum Misc : uint8_t {
    RCL = 0x20,
    BS = 0x21,
    AOF = 0x22,
    AON = 0x23,
    DER = 0x24,
    RU2 = 0x25,
    RU3 = 0x26,
    RU4 = 0x27,
    FON = 0x28,
    RDC = 0x29,
    TR = 0x2A,
    RTD = 0x2B,
    EDM = 0x2C,
    CR = 0x2D,
    ENM = 0x2E,
    EOC = 0x2F
};
Pairs Code(Misc code, unsigned channel = 1);

// The order of the colours in preambles and mid-row codes.
enum Color608 : uint8_t { WHITE, GREEN, BLUE, CYAN, RED, YELLOW, MAGENTA, ITALICS };

// A preamble address code, twice: a row from 1 on, and a colour or an indent of 0, 4, ... 28.
Pairs Pac(unsigned row, Color608 color = WHITE, bool underline = false, unsigned channel = 1);
Pairs PacIndent(unsigned row, unsigned indent, bool underline = false, unsigned channel = 1);

Pairs MidRow(Color608 color, bool underline = false, unsigned channel = 1);
Pairs Tab(unsigned columns, unsigned channel = 1);

// The characters of a string that is ASCII, two a pair; a null byte fills the last.
Pairs Text(const std::string &text);

// A packet of extended data: start, content, end with its checksum.
Pairs Xds(unsigned classCode, unsigned type, const std::string &content);
uint8_t XdsChecksum(unsigned classCode, unsigned type, const std::string &content);

// As triplets of a field, 1 or 2.
ByteString ToTriplets(unsigned field, const Pairs &pairs);

/* ------------------------------------------------------------------------------------------------------------- 708 */

enum Command708 : uint8_t {
    ETX = 0x03,
    BS708 = 0x08,
    FF = 0x0C,
    CR708 = 0x0D,
    HCR = 0x0E,
    EXT1 = 0x10,
    P16 = 0x18,
    CW0 = 0x80,
    CLW = 0x88,
    DSW = 0x89,
    HDW = 0x8A,
    TGW = 0x8B,
    DLW = 0x8C,
    DLY = 0x8D,
    DLC = 0x8E,
    RST = 0x8F
};

ByteString Byte(unsigned byte);
ByteString Bytes(std::initializer_list<unsigned> bytes);
ByteString Ascii(const std::string &text);

ByteString SetCurrentWindow(unsigned window);
ByteString ClearWindows(unsigned map);
ByteString DisplayWindows(unsigned map);
ByteString HideWindows(unsigned map);
ByteString ToggleWindows(unsigned map);
ByteString DeleteWindows(unsigned map);
ByteString Delay(unsigned tenths);
ByteString Wide(unsigned character); // P16

// A window at the top left of the screen, visible, of one row and 32 columns; what differs is set by name:
// Window(0).Rows(2).Hidden().
struct Window {
    explicit Window(unsigned window) : id(window)
    {
    }

    unsigned id, visible = 1, rowLock = 1, columnLock = 1, priority = 0, relative = 0, vertical = 0,
                 horizontal = 0, point = 0, rows = 1, columns = 32, windowStyle = 1, penStyle = 1;

    Window &Hidden()
    {
        visible = 0;
        return *this;
    }
    Window &Locks(unsigned row, unsigned column)
    {
        rowLock = row;
        columnLock = column;
        return *this;
    }
    Window &Priority(unsigned value)
    {
        priority = value;
        return *this;
    }
    Window &Relative()
    {
        relative = 1;
        return *this;
    }
    Window &Anchor(unsigned anchorPoint, unsigned anchorVertical, unsigned anchorHorizontal)
    {
        point = anchorPoint;
        vertical = anchorVertical;
        horizontal = anchorHorizontal;
        return *this;
    }
    Window &Rows(unsigned count)
    {
        rows = count;
        return *this;
    }
    Window &Columns(unsigned count)
    {
        columns = count;
        return *this;
    }
    Window &Styles(unsigned ofWindow, unsigned ofPen)
    {
        windowStyle = ofWindow;
        penStyle = ofPen;
        return *this;
    }
};
ByteString Define(const Window &window);

struct PenAttributes {
    unsigned tag = 0, offset = 1, size = 1, italics = 0, underline = 0, edge = 0, font = 0;
};
ByteString SetPenAttributes(const PenAttributes &pen);

struct PenColor {
    unsigned foreground = 0x2A, foregroundOpacity = 0, background = 0, backgroundOpacity = 0, edge = 0;
};
ByteString SetPenColor(const PenColor &color);

ByteString SetPenLocation(unsigned row, unsigned column);

// Directions: 0 left to right, 1 right to left, 2 top to bottom, 3 bottom to top. The defaults are window style 1.
struct WindowAttributes {
    unsigned fill = 0, fillOpacity = 0, border = 0, borderColor = 0, wordWrap = 0, print = 0, scroll = 3,
             justify = 0, effect = 0, effectDirection = 0, effectSpeed = 0;
};
ByteString SetWindowAttributes(const WindowAttributes &attributes);

// A service block with its header, standard or, from service 7 on, extended; at most 31 bytes.
ByteString Block(unsigned service, const ByteString &bytes);

// As many blocks as the bytes need.
ByteString Blocks(unsigned service, const ByteString &bytes);

// A packet with a sequence number, 0 to 3: at most 127 bytes of blocks. A null block makes its length even.
ByteString Packet(unsigned sequence, const ByteString &blocks);

// As triplets: a start, then data.
ByteString PacketTriplets(const ByteString &packet);

/* -------------------------------------------------------------------------------------------------------- Carriage */

ByteString CcData(const ByteString &triplets);
ByteString UserData(const ByteString &triplets);
ByteString Mpeg2Picture(const ByteString &triplets);
// A NAL unit of H.264, emulation prevention bytes put in.
ByteString H264Sei(const ByteString &triplets);
ByteString Cdp(unsigned sequence, const ByteString &triplets);

#endif
