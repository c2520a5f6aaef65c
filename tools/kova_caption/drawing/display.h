// SPDX-License-Identifier: MIT
// One display of the library with one active context, as a caption renderer uses it.
#ifndef KOVA_CAPTION_DRAWING_DISPLAY_H
#define KOVA_CAPTION_DRAWING_DISPLAY_H

#include <memory>
#include <string>
#include <vector>

#include "base/options.h"
#include "base/rect.h"
#include "drawing/font_slots.h"
#include "drawing/picture.h"
#include "drawing/readback.h"
#include "kova/kova_textdisp.h"
#include "text/fonts.h"
#include "text/pieces.h"

namespace caption
{

class Display
{
public:
    // Starts DirectFB. Only one display may exist at a time.
    explicit Display(const Options &options);
    ~Display();
    Display(const Display &) = delete;
    Display &operator=(const Display &) = delete;

    // What a caption renderer of the library needs to draw on the same plane. Its palette is used from now on,
    // and colours are replaced by the nearest.
    pKovaITextDisplay_t ShareWithCaptions();
    kova_sint8 context() const
    {
        return context_;
    }

    void SetEdge(KovaTextEdgeType_e edge);
    int Width(const Piece &piece, int height);

    // (x, y) is the top left corner of the font's line. Draws underline and strikeout too.
    void Draw(const Piece &piece, int height, int x, int y);

    // Overwrites the rectangle; does not blend.
    void Fill(Rect rect, Color color);

    // Copies a rectangle of a picture that is as large as the plane, pixel for pixel. Index mode has 255
    // colours for everything drawn since the last Clear.
    void Copy(const Picture &picture, Rect rect);
    bool CanCopy() const;

    void Clear();

    // Release shows everything drawn since Hold at once. Layer 1 cannot hold: there each string is shown as
    // it is drawn, and Release shows only what was drawn after the last string.
    void Hold();
    void Release();

    void Flip();

    // Flips, and reads back the screen.
    Picture Present();

    // Whether more colours than the palette holds were needed since the last Clear, and the nearest were
    // used.
    bool RanOutOfColors() const
    {
        return ranOutOfColors_;
    }

private:
    bool HasPalette() const;
    void Select(const Piece &piece, int height);
    Stroke Underline(const Piece &piece, int height);
    void DrawStroke(const Piece &piece, Rect rect);
    kova_uint32 Value(Color color);

    Options options_;
    pKovaITextDisplay_t display_ = nullptr;
    kova_sint8 context_ = -1;
    KovaTextEdgeType_e edge_;
    std::unique_ptr<FontSlots> slots_;
    std::unique_ptr<Readback> readback_;
    std::vector<Color> palette_; // loaded since the last Clear
    bool shared_ = false;        // the palette is that of closed captions
    bool ranOutOfColors_ = false;
    bool flipped_ = false; // nothing was drawn since the last flip
};

} // namespace caption

#endif
