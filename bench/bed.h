// A display to measure on, and the table of ratios that ends a run.
#ifndef BENCH_BED_H
#define BENCH_BED_H

#include "record.h"

#include "kova/kova_textdisp.h"

#include <benchmark/benchmark.h>

namespace bench
{

constexpr kova_uint32 PLANE_WIDTH = 1920, PLANE_HEIGHT = 1080;
constexpr const char *FONT = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

// The one display of the process, in the OSD1 window, shown, with one active context. Its surface does not
// flip: the flip costs the same whatever was drawn, and would drown what is measured.
class Display
{
public:
    explicit Display(bool bPalette);
    ~Display();
    Display(const Display &) = delete;
    Display &operator=(const Display &) = delete;

    pKovaITextDisplay_t operator->() const
    {
        return m_pDisplay;
    }
    operator pKovaITextDisplay_t() const
    {
        return m_pDisplay;
    }
    KovaDFBDisplay_t *Record() const
    {
        return reinterpret_cast<KovaDFBDisplay_t *>(m_pDisplay);
    }
    IDirectFBSurface *Surface() const
    {
        return Record()->pActiveSurface;
    }

private:
    pKovaITextDisplay_t m_pDisplay;
};

// A line of the closing table: the time of one benchmark over that of another.
void Compare(const char *pcOurs, const char *pcTheirs);

} // namespace bench

#endif
