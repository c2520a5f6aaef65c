// SPDX-License-Identifier: MIT
#include "states.h"

KovaCaptionsPen PenStyle1()
{
    KovaCaptionsPen pen = {};
    pen.foreground = 0x2A;
    pen.size = KOVA_CAPTIONS_PEN_STANDARD;
    pen.offset = KOVA_CAPTIONS_NORMAL;
    return pen;
}

// ------------------------------------------------------------------------------------------------------------- 708

ServiceState::ServiceState() : windows()
{
    service.status.flash_since = KOVA_CAPTIONS_NO_TIME;
    service.delay_until = KOVA_CAPTIONS_NO_TIME;
}

KovaCaptionsWindow &ServiceState::Define(unsigned window, unsigned row, unsigned column, unsigned rows,
                                         unsigned columns)
{
    KovaCaptionsWindow &defined = windows[window];
    defined = {};
    defined.exists = defined.visible = 1;
    defined.definition.rows = uint8_t(rows);
    defined.definition.columns = uint8_t(columns);
    defined.definition.anchor_vertical = uint8_t(row);
    defined.definition.anchor_horizontal = uint8_t(column);
    defined.attributes.scroll_direction = KOVA_CAPTIONS_BOTTOM_TO_TOP;
    return defined;
}

void ServiceState::Print(unsigned window, unsigned row, unsigned column, const std::u16string &text,
                         const KovaCaptionsPen &pen)
{
    for (const char16_t character : text) {
        KovaCaptionsWindowCell &cell = windows[window].cells[row][column++];
        cell.character = uint16_t(character);
        cell.kind = KOVA_CAPTIONS_CHARACTER;
        cell.pen = pen;
    }
}

static KovaCaptionsMotion Scrolling(int64_t time)
{
    KovaCaptionsMotion motion = {};
    motion.start = time;
    motion.duration = KOVA_CAPTIONS_ROLL;
    motion.kind = KOVA_CAPTIONS_SCROLL;
    motion.direction = KOVA_CAPTIONS_BOTTOM_TO_TOP;
    return motion;
}

void ServiceState::Scroll(unsigned window, int64_t time)
{
    KovaCaptionsWindow &scrolled = windows[window];
    const unsigned rows = scrolled.definition.rows;
    for (unsigned row = 0; row + 1 < rows; ++row) {
        std::copy(std::begin(scrolled.cells[row + 1]), std::end(scrolled.cells[row + 1]),
                  scrolled.cells[row]);
    }
    std::fill(std::begin(scrolled.cells[rows - 1]), std::end(scrolled.cells[rows - 1]),
              KovaCaptionsWindowCell());
    scrolled.scroll = Scrolling(time);
}

// ------------------------------------------------------------------------------------------------------------- 608

static KovaCaptionsChannelCell EmptyCell()
{
    KovaCaptionsChannelCell cell = {};
    cell.background_opacity = KOVA_CAPTIONS_TRANSPARENT;
    return cell;
}

ChannelState::ChannelState() : channel(new KovaCaptionsChannel())
{
    channel->mode = KOVA_CAPTIONS_POP_ON;
    channel->status.flash_since = KOVA_CAPTIONS_NO_TIME;
    for (auto &row : channel->displayed) {
        for (KovaCaptionsChannelCell &cell : row) cell = EmptyCell();
    }
}

KovaCaptionsChannelCell &ChannelState::At(unsigned row, unsigned column)
{
    return channel->displayed[row - 1][column - 1];
}

void ChannelState::Print(unsigned row, unsigned column, const std::u16string &text)
{
    for (const char16_t character : text) {
        KovaCaptionsChannelCell &cell = At(row, column++);
        cell = {};
        cell.character = uint16_t(character);
        cell.kind = KOVA_CAPTIONS_CHARACTER;
        cell.foreground = KOVA_CAPTIONS_WHITE;
    }
}

void ChannelState::RollUp(unsigned depth, unsigned base_row)
{
    channel->mode = KOVA_CAPTIONS_ROLL_UP;
    channel->depth = uint8_t(depth);
    channel->base_row = uint8_t(base_row - 1);
}

void ChannelState::Roll(int64_t time)
{
    const unsigned last = channel->base_row, first = last + 1 - channel->depth;
    for (unsigned row = first; row < last; ++row) {
        std::copy(std::begin(channel->displayed[row + 1]), std::end(channel->displayed[row + 1]),
                  channel->displayed[row]);
    }
    for (KovaCaptionsChannelCell &cell : channel->displayed[last]) cell = EmptyCell();
    channel->roll = Scrolling(time);
}

// ------------------------------------------------------------------------------------------------------------ Stage

KovaCaptionsScreen GivenScreen()
{
    KovaCaptionsScreen screen;
    Kova_Captions_GetDefaultScreen(&screen);
    screen.fonts[KOVA_CAPTIONS_FONT_DEFAULT] = "/none/mono";
    screen.fonts[KOVA_CAPTIONS_FONT_SANS] = "/none/prop";
    return screen;
}

KovaCaptionsSettings Defaults()
{
    KovaCaptionsSettings settings;
    Kova_Captions_GetDefaultSettings(&settings);
    return settings;
}

Stage::Stage(int width, int height) : Stage(GivenScreen(), width, height)
{
}

Stage::Stage(const KovaCaptionsScreen &wanted, int width, int height)
    : display(new FakeDisplay(width, height))
{
    KovaCaptionsScreen screen = wanted;
    screen.display = **display;
    screen.plane_width = uint32_t(width);
    screen.plane_height = uint32_t(height);
    m_renderer.reset(Kova_Captions_CreateRenderer(&screen));
    EXPECT_TRUE(m_renderer);
}

int Stage::Draw(const ServiceState &state, int64_t time)
{
    return Kova_Captions_DrawService(**this, &state.service, state.windows.data(), time);
}

int Stage::Draw(const ChannelState &state, int64_t time)
{
    return Kova_Captions_DrawChannel(**this, state.channel.get(), time);
}

int Stage::Preview(const char *text, int64_t time)
{
    return Kova_Captions_Preview(**this, text, time);
}

void Stage::Set(const KovaCaptionsSettings &settings)
{
    EXPECT_EQ(Kova_Captions_SetSettings(**this, &settings), 0);
}

Box CellBox(int row, int column, int rows, int columns)
{
    return {LEFT + column * CELL, TOP + row * CELL, LEFT + (column + columns) * CELL,
            TOP + (row + rows) * CELL};
}
