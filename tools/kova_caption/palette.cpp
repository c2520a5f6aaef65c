#include "palette.h"

namespace caption
{

static KovaTextColor_t Opaque(Color color)
{
    return {color.red, color.green, color.blue, 255};
}

// A colour laid with some coverage (0 to 255) over what is there, as DirectFB lays text: multiplied by its
// alpha.
static KovaTextColor_t Lay(Color color, int coverage, KovaTextColor_t under)
{
    const auto mix = [coverage](int over, int below) {
        return kova_uint8((over * coverage + below * (255 - coverage)) / 255);
    };
    return {mix(color.red, under.r), mix(color.green, under.g), mix(color.blue, under.b), mix(255, under.a)};
}

std::vector<KovaTextColor_t> CaptionPalette(Color text, Color edge)
{
    const int steps = 64;
    const KovaTextColor_t transparent = {};
    std::vector<KovaTextColor_t> palette = {transparent, Opaque(edge), Opaque(text)};

    for (int i = 1; i < steps; ++i) {
        const int coverage = i * 255 / steps;
        palette.push_back(Lay(edge, coverage, transparent));
        palette.push_back(Lay(text, coverage, transparent));
        palette.push_back(Lay(text, coverage, Opaque(edge)));
    }
    // Text over the soft rim of its edge, in coarser steps, fills the 64 entries that are left.
    for (int below = 1; below <= 8; ++below) {
        for (int above = 1; above <= 8; ++above) {
            palette.push_back(Lay(text, above * 255 / 9, Lay(edge, below * 255 / 9, transparent)));
        }
    }
    return palette;
}

} // namespace caption
