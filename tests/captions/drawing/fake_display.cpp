// SPDX-License-Identifier: MIT
#include "fake_display.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <ostream>

std::ostream &operator<<(std::ostream &stream, const Box &box)
{
    return stream << box.left << "," << box.top << " to " << box.right << "," << box.bottom;
}

static Box Meet(const Box &a, const Box &b)
{
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

static Box BoxOf(const KovaTextRect_t &rect)
{
    return {int(rect.uiX), int(rect.uiY), int(rect.uiX + rect.uiWidth), int(rect.uiY + rect.uiHeight)};
}

std::vector<unsigned> CharactersOf(const std::string &text)
{
    std::vector<unsigned> characters;
    for (size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        EXPECT_FALSE(lead >= 0x80 && lead < 0xC0) << "a string begins inside a character";
        EXPECT_LE(i + length, text.size()) << "a string ends inside a character";
        unsigned character = length == 1 ? lead : lead & (0x7Fu >> length);
        for (size_t j = 1; j < length && i + j < text.size(); ++j) {
            character = character << 6 | (static_cast<unsigned char>(text[i + j]) & 0x3Fu);
        }
        characters.push_back(character);
        i += length;
    }
    return characters;
}

FakeDisplay::FakeDisplay(int width, int height)
    : m_width(width), m_height(height), m_back(size_t(width) * size_t(height)),
      m_front(m_back), m_clip{0, 0, width, height}
{
    m_own.display = this;
    FillOperations();
    Forget();
}

FakeDisplay &FakeDisplay::Self(pKovaITextDisplay_t table)
{
    return *reinterpret_cast<Own *>(table)->display;
}

void FakeDisplay::Forget()
{
    flips = fills = strings = blits = palettes = openings = 0;
    texts.clear();
    filled.clear();
    clips.clear();
    calls.clear();
    touched = {m_width, m_height, 0, 0};
}

void FakeDisplay::Erase()
{
    std::fill(m_back.begin(), m_back.end(), 0u);
    std::fill(m_front.begin(), m_front.end(), 0u);
    std::fill(std::begin(palette), std::end(palette), KovaTextColor_t());
    m_clip = {0, 0, m_width, m_height};
    m_selected = -1;
    for (Font &font : m_fonts) font.scale = 65536;
}

// ----------------------------------------------------------------------------------------------------------- Pixels

void FakeDisplay::Write(int x, int y, kova_uint32 value)
{
    const Box inside = Meet(m_clip, {0, 0, m_width, m_height});
    if (x < inside.left || x >= inside.right || y < inside.top || y >= inside.bottom) return;
    m_back[size_t(y) * size_t(m_width) + size_t(x)] = value;
    touched = {std::min(touched.left, x), std::min(touched.top, y), std::max(touched.right, x + 1),
               std::max(touched.bottom, y + 1)};
}

void FakeDisplay::WriteBox(Box box, kova_uint32 value)
{
    const Box inside = Meet(Meet(box, m_clip), {0, 0, m_width, m_height});
    for (int y = inside.top; y < inside.bottom; ++y) {
        for (int x = inside.left; x < inside.right; ++x) Write(x, y, value);
    }
}

kova_uint32 FakeDisplay::Back(int x, int y) const
{
    return m_back[size_t(y) * size_t(m_width) + size_t(x)];
}

kova_uint32 FakeDisplay::Front(int x, int y) const
{
    return m_front[size_t(y) * size_t(m_width) + size_t(x)];
}

std::vector<kova_uint32> FakeDisplay::Screen() const
{
    return m_front;
}

std::uint32_t FakeDisplay::ColorAt(int x, int y) const
{
    const kova_uint32 value = Front(x, y);
    const KovaTextColor_t color = value < 256 ? palette[value] : KovaTextColor_t();
    if (color.a == 0) return 0;
    return std::uint32_t(color.r) << 24 | std::uint32_t(color.g) << 16 | std::uint32_t(color.b) << 8 |
           color.a;
}

std::vector<std::uint32_t> FakeDisplay::Colors() const
{
    std::vector<std::uint32_t> colors;
    for (int y = 0; y < m_height; ++y) {
        for (int x = 0; x < m_width; ++x) colors.push_back(ColorAt(x, y));
    }
    return colors;
}

template <typename Wanted> static Box AroundAll(int width, int height, Wanted wanted)
{
    Box box = {width, height, 0, 0};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (!wanted(x, y)) continue;
            box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
                   std::max(box.bottom, y + 1)};
        }
    }
    return box;
}

Box FakeDisplay::Around(kova_uint32 value) const
{
    return AroundAll(m_width, m_height, [&](int x, int y) { return Front(x, y) == value; });
}

Box FakeDisplay::Ink() const
{
    return AroundAll(m_width, m_height, [&](int x, int y) { return Front(x, y) != 0; });
}

int FakeDisplay::Count(kova_uint32 value, const Box &box) const
{
    int count = 0;
    for (int y = box.top; y < box.bottom; ++y) {
        for (int x = box.left; x < box.right; ++x) count += Front(x, y) == value;
    }
    return count;
}

// ------------------------------------------------------------------------------------------------------------- Text

int FakeDisplay::Advance(unsigned character) const
{
    const Font &font = m_fonts[size_t(m_selected)];
    const bool mono = font.name.find("mono") != std::string::npos;
    const unsigned percent = character >= 0x1100 && character < 0xE000 ? 100
                             : mono                                    ? 60
                             : character == 'W' || character == '@'    ? 100
                             : character == 'M'                        ? 85
                             : character == 'i' || character == ' '    ? 30
                                                                       : 55;
    return int(std::uint64_t(font.height) * percent * font.scale / 100 / 65536);
}

// From the top of the line to the base line 0.96 of the font's height, the whole line 1.2 of it.
void FakeDisplay::Letters(const std::string &text, int x, int y, kova_uint32 value)
{
    const Font &font = m_fonts[size_t(m_selected)];
    const int height = int(font.height), base_line = y + height * 96 / 100;

    for (const unsigned character : CharactersOf(text)) {
        const int advance = Advance(character);
        const int margin = std::max(1, advance / 10);
        const Box box = {x + margin, base_line - height * 7 / 10, x + advance - margin, base_line};
        if (character != ' ') {
            WriteBox(box, value);
            // Some letters have a tail, and slanted ones lean.
            if (character % 2) WriteBox({box.left, box.bottom, box.left + 2, box.bottom + height / 8}, value);
            if (font.attributes & KOVA_FONTATTR_ITALIC) {
                WriteBox({box.right, box.top, box.right + 2, box.top + height / 4}, value);
            }
        }
        x += advance;
    }
}

void FakeDisplay::Flip()
{
    ++flips;
    m_front = m_back;
    m_changed = false;
}

// ------------------------------------------------------------------------------------------------------- Operations

void FakeDisplay::FillOperations()
{
    KovaITextDisplay_t &operations = m_own.table;

    operations.SetFlip = [](pKovaITextDisplay_t table, kova_bool on) {
        FakeDisplay &self = Self(table);
        self.m_flip = on;
        if (on && self.m_changed) self.Flip();
        return 0;
    };
    operations.Flip = [](pKovaITextDisplay_t table, kova_sint8) { return Self(table).Flip(), 0; };
    operations.SetClip = [](pKovaITextDisplay_t table, kova_sint8, pKovaTextRect_t rect) {
        FakeDisplay &self = Self(table);
        self.m_clip = rect ? BoxOf(*rect) : Box{0, 0, self.m_width, self.m_height};
        if (rect) self.clips.push_back(self.m_clip);
        return 0;
    };
    operations.FillRect = [](pKovaITextDisplay_t table, kova_sint8, pKovaTextRect_t rect, kova_uint32 color) {
        FakeDisplay &self = Self(table);
        EXPECT_LE(rect->uiX + rect->uiWidth, kova_uint32(self.m_width));
        EXPECT_LE(rect->uiY + rect->uiHeight, kova_uint32(self.m_height));
        ++self.fills;
        self.filled.push_back(BoxOf(*rect));
        self.m_changed = true;
        return self.WriteBox(BoxOf(*rect), color), 0;
    };
    operations.SetPalette = [](pKovaITextDisplay_t table, kova_sint8, pKovaTextColor_t colors,
                               kova_uint32 count, kova_uint8 offset) {
        FakeDisplay &self = Self(table);
        EXPECT_LE(offset + count, 256u);
        std::copy(colors, colors + count, self.palette + offset);
        ++self.palettes;
        self.calls.push_back("SetPalette " + std::to_string(offset) + "+" + std::to_string(count));
        return 0;
    };
    operations.Blit = [](pKovaITextDisplay_t table, kova_sint8, pKovaTextRect_t rect, kova_uint32 x,
                         kova_uint32 y) {
        FakeDisplay &self = Self(table);
        const Box from = BoxOf(*rect);
        EXPECT_LE(from.right, self.m_width);
        EXPECT_LE(from.bottom, self.m_height);
        for (int row = from.top; row < from.bottom; ++row) {
            for (int column = from.left; column < from.right; ++column) {
                self.Write(int(x) + column - from.left, int(y) + row - from.top, self.Front(column, row));
            }
        }
        ++self.blits;
        if (self.m_flip || self.flips_always) self.Flip();
        return 0;
    };
    operations.CreateFont = [](pKovaITextDisplay_t table, kova_sint8, const char *name, kova_uint32 height,
                               KovaTextFontAttr_e, kova_sint32 *number) {
        FakeDisplay &self = Self(table);
        if (self.missing.count(name) != 0) return 0;
        if (self.m_names.count(name) == 0 && self.m_names.size() == self.m_fonts.size()) return 0;
        ++self.openings;
        self.m_names.insert(name);
        for (size_t slot = 0; slot < self.m_fonts.size(); ++slot) {
            Font &font = self.m_fonts[slot];
            if (!font.name.empty() && font.name != name) continue;
            font.name = name;
            font.height = height;
            *number = kova_sint32(slot);
            return 0;
        }
        return 0;
    };
    operations.SetFont = [](pKovaITextDisplay_t table, kova_sint8, kova_sint32 number, kova_uint32 height,
                            KovaTextFontAttr_e attributes) {
        FakeDisplay &self = Self(table);
        EXPECT_TRUE(number >= 0 && number < 8 && height > 0 && height < 300) << number << " " << height;
        Font &font = self.m_fonts[size_t(number)];
        EXPECT_FALSE(font.name.empty());
        if (font.height != height || font.attributes != attributes) {
            font = {font.name, height, attributes, 65536};
            ++self.openings;
        }
        self.m_selected = number;
        return 0;
    };
    operations.ScaleFontWidth = [](pKovaITextDisplay_t table, kova_sint8, kova_bool, kova_uint32 scale) {
        FakeDisplay &self = Self(table);
        EXPECT_GE(self.m_selected, 0);
        EXPECT_GT(scale, 0u);
        self.m_fonts[size_t(self.m_selected)].scale = scale;
        ++self.openings;
        return 0;
    };
    operations.GetFontHeight = [](pKovaITextDisplay_t table, kova_sint8, kova_sint32 *height) {
        FakeDisplay &self = Self(table);
        EXPECT_GE(self.m_selected, 0);
        *height = kova_sint32(self.m_fonts[size_t(self.m_selected)].height * 120 / 100);
        return 0;
    };
    operations.GetStringWidth = [](pKovaITextDisplay_t table, kova_sint8, const unsigned short *text,
                                   kova_uint8 bytes, KovaTextEncoding_e encoding, kova_uint32 *width) {
        FakeDisplay &self = Self(table);
        EXPECT_GE(self.m_selected, 0);
        EXPECT_EQ(encoding, KOVA_TEXT_UTF8);
        *width = 0;
        const std::string string(reinterpret_cast<const char *>(text), bytes);
        for (const unsigned character : CharactersOf(string)) *width += kova_uint32(self.Advance(character));
        return 0;
    };
    operations.GetUnderlineInfo = [](pKovaITextDisplay_t table, kova_sint8, kova_sint32, kova_uint32,
                                     kova_uint32, kova_sint32 *top, kova_sint32 *thickness) {
        *top = Self(table).underline_top;
        *thickness = Self(table).underline_thickness;
        return 0;
    };
    operations.SetTextForeColor = [](pKovaITextDisplay_t table, kova_sint8, kova_uint32 color) {
        return Self(table).m_color = color, 0;
    };
    operations.SetEdgeColor = [](pKovaITextDisplay_t table, kova_sint8, kova_uint32 color) {
        EXPECT_GE(Self(table).m_selected, 0) << "an edge colour needs a selected font";
        return Self(table).m_edge_color = color, 0;
    };
    operations.SetEdgeType = [](pKovaITextDisplay_t table, kova_sint8, KovaTextEdgeType_e edge) {
        return Self(table).m_edge = edge, 0;
    };
    operations.DrawString = [](pKovaITextDisplay_t table, kova_sint8, const unsigned short *text,
                               kova_uint8 bytes, kova_uint32 x, kova_uint32 y, KovaTextEncoding_e encoding,
                               KovaTextAlignFlag_e) {
        FakeDisplay &self = Self(table);
        const std::string string(reinterpret_cast<const char *>(text), bytes);
        const int left = int(x), top = int(y);
        EXPECT_GE(self.m_selected, 0);
        EXPECT_EQ(encoding, KOVA_TEXT_UTF8);
        const Font &font = self.m_fonts[size_t(self.m_selected)];
        int width = 0;
        for (const unsigned character : CharactersOf(string)) width += self.Advance(character);
        int dx = 0, dy = 0;
        const auto edge = [&](int ex, int ey) {
            self.Letters(string, left + ex, top + ey, self.m_edge_color);
        };
        switch (int(self.m_edge)) {
        case KOVA_TEXT_ENONE:
            break;
        case KOVA_TEXT_ERAISED:
            edge(0, -2);
            dx = 2;
            break;
        case KOVA_TEXT_EDEPRESSED:
            edge(0, 1);
            edge(1, 1);
            break;
        case KOVA_TEXT_EUNIFORM:
            edge(0, 1);
            edge(2, 1);
            edge(1, 0);
            edge(1, 2);
            dx = dy = 1;
            break;
        case KOVA_TEXT_ELEFTDROPSHADOW:
            edge(-2, 2);
            break;
        case KOVA_TEXT_ERIGTHDROPSHADOW:
            edge(2, 2);
            break;
        default:
            ADD_FAILURE() << "edge type " << int(self.m_edge);
        }
        self.Letters(string, left + dx, top + dy, self.m_color);
        self.texts.push_back({string, font.name, left + dx, top + dy, font.height,
                              bool(font.attributes & KOVA_FONTATTR_ITALIC), width, self.m_color,
                              self.m_edge_color, int(self.m_edge), font.scale, int(bytes)});
        ++self.strings;
        if (self.m_flip || self.flips_always) self.Flip();
        return 0;
    };
}
