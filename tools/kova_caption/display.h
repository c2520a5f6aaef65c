// One display of the library with one active context, as a caption renderer keeps it.
#ifndef KOVA_CAPTION_DISPLAY_H
#define KOVA_CAPTION_DISPLAY_H

#include <map>
#include <memory>
#include <string>

#include "fonts.h"
#include "kova/kova_textdisp.h"
#include "options.h"
#include "picture.h"
#include "readback.h"

namespace caption
{

// How far an edge reaches beyond the text drawn at a place, in pixels.
struct Margins {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

Margins MarginsOf(KovaTextEdgeType_e edge);

class Display
{
public:
    // Starts DirectFB. Only one display can be there at a time.
    explicit Display(const Options &options);
    ~Display();
    Display(const Display &) = delete;
    Display &operator=(const Display &) = delete;

    void SetEdge(KovaTextEdgeType_e edge);
    int Width(const Piece &piece, int height);
    void Draw(const Piece &piece, int height, int x, int y);
    void Clear();

    // Flips, and reads back what is on the screen then.
    Picture Present();

private:
    struct Slot {
        kova_sint32 number = -1;
        int height = 0;
        KovaTextFontAttr_e attributes = KOVA_FONTATTR_NONE;
    };

    void LoadColors();
    void Select(const Piece &piece, int height);
    int CreateFont(const std::string &file, int height);
    kova_uint32 TextColor() const;
    kova_uint32 EdgeColor() const;

    Options options_;
    pKovaITextDisplay_t display_ = nullptr;
    kova_sint8 context_ = -1;
    KovaTextEdgeType_e edge_;
    std::map<std::string, kova_sint32> slots_;
    std::unique_ptr<Readback> readback_;
};

} // namespace caption

#endif
