// SPDX-License-Identifier: MIT
// Encodes CEA-708: commands, service blocks, packets. Used by `generate` and by the tests of the decoder, of which it
// knows nothing; tests/captions/encoder_test.cpp compares it with bytes written by hand. What does not fit throws
// std::invalid_argument.
#ifndef KOVA_CAPTION_GENERATING_ENCODER708_H
#define KOVA_CAPTION_GENERATING_ENCODER708_H

#include <initializer_list>
#include <string>
#include <vector>

#include "generating/bytes.h"

namespace caption::encoding
{

enum Command708 : std::uint8_t {
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

// The bytes of the element, a character or a command, that begins there.
std::size_t ElementSize(const ByteString &bytes, std::size_t at);

// The same bytes in parts of whole elements, each of which fits one service block.
std::vector<ByteString> BlockParts(const ByteString &bytes);

// As the data of caption distribution packets and of MCC files have it: a packet with its sequence counter, at
// 30000/1001 frames a second.
ByteString Cdp(unsigned sequence, const ByteString &triplets);

} // namespace caption::encoding

#endif
