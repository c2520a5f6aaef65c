// SPDX-License-Identifier: MIT
#include "drawing/display.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "base/utf8.h"
#include "drawing/directfb_system.h"
#include "drawing/edges.h"
#include "drawing/quiet_start.h"

namespace caption
{

static const std::size_t g_mostBytes = 255; // of one string in one call

Display::Display(const Options &options) : options_(options), edge_(options.edge)
{
    const auto width = kova_uint32(options.plane.width);
    const auto height = kova_uint32(options.plane.height);
    KovaTextInitParam_t init = {};
    init.eLayer = options.layer;
    init.uiPlaneWidth = width;
    init.uiPlaneHeight = height;
    init.bColor32Bit = options.Mode() == ColorMode::ARGB;
    // The window of layer 1 is ARGB in this mode only, and a 32-bit plane keeps the existing window.
    init.bTextDisp_Palette = options.Mode() == ColorMode::PALETTE ||
                             (options.Mode() == ColorMode::ARGB && options.layer == KOVA_GRAPHIC_LAYER1);

    {
        const QuietStart quiet;
        Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &init);
        display_ = Kova_TextDisp_GetDisplayByID(0);
    }
    if (!display_) {
        throw Failure("layer " + std::to_string(options.layer + 1) +
                      " could not be opened; see the messages of DirectFB above, or use --layer 1");
    }
    if (!Kova_TextDisp_GetDFB()) {
        Kova_TextDisp_Destroy(0);
        throw Failure("DirectFB did not start; see its messages above, check DFBARGS, or try --headless");
    }
    KeepDirectFBStarted();
    KovaTextContextParam_t context = {width, height, width, height, 0, 0, width, height};
    context_ = Kova_TextDisp_CreateContext(display_, &context);
    Kova_TextDisp_SetActive(display_, context_, 1);
    if (options.Mode() == ColorMode::ARGB)
        display_->Create32BitPlane(display_, context_, 0, 0, width, height);
    try {
        readback_ = std::make_unique<Readback>(options);
    } catch (...) {
        Kova_TextDisp_DestroyContext(display_, context_);
        Kova_TextDisp_Destroy(0);
        throw;
    }
    slots_ = std::make_unique<FontSlots>(display_, context_);
    display_->Show(display_, context_);
    Clear();
}

Display::~Display()
{
    readback_.reset();
    Kova_TextDisp_DestroyContext(display_, context_);
    Kova_TextDisp_Destroy(0);
}

bool Display::HasPalette() const
{
    return options_.Mode() != ColorMode::ARGB;
}

bool Display::CanCopy() const
{
    return options_.Mode() == ColorMode::INDEX;
}

static int Distance(Color one, Color other)
{
    const auto square = [](int difference) { return difference * difference; };

    return square(one.red - other.red) + square(one.green - other.green) + square(one.blue - other.blue) +
           square(one.alpha - other.alpha);
}

// The value of a colour for the operations. Adds it to the palette if it is new.
kova_uint32 Display::Value(Color color)
{
    if (!HasPalette()) {
        return kova_uint32(color.red) << 24 | kova_uint32(color.green) << 16 | kova_uint32(color.blue) << 8 |
               color.alpha;
    }
    auto entry = std::find(palette_.begin(), palette_.end(), color);
    if (entry == palette_.end() && palette_.size() < 256) {
        KovaTextColor_t loaded = {color.red, color.green, color.blue, color.alpha};
        display_->SetPalette(display_, context_, &loaded, 1, kova_uint8(palette_.size()));
        palette_.push_back(color);
        entry = palette_.end() - 1;
    }
    if (entry == palette_.end()) {
        ranOutOfColors_ = true;
        entry = std::min_element(palette_.begin(), palette_.end(), [&](Color one, Color other) {
            return Distance(one, color) < Distance(other, color);
        });
    }
    return kova_uint32(entry - palette_.begin());
}

// Entry 0 is transparent; then come the 64 colours, and the same translucent. Those that flash and those that
// the renderer hands out are not used here.
pKovaITextDisplay_t Display::ShareWithCaptions()
{
    std::vector<KovaTextColor_t> loaded;

    shared_ = true;
    palette_.assign(256, g_transparent);
    for (std::size_t i = 0; i < 64; ++i) {
        palette_[1 + i] = CaptionColor(std::uint8_t(i));
        palette_[65 + i] = CaptionColor(std::uint8_t(i), 128);
    }
    for (const Color &color : palette_) loaded.push_back({color.red, color.green, color.blue, color.alpha});
    display_->SetPalette(display_, context_, loaded.data(), kova_uint32(loaded.size()), 0);
    return display_;
}

void Display::SetEdge(KovaTextEdgeType_e edge)
{
    edge_ = edge;
}

void Display::Select(const Piece &piece, int height)
{
    slots_->Select(FileOf(*piece.face), height, piece.slanted);
}

// Splits text between characters into portions for one call each. The library takes 16-bit units whatever the
// encoding, so the bytes are copied to memory aligned for such units.
static std::vector<std::vector<unsigned short>> Portions(const std::string &text,
                                                         std::vector<kova_uint8> &lengths)
{
    std::vector<std::vector<unsigned short>> portions;
    std::string portion;
    const auto finish = [&] {
        std::vector<unsigned short> units((portion.size() + 1) / 2);
        std::memcpy(units.data(), portion.data(), portion.size());
        lengths.push_back(kova_uint8(portion.size()));
        portions.push_back(std::move(units));
        portion.clear();
    };

    for (const Character &character : Characters(text)) {
        if (portion.size() + character.text.size() > g_mostBytes) finish();
        portion += character.text;
    }
    if (!portion.empty()) finish();
    return portions;
}

int Display::Width(const Piece &piece, int height)
{
    std::vector<kova_uint8> lengths;
    const auto portions = Portions(piece.text, lengths);
    int total = 0;

    Select(piece, height);
    for (std::size_t i = 0; i < portions.size(); ++i) {
        kova_uint32 width = 0;
        display_->GetStringWidth(display_, context_, portions[i].data(), lengths[i], KOVA_TEXT_UTF8, &width);
        total += int(width);
    }
    return total;
}

// Published DirectFB has no underline metrics and returns 0 and 0; then those of the font file are used.
Stroke Display::Underline(const Piece &piece, int height)
{
    kova_sint32 position = 0;
    kova_sint32 thickness = 0;

    display_->GetUnderlineInfo(display_, context_, 0, 0, 0, &position, &thickness);
    return thickness > 0 ? Stroke{position, thickness} : UnderlineOf(*piece.face, height);
}

// A stroke has the same edge as its text.
void Display::DrawStroke(const Piece &piece, Rect rect)
{
    const EdgeOffsets &offsets = OffsetsOf(edge_);
    const auto draw = [&](Offset offset, Color color) {
        Fill({rect.x + offset.x, rect.y + offset.y, rect.width, rect.height}, color);
    };

    for (const Offset offset : offsets.edge) draw(offset, piece.style.edgeColor.value_or(options_.edgeColor));
    draw(offsets.text, piece.style.color.value_or(options_.color));
}

void Display::Draw(const Piece &piece, int height, int x, int y)
{
    const int baseline = y + ReachOf(*piece.face, height).ascent;
    std::vector<kova_uint8> lengths;
    const auto portions = Portions(piece.text, lengths);
    const auto drawStroke = [&, left = x](Stroke stroke) {
        DrawStroke(piece, {left, baseline + stroke.top, Width(piece, height), stroke.thickness});
    };

    if (piece.style.color && piece.style.color->alpha == 0) return; // DirectFB would draw it opaque
    Select(piece, height);
    if (piece.style.underline) drawStroke(Underline(piece, height));
    display_->SetTextForeColor(display_, context_, Value(piece.style.color.value_or(options_.color)));
    display_->SetEdgeColor(display_, context_, Value(piece.style.edgeColor.value_or(options_.edgeColor)));
    display_->SetEdgeType(display_, context_, edge_);
    for (std::size_t i = 0; i < portions.size(); ++i) {
        kova_uint32 width = 0;
        display_->DrawString(display_, context_, portions[i].data(), lengths[i], kova_uint32(x),
                             kova_uint32(y), KOVA_TEXT_UTF8, KOVA_TEXT_TOPLEFT);
        flipped_ = true;
        display_->GetStringWidth(display_, context_, portions[i].data(), lengths[i], KOVA_TEXT_UTF8, &width);
        x += int(width);
    }
    if (piece.style.strikeout) drawStroke(StrikeoutOf(*piece.face, height));
}

// In a true-colour surface DirectFB leaves smooth glyphs multiplied by their coverage, but writes the colour
// of a rectangle unchanged. The rectangle's colour is multiplied beforehand so that both match.
static Color Multiplied(Color color)
{
    const auto times = [&](std::uint8_t value) { return std::uint8_t((value * color.alpha + 127) / 255); };

    return {times(color.red), times(color.green), times(color.blue), color.alpha};
}

static Rect Common(Rect rect, Size plane)
{
    const int left = std::max(rect.x, 0);
    const int top = std::max(rect.y, 0);

    return {left, top, std::min(rect.x + rect.width, plane.width) - left,
            std::min(rect.y + rect.height, plane.height) - top};
}

void Display::Fill(Rect rect, Color color)
{
    const Rect seen = Common(rect, options_.plane);
    KovaTextRect_t filled = {kova_uint32(seen.x), kova_uint32(seen.y), kova_uint32(seen.width),
                             kova_uint32(seen.height)};

    if (seen.width <= 0 || seen.height <= 0) return;
    display_->FillRect(display_, context_, &filled, Value(CanCopy() ? color : Multiplied(color)));
    flipped_ = false;
}

void Display::Copy(const Picture &picture, Rect rect)
{
    const Rect seen = Common(rect, options_.plane);
    if (seen.width <= 0 || seen.height <= 0) return;
    std::vector<kova_uint8> indexes;
    Color last = g_transparent;
    kova_uint8 index = 0;

    for (int y = seen.y; y < seen.y + seen.height; ++y) {
        for (int x = seen.x; x < seen.x + seen.width; ++x) {
            const Color &pixel = picture.At(x, y);
            if (!(pixel == last)) index = kova_uint8(Value(pixel));
            last = pixel;
            indexes.push_back(index);
        }
    }
    display_->DrawPixel(display_, context_, indexes.data(), kova_uint32(seen.x), kova_uint32(seen.y),
                        kova_uint32(seen.width), kova_uint32(seen.height), kova_uint32(seen.width));
    flipped_ = true;
}

// Palette entries are kept while there is room for more: in index mode a change would affect what is on the
// screen.
void Display::Clear()
{
    if (!shared_ && palette_.size() > 64) palette_.clear();
    ranOutOfColors_ = false;
    Fill({0, 0, options_.plane.width, options_.plane.height},
         g_transparent); // entry 0 of the palette from now on
}

void Display::Hold()
{
    if (options_.layer != KOVA_GRAPHIC_LAYER1) display_->SetFlip(display_, 0);
}

void Display::Release()
{
    if (options_.layer != KOVA_GRAPHIC_LAYER1) {
        display_->SetFlip(display_, 1);
    } else if (!flipped_) {
        Flip();
    }
}

void Display::Flip()
{
    display_->Flip(display_, context_);
    flipped_ = true;
}

Picture Display::Present()
{
    Flip();
    return readback_->Presented();
}

} // namespace caption
