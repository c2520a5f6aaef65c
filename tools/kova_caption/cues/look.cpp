// SPDX-License-Identifier: MIT
#include "cues/look.h"

namespace caption
{

// The source's own colour, which may be any, unless the settings have another.
static Color Changed(Color own, std::uint8_t provided, std::uint8_t color, std::uint8_t setting)
{
    return color == provided && setting > KOVA_CAPTIONS_WHITE ? own : CaptionColor(color, own.alpha);
}

static Color WithOpacity(Color own, std::uint8_t opacity)
{
    if (opacity != OpacityOf(own.alpha)) own.alpha = AlphaOf(opacity);
    return own;
}

Style WithSettings(const Style &style, const Options &options)
{
    const ViewerSettings &settings = options.viewer;
    const Color text = style.color.value_or(options.color);
    const Color background = style.background.value_or(g_transparent);
    const Color edge = style.edgeColor.value_or(options.edgeColor);
    KovaCaptionsPen provided = {};
    KovaCaptionsPen pen;
    Style look = style;

    provided.foreground = NearestCaptionColor(text);
    provided.foreground_opacity = OpacityOf(text.alpha);
    provided.background = NearestCaptionColor(background);
    provided.background_opacity = OpacityOf(background.alpha);
    provided.edge_type =
        options.edge == KOVA_TEXT_ENONE ? KOVA_CAPTIONS_EDGE_NONE : KOVA_CAPTIONS_EDGE_UNIFORM;
    provided.edge_color = NearestCaptionColor(edge);
    provided.italics = style.italic;
    provided.underline = style.underline;
    Kova_Captions_ApplyToPen(&settings, &provided, &pen);

    const Color chosenText = WithOpacity(
        Changed(text, provided.foreground, pen.foreground, settings.foreground), pen.foreground_opacity);
    const Color chosenBackground =
        WithOpacity(Changed(background, provided.background, pen.background, settings.background),
                    pen.background_opacity);
    Color chosenEdge = Changed(edge, provided.edge_color, pen.edge_color, settings.edge_color);
    // An edge is as opaque as its letters.
    if (chosenText.alpha != text.alpha) chosenEdge.alpha = chosenText.alpha;
    if (!(chosenText == text)) look.color = chosenText;
    if (!(chosenBackground == background)) look.background = chosenBackground;
    if (!(chosenEdge == edge)) look.edgeColor = chosenEdge;
    look.italic = pen.italics != 0;
    look.underline = pen.underline != 0;
    if (settings.font <= KOVA_CAPTIONS_FONT_SMALL_CAPITALS) look.font = {};
    return look;
}

Block WithSettings(Block block, const Options &options)
{
    for (Line &line : block.lines) {
        for (Run &run : line) run.style = WithSettings(run.style, options);
    }
    return block;
}

Options WithSettings(Options options)
{
    static const KovaTextEdgeType_e edges[] = {KOVA_TEXT_ENONE,           KOVA_TEXT_ERAISED,
                                               KOVA_TEXT_EDEPRESSED,      KOVA_TEXT_EUNIFORM,
                                               KOVA_TEXT_ELEFTDROPSHADOW, KOVA_TEXT_ERIGTHDROPSHADOW};

    if (options.viewer.edge_type <= KOVA_CAPTIONS_EDGE_SHADOW_RIGHT) {
        options.edge = edges[options.viewer.edge_type];
    }
    return options;
}

std::optional<Color> WindowOf(const ViewerSettings &settings)
{
    KovaCaptionsWindowAttributes window = {};

    window.fill_opacity = KOVA_CAPTIONS_TRANSPARENT;
    Kova_Captions_ApplyToWindow(&settings, &window, &window);
    if (window.fill_opacity == KOVA_CAPTIONS_TRANSPARENT) return {};
    return CaptionColor(window.fill_color, AlphaOf(window.fill_opacity));
}

Color Over(Color color, Color below)
{
    const int above = color.alpha * 255;
    const int rest = below.alpha * (255 - color.alpha);
    const int sum = above + rest;
    const auto mix = [&](std::uint8_t one, std::uint8_t other) {
        return std::uint8_t((one * above + other * rest + sum / 2) / sum);
    };

    if (sum == 0) return g_transparent;
    return {mix(color.red, below.red), mix(color.green, below.green), mix(color.blue, below.blue),
            std::uint8_t((sum + 127) / 255)};
}

} // namespace caption
