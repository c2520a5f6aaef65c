#include "display.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "directfb_system.h"
#include "failure.h"
#include "quiet_start.h"
#include "utf8.h"

namespace caption
{

enum { PALETTE_TRANSPARENT, PALETTE_EDGE, PALETTE_TEXT, PALETTE_SIZE };

static const std::size_t g_mostBytes = 255; // of one string in one call

Margins MarginsOf(KovaTextEdgeType_e edge)
{
    switch (edge) {
    case KOVA_TEXT_ERAISED:
        return {0, 2, 2, 0};
    case KOVA_TEXT_EDEPRESSED:
        return {0, 0, 1, 1};
    case KOVA_TEXT_EUNIFORM:
        return {0, 0, 2, 2};
    case KOVA_TEXT_ELEFTDROPSHADOW:
        return {2, 0, 0, 2};
    case KOVA_TEXT_ERIGTHDROPSHADOW:
        return {0, 0, 2, 2};
    default:
        return {};
    }
}

Display::Display(const Options &options) : options_(options), edge_(options.edge)
{
    const auto width = kova_uint32(options.plane.width);
    const auto height = kova_uint32(options.plane.height);
    KovaTextInitParam_t init = {};
    init.eLayer = options.layer;
    init.uiPlaneWidth = width;
    init.uiPlaneHeight = height;
    init.bColor32Bit = options.mode == ColorMode::ARGB;
    // The window of layer 1 is ARGB in this mode alone, and a 32-bit plane keeps the window that is there.
    init.bTextDisp_Palette = options.mode == ColorMode::PALETTE ||
                             (options.mode == ColorMode::ARGB && options.layer == KOVA_GRAPHIC_LAYER1);

    {
        const QuietStart quiet;
        Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &init);
        display_ = Kova_TextDisp_GetDisplayByID(0);
    }
    if (!display_) {
        throw Failure("no display on layer " + std::to_string(options.layer + 1) +
                      "; DirectFB's reports stand above. Layer 1 is there with every DirectFB system");
    }
    if (!Kova_TextDisp_GetDFB()) {
        Kova_TextDisp_Destroy(0);
        throw Failure("DirectFB did not start; its reports stand above. Check DFBARGS, or try --headless");
    }
    KeepDirectFBStarted();
    KovaTextContextParam_t context = {width, height, width, height, 0, 0, width, height};
    context_ = Kova_TextDisp_CreateContext(display_, &context);
    Kova_TextDisp_SetActive(display_, context_, 1);
    if (options.mode == ColorMode::ARGB) display_->Create32BitPlane(display_, context_, 0, 0, width, height);
    try {
        readback_ = std::make_unique<Readback>(options);
    } catch (...) {
        Kova_TextDisp_DestroyContext(display_, context_);
        Kova_TextDisp_Destroy(0);
        throw;
    }
    display_->Show(display_, context_);
    LoadColors();
}

Display::~Display()
{
    readback_.reset();
    Kova_TextDisp_DestroyContext(display_, context_);
    Kova_TextDisp_Destroy(0);
}

static KovaTextColor_t Opaque(Color color)
{
    return {color.red, color.green, color.blue, 255};
}

void Display::LoadColors()
{
    if (options_.mode == ColorMode::ARGB) return;
    KovaTextColor_t palette[PALETTE_SIZE] = {};
    palette[PALETTE_EDGE] = Opaque(options_.edgeColor);
    palette[PALETTE_TEXT] = Opaque(options_.color);
    display_->SetPalette(display_, context_, palette, PALETTE_SIZE, 0);
}

static kova_uint32 Packed(Color color)
{
    return kova_uint32(color.red) << 24 | kova_uint32(color.green) << 16 | kova_uint32(color.blue) << 8 |
           0xFF;
}

kova_uint32 Display::TextColor() const
{
    return options_.mode == ColorMode::ARGB ? Packed(options_.color) : kova_uint32(PALETTE_TEXT);
}

kova_uint32 Display::EdgeColor() const
{
    return options_.mode == ColorMode::ARGB ? Packed(options_.edgeColor) : kova_uint32(PALETTE_EDGE);
}

void Display::SetEdge(KovaTextEdgeType_e edge)
{
    edge_ = edge;
}

int Display::CreateFont(const std::string &file, int height)
{
    kova_sint32 slot = -1;

    display_->CreateFont(display_, context_, file.c_str(), kova_uint32(height), KOVA_FONTATTR_NONE, &slot);
    if (slot < 0) {
        throw Failure(file +
                      ": DirectFB cannot open this font; is libdirectfb-extra, its FreeType module, there?");
    }
    return slot;
}

// The slot keeps its font from call to call; only another height or slant opens the file again.
void Display::Select(const Piece &piece, int height)
{
    const auto known = slots_.find(piece.font);
    const kova_sint32 slot = known != slots_.end() ? known->second : CreateFont(piece.font, height);

    slots_[piece.font] = slot;
    display_->SetFont(display_, context_, slot, kova_uint32(height),
                      piece.slanted ? KOVA_FONTATTR_ITALIC : KOVA_FONTATTR_NONE);
    display_->SetTextForeColor(display_, context_, TextColor());
    display_->SetEdgeColor(display_, context_, EdgeColor());
    display_->SetEdgeType(display_, context_, edge_);
}

// What one call takes, cut between characters. The library takes 16-bit units whatever the encoding, so the
// bytes are copied to where such units may stand.
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

void Display::Draw(const Piece &piece, int height, int x, int y)
{
    std::vector<kova_uint8> lengths;
    const auto portions = Portions(piece.text, lengths);

    Select(piece, height);
    for (std::size_t i = 0; i < portions.size(); ++i) {
        kova_uint32 width = 0;
        display_->DrawString(display_, context_, portions[i].data(), lengths[i], kova_uint32(x),
                             kova_uint32(y), KOVA_TEXT_UTF8, KOVA_TEXT_TOPLEFT);
        display_->GetStringWidth(display_, context_, portions[i].data(), lengths[i], KOVA_TEXT_UTF8, &width);
        x += int(width);
    }
}

void Display::Clear()
{
    KovaTextRect_t plane = {0, 0, kova_uint32(options_.plane.width), kova_uint32(options_.plane.height)};

    display_->FillRect(display_, context_, &plane, PALETTE_TRANSPARENT); // 0 in 32-bit mode too
}

Picture Display::Present()
{
    display_->Flip(display_, context_);
    return readback_->Presented();
}

} // namespace caption
