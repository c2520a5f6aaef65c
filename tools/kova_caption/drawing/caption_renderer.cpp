// SPDX-License-Identifier: MIT
#include "drawing/caption_renderer.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <new>

#include "drawing/directfb_system.h"
#include "text/font_files.h"

namespace caption
{

Options ForCaptions(Options options)
{
    if (options.mode || options.layer != KOVA_GRAPHIC_LAYER1) return options;
    ChooseDirectFBSystem(options);
    const char *const system = std::getenv("DFBARGS");
    const bool window = system && std::strstr(system, "system=x11");
    if (window) options.layer = KOVA_GRAPHIC_LAYER2;
    options.mode = window ? ColorMode::PALETTE : ColorMode::INDEX;
    return options;
}

static std::uint8_t CaptionColorMode(ColorMode mode)
{
    switch (mode) {
    case ColorMode::INDEX:
        return KOVA_CAPTIONS_INDEX_COLORS;
    case ColorMode::PALETTE:
        return KOVA_CAPTIONS_PALETTE_COLORS;
    case ColorMode::ARGB:
        break;
    }
    return KOVA_CAPTIONS_TRUE_COLORS;
}

// The default style has letters of one width, because captions stand in cells.
static unsigned Drawn(unsigned style)
{
    return style == KOVA_CAPTIONS_FONT_DEFAULT ? unsigned(KOVA_CAPTIONS_FONT_MONO_SANS) : style;
}

// A font that is named serves all styles.
static std::string UprightFile(unsigned style, const Options &options, const Fonts &fonts)
{
    const std::string file = options.font.empty() ? FileOfStyle(Drawn(style), false) : FileOf(fonts.First());
    return file.empty() && style == KOVA_CAPTIONS_FONT_DEFAULT ? FileOf(fonts.First()) : file;
}

static std::string ItalicFile(unsigned style, const Options &options)
{
    return options.font.empty() ? FileOfStyle(Drawn(style), true) : "";
}

static KovaCaptionsRenderer *CreateRenderer(const Options &options, const Fonts &fonts,
                                            const std::vector<std::string> &fallbacks, Display &display)
{
    KovaCaptionsScreen screen;
    std::array<std::string, KOVA_CAPTIONS_FONTS> files;
    std::array<std::string, KOVA_CAPTIONS_FONTS> italics;

    Kova_Captions_GetDefaultScreen(&screen);
    for (unsigned i = 0; i < files.size(); ++i) {
        files[i] = UprightFile(i, options, fonts);
        italics[i] = ItalicFile(i, options);
        if (!files[i].empty()) screen.fonts[i] = files[i].c_str();
        if (!italics[i].empty()) screen.italic_fonts[i] = italics[i].c_str();
    }
    for (std::size_t i = 0; i < fallbacks.size() && i < KOVA_CAPTIONS_FALLBACKS; ++i) {
        screen.fallbacks[i] = fallbacks[i].c_str();
    }
    screen.display = display.ShareWithCaptions();
    screen.context = display.context();
    screen.plane_width = std::uint32_t(options.plane.width);
    screen.plane_height = std::uint32_t(options.plane.height);
    screen.layer = std::uint8_t(options.layer);
    screen.color_mode = CaptionColorMode(options.Mode());
    KovaCaptionsRenderer *const renderer = Kova_Captions_CreateRenderer(&screen);
    if (!renderer) throw std::bad_alloc();
    Kova_Captions_SetSettings(renderer, &options.viewer);
    return renderer;
}

static KovaCaptions *CreateDecoder()
{
    KovaCaptions *const decoder = Kova_Captions_Create(nullptr);
    if (!decoder) throw std::bad_alloc();
    return decoder;
}

CaptionRenderer::CaptionRenderer(const Options &options, const Fonts &fonts,
                                 const std::vector<std::string> &fallbacks, Display &display)
    : decoder_(CreateDecoder(), Kova_Captions_Destroy),
      renderer_(CreateRenderer(options, fonts, fallbacks, display), Kova_Captions_DestroyRenderer)
{
}

void CaptionRenderer::Push(const CaptionRecording &recording, std::size_t end)
{
    for (; pushed_ < end; ++pushed_) {
        const std::size_t first = pushed_ == 0 ? 0 : recording.portions[pushed_ - 1].end;
        const CaptionPortion &portion = recording.portions[pushed_];
        Kova_Captions_PushTriplets(decoder_.get(), portion.time, recording.bytes.data() + first,
                                   (portion.end - first) / 3);
    }
}

// Backward by beginning anew.
void CaptionRenderer::GoTo(const CaptionMoment &moment)
{
    if (recording_ != moment.recording || moment.portions < pushed_ || moment.time < time_) {
        Kova_Captions_Discontinuity(decoder_.get());
        pushed_ = 0;
    }
    recording_ = moment.recording;
    Push(*recording_, moment.portions);
    Kova_Captions_Advance(decoder_.get(), moment.time);
    time_ = moment.time;
}

void CaptionRenderer::DrawAtRest(const CaptionMoment &moment)
{
    GoTo(moment);
    if (moment.source > KOVA_CAPTIONS_S63) {
        KovaCaptionsChannel channel;
        Kova_Captions_GetChannel(decoder_.get(), moment.source, &channel);
        channel.roll = {};
        channel.status.flash_since = moment.time;
        Kova_Captions_DrawChannel(renderer_.get(), &channel, moment.time);
        return;
    }
    KovaCaptionsService service;
    std::array<KovaCaptionsWindow, KOVA_CAPTIONS_WINDOWS> windows;
    Kova_Captions_GetService(decoder_.get(), moment.source, &service, windows.data(), 0xFF);
    for (KovaCaptionsWindow &window : windows) window.effect = window.scroll = {};
    service.status.flash_since = moment.time;
    Kova_Captions_DrawService(renderer_.get(), &service, windows.data(), moment.time);
}

void CaptionRenderer::Draw(const CaptionMoment &source, std::int64_t time)
{
    const auto &portions = source.recording->portions;
    const std::size_t first = recording_ == source.recording && time >= time_ ? pushed_ : 0;
    const auto later = std::find_if(portions.begin() + std::ptrdiff_t(first), portions.end(),
                                    [&](const CaptionPortion &portion) { return portion.time > time; });

    GoTo({source.recording, source.source, std::size_t(later - portions.begin()), time});
    Kova_Captions_Draw(renderer_.get(), decoder_.get(), source.source, time);
}

std::int64_t CaptionRenderer::NextDraw() const
{
    const std::int64_t change = Kova_Captions_NextDraw(renderer_.get());

    if (!recording_ || pushed_ == recording_->portions.size()) return change;
    return std::min(change, recording_->portions[pushed_].time);
}

void CaptionRenderer::SetSettings(const ViewerSettings &settings)
{
    Kova_Captions_SetSettings(renderer_.get(), &settings);
}

void CaptionRenderer::Preview(const char *text, std::int64_t time)
{
    Kova_Captions_Preview(renderer_.get(), text, time);
}

void CaptionRenderer::Redraw()
{
    Kova_Captions_Redraw(renderer_.get());
}

} // namespace caption
