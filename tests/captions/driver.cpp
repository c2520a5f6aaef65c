// SPDX-License-Identifier: MIT
#include "driver.h"

#include <cstring>

static KovaCaptionsOptions Defaults()
{
    KovaCaptionsOptions options;

    Kova_Captions_GetDefaults(&options);
    return options;
}

KovaCaptionsOptions WithEvents()
{
    KovaCaptionsOptions options = Defaults();

    options.event_capacity = 1000;
    return options;
}

std::string ToUtf8(unsigned character)
{
    if (character < 0x80) return {char(character)};
    if (character < 0x800) return {char(0xC0 | character >> 6), char(0x80 | (character & 0x3F))};
    return {char(0xE0 | character >> 12), char(0x80 | (character >> 6 & 0x3F)),
            char(0x80 | (character & 0x3F))};
}

Driver::Driver() : Driver(Defaults())
{
}

Driver::Driver(const KovaCaptionsOptions &options) : m_decoder(Kova_Captions_Create(&options))
{
    EXPECT_NE(m_decoder, nullptr);
}

/* --------------------------------------------------------------------------------------------------------- Feeding */

void Driver::Send(unsigned field, const Pairs &pairs)
{
    for (const Pair pair : pairs) {
        SendTriplets(ToTriplets(field, {pair}));
        m_now += FRAME;
    }
}

void Driver::SendTriplets(const ByteString &triplets)
{
    EXPECT_EQ(Kova_Captions_PushTriplets(m_decoder.get(), m_now, triplets.data(), triplets.size() / 3), 0);
}

void Driver::SendBlocks(const ByteString &blocks)
{
    SendTriplets(PacketTriplets(Packet(m_sequence, blocks)));
    m_sequence = (m_sequence + 1) % 4;
    m_now += FRAME;
}

void Driver::SendService(unsigned service, const ByteString &bytes)
{
    SendBlocks(Blocks(service, bytes));
}

void Driver::Wait(int64_t microseconds)
{
    m_now += microseconds;
    EXPECT_EQ(Kova_Captions_Advance(m_decoder.get(), m_now), 0);
}

void Driver::Discontinuity()
{
    EXPECT_EQ(Kova_Captions_Discontinuity(m_decoder.get()), 0);
}

/* ------------------------------------------------------------------------------------------------------------- 608 */

static std::string CellText(unsigned kind, unsigned character)
{
    switch (kind) {
    case KOVA_CAPTIONS_EMPTY:
        return ".";
    case KOVA_CAPTIONS_TRANSPARENT_SPACE:
        return "~";
    case KOVA_CAPTIONS_ATTRIBUTE:
        return "#";
    default:
        return ToUtf8(character);
    }
}

// `firstRow` is the number of the first row.
template <typename Cell>
static std::string GridText(const Cell *cells, size_t rows, size_t columns, size_t firstRow)
{
    std::string text;

    for (size_t row = 0; row < rows; row++) {
        std::string line;
        size_t used = 0;
        for (size_t column = 0; column < columns; column++) {
            const Cell &cell = cells[row * columns + column];
            line += CellText(cell.kind, cell.character);
            if (cell.kind != KOVA_CAPTIONS_EMPTY) used = line.size();
        }
        if (used)
            text += (text.empty() ? "" : "|") + std::to_string(row + firstRow) + " " + line.substr(0, used);
    }
    return text;
}

std::unique_ptr<KovaCaptionsChannel> Driver::Channel(unsigned source) const
{
    auto channel = std::make_unique<KovaCaptionsChannel>();

    memset(channel.get(), 0, sizeof *channel);
    EXPECT_EQ(Kova_Captions_GetChannel(m_decoder.get(), uint8_t(source), channel.get()), 0);
    return channel;
}

std::string Driver::Displayed(unsigned source) const
{
    return GridText(Channel(source)->displayed[0], KOVA_CAPTIONS_CHANNEL_ROWS, KOVA_CAPTIONS_CHANNEL_COLUMNS,
                    1);
}

std::string Driver::NonDisplayed(unsigned source) const
{
    return GridText(Channel(source)->non_displayed[0], KOVA_CAPTIONS_CHANNEL_ROWS,
                    KOVA_CAPTIONS_CHANNEL_COLUMNS, 1);
}

static std::string ColorName(unsigned color)
{
    switch (color) {
    case KOVA_CAPTIONS_WHITE:
        return "white";
    case KOVA_CAPTIONS_GREEN:
        return "green";
    case KOVA_CAPTIONS_BLUE:
        return "blue";
    case KOVA_CAPTIONS_CYAN:
        return "cyan";
    case KOVA_CAPTIONS_RED:
        return "red";
    case KOVA_CAPTIONS_YELLOW:
        return "yellow";
    case KOVA_CAPTIONS_MAGENTA:
        return "magenta";
    case KOVA_CAPTIONS_BLACK:
        return "black";
    default:
        return "color " + std::to_string(color);
    }
}

static std::string OpacityName(unsigned opacity)
{
    static const char *const NAMES[] = {"", " flashing", " translucent", " transparent"};

    return opacity < 4 ? NAMES[opacity] : " opacity " + std::to_string(opacity);
}

std::string Driver::Look(unsigned row, unsigned column, unsigned source) const
{
    const auto channel = Channel(source);
    const KovaCaptionsChannelCell &cell = channel->displayed[row - 1][column - 1];

    if (cell.kind == KOVA_CAPTIONS_EMPTY) return "-";
    if (cell.kind == KOVA_CAPTIONS_TRANSPARENT_SPACE) return "~";
    return ColorName(cell.foreground) + (cell.italics ? " italics" : "") +
           (cell.underline ? " underline" : "") + (cell.flash ? " flash" : "") + " on " +
           ColorName(cell.background) + OpacityName(cell.background_opacity);
}

std::string Driver::Cursor(unsigned source) const
{
    const auto channel = Channel(source);

    return std::to_string(channel->cursor_row + 1) + "," + std::to_string(channel->cursor_column + 1);
}

unsigned Driver::Mode(unsigned source) const
{
    return Channel(source)->mode;
}

/* ------------------------------------------------------------------------------------------------------------- 708 */

KovaCaptionsService Driver::Service(unsigned service) const
{
    KovaCaptionsService state = {};

    EXPECT_EQ(Kova_Captions_GetService(m_decoder.get(), uint8_t(service), &state, nullptr, 0), 0);
    return state;
}

std::unique_ptr<KovaCaptionsWindow> Driver::Window(unsigned window, unsigned service) const
{
    std::vector<KovaCaptionsWindow> windows(KOVA_CAPTIONS_WINDOWS);

    EXPECT_EQ(Kova_Captions_GetService(m_decoder.get(), uint8_t(service), nullptr, windows.data(), 0xFF), 0);
    return std::make_unique<KovaCaptionsWindow>(windows[window]);
}

std::string Driver::WindowText(unsigned window, unsigned service) const
{
    const auto state = Window(window, service);

    if (!state->exists) return "-";
    return GridText(state->cells[0], KOVA_CAPTIONS_WINDOW_ROWS, KOVA_CAPTIONS_WINDOW_COLUMNS, 0);
}

std::string Driver::Pen(unsigned window, unsigned service) const
{
    const auto state = Window(window, service);

    if (!state->exists) return "-";
    return std::to_string(state->pen_row) + "," + std::to_string(state->pen_column);
}

/* -------------------------------------------------------------------------------------------------------- The rest */

KovaCaptionsCounters Driver::Counters() const
{
    KovaCaptionsCounters counters = {};

    EXPECT_EQ(Kova_Captions_GetCounters(m_decoder.get(), &counters), 0);
    return counters;
}

std::string Driver::Events() const
{
    KovaCaptionsEvent event = {};
    std::string lines;

    EXPECT_EQ(Kova_Captions_EndRuns(m_decoder.get()), 0);
    while (Kova_Captions_NextEvent(m_decoder.get(), &event) == 1) {
        char line[KOVA_CAPTIONS_LINE];
        Kova_Captions_FormatEvent(&event, line, sizeof line);
        lines += std::string(Kova_Captions_SourceName(event.source)) + " " + line + "\n";
    }
    return lines;
}

static std::string MotionText(const KovaCaptionsMotion &motion)
{
    return " motion " + std::to_string(motion.kind) + "/" + std::to_string(motion.direction) + "/" +
           std::to_string(motion.showing) + " " + std::to_string(motion.start) + "+" +
           std::to_string(motion.duration);
}

// Plain bytes without padding, as the structures of the interface have them.
template <typename Plain> static std::string BytesText(const Plain &plain)
{
    return ToHex(reinterpret_cast<const uint8_t *>(&plain), sizeof plain);
}

template <typename Cell> static std::string CellsText(const Cell *cells, size_t count)
{
    std::string text;

    for (size_t i = 0; i < count; i++) {
        if (cells[i].kind != KOVA_CAPTIONS_EMPTY)
            text += " [" + std::to_string(i) + ": " + BytesText(cells[i]) + "]";
    }
    return text;
}

std::string Driver::Snapshot() const
{
    std::string text;

    for (unsigned source = KOVA_CAPTIONS_CC1; source <= KOVA_CAPTIONS_T4; source++) {
        const auto channel = Channel(source);
        constexpr size_t CELLS = KOVA_CAPTIONS_CHANNEL_ROWS * KOVA_CAPTIONS_CHANNEL_COLUMNS;
        text += std::string(Kova_Captions_SourceName(uint8_t(source))) + " mode " +
                std::to_string(channel->mode) + " depth " + std::to_string(channel->depth) + " base " +
                std::to_string(channel->base_row) + " cursor " + std::to_string(channel->cursor_row) + "," +
                std::to_string(channel->cursor_column) + MotionText(channel->roll) + " shown" +
                CellsText(channel->displayed[0], CELLS) + " hidden" +
                CellsText(channel->non_displayed[0], CELLS) + "\n";
    }
    for (unsigned service = 1; service <= 63; service++) {
        std::vector<KovaCaptionsWindow> windows(KOVA_CAPTIONS_WINDOWS);
        KovaCaptionsService state = {};
        if (Kova_Captions_GetService(m_decoder.get(), uint8_t(service), &state, windows.data(), 0xFF) != 0)
            continue;
        text += "s" + std::to_string(service) + " current " + std::to_string(state.current_window) +
                " exist " + std::to_string(state.existing_windows) + " visible " +
                std::to_string(state.visible_windows) + " blanked " + std::to_string(state.blanked) +
                " buffered " + std::to_string(state.buffered) + " delay " +
                std::to_string(state.delay_until) + "\n";
        for (const KovaCaptionsWindow &window : windows) {
            if (!window.exists) continue;
            text += "  window" + MotionText(window.effect) + MotionText(window.scroll) + " visible " +
                    std::to_string(window.visible) + " pen " + std::to_string(window.pen_row) + "," +
                    std::to_string(window.pen_column) + " " + BytesText(window.definition) + " " +
                    BytesText(window.attributes) + " " + BytesText(window.pen) +
                    CellsText(window.cells[0], KOVA_CAPTIONS_WINDOW_ROWS * KOVA_CAPTIONS_WINDOW_COLUMNS) +
                    "\n";
        }
    }
    KovaCaptionsProgram program = {};
    Kova_Captions_GetProgram(m_decoder.get(), &program);
    program.revision = 0;
    return text + "program " + BytesText(program) + "\n";
}
