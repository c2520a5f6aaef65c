// SPDX-License-Identifier: MIT
// The public interface: a scene of what is asked for, compared with that on the screen.
#include "paint.h"

#include <stdlib.h>
#include <string.h>
#include <time.h>

using namespace captions;

struct KovaCaptionsRenderer {
    KovaCaptionsScreen screen;
    View view;
    Palette palette;
    Fonts fonts;
    Painter painter;
    Damage damage;
    // What is on the screen, and what comes.
    Scene scenes[2];
    uint8_t current;
    // Everything has to be drawn, whether it changed or not.
    bool stale;
    int64_t next;
    // When the display was last asked to flip, by the machine's clock.
    int64_t flipped;
    // What the screen shows, if it came of a decoder.
    const KovaCaptions *decoder;
    uint8_t source;
    uint32_t revision;
    // What a decoder is copied to.
    union {
        KovaCaptionsChannel channel;
        KovaCaptionsWindow windows[KOVA_CAPTIONS_WINDOWS];
    } state;
};

// ---------------------------------------------------------------------------------------------------------- Creation

void Kova_Captions_GetDefaultScreen(KovaCaptionsScreen *screen)
{
    if (!screen) return;
    *screen = {};
    screen->plane_width = 1920;
    screen->plane_height = 1080;
    screen->layer = KOVA_GRAPHIC_LAYER2;
}

constexpr uint32_t kLargestPlane = 16384;

static bool IsUsable(const KovaCaptionsScreen *screen)
{
    if (!screen || !screen->display) return false;
    const auto fits = [](uint32_t size) { return size > 0 && size <= kLargestPlane; };
    const KovaTextRect_t &picture = screen->picture;
    const bool inside =
        picture.uiWidth == 0 || (fits(picture.uiWidth) && fits(picture.uiHeight) &&
                                 picture.uiX <= kLargestPlane && picture.uiY <= kLargestPlane);
    return fits(screen->plane_width) && fits(screen->plane_height) && inside && screen->context >= 0 &&
           screen->context <= 3 && screen->color_mode <= KOVA_CAPTIONS_TRUE_COLORS &&
           screen->layer < KOVA_GRAPHIC_MAXLAYER && screen->aspect <= KOVA_CAPTIONS_NARROW;
}

static Rect PictureOf(const KovaCaptionsScreen &screen)
{
    const KovaTextRect_t &picture = screen.picture;
    if (picture.uiWidth == 0) return {0, 0, int(screen.plane_width), int(screen.plane_height)};
    return {int(picture.uiX), int(picture.uiY), int(picture.uiWidth), int(picture.uiHeight)};
}

static void SetGrid(View &view, uint8_t aspect)
{
    view.units = aspect == KOVA_CAPTIONS_NARROW ? 160 : 210;
    view.columns = view.units / kCellUnits;
}

static uint8_t Within(uint8_t value, uint8_t least, uint8_t most, uint8_t other)
{
    return value < least || value > most ? other : value;
}

// Values outside their range count as the default, as everywhere.
static void TakeSettings(KovaCaptionsRenderer *renderer, const KovaCaptionsSettings *settings)
{
    KovaCaptionsSettings &own = renderer->view.settings;

    Kova_Captions_GetDefaultSettings(&own);
    if (settings) own = *settings;
    own.size = Within(own.size, KOVA_CAPTIONS_SMALLEST_SIZE, KOVA_CAPTIONS_LARGEST_SIZE, 100);
    own.safe_area = Within(own.safe_area, 80, 100, 80);
    renderer->view.safe = SafeArea(PictureOf(renderer->screen), own.safe_area);
}

KovaCaptionsRenderer *Kova_Captions_CreateRenderer(const KovaCaptionsScreen *screen)
{
    auto *const renderer = IsUsable(screen)
                               ? static_cast<KovaCaptionsRenderer *>(calloc(1, sizeof(KovaCaptionsRenderer)))
                               : nullptr;

    if (!renderer) return nullptr;
    renderer->screen = *screen;
    renderer->view.plane = {0, 0, int(screen->plane_width), int(screen->plane_height)};
    renderer->view.eight_colors = screen->eight_colors;
    SetGrid(renderer->view, screen->aspect);
    TakeSettings(renderer, nullptr);
    renderer->fonts.Start(*screen, renderer->view.settings);
    renderer->painter.Start(renderer->screen, &renderer->palette, &renderer->fonts);
    renderer->next = KOVA_CAPTIONS_NEVER;
    return renderer;
}

void Kova_Captions_DestroyRenderer(KovaCaptionsRenderer *renderer)
{
    free(renderer);
}

size_t Kova_Captions_GetRendererSize(void)
{
    return sizeof(KovaCaptionsRenderer);
}

int Kova_Captions_SetSettings(KovaCaptionsRenderer *renderer, const KovaCaptionsSettings *settings)
{
    if (!renderer) return -1;
    TakeSettings(renderer, settings);
    renderer->fonts.Use(renderer->view.settings);
    // Which file draws a font is not seen in the cells.
    renderer->stale = true;
    return 0;
}

int Kova_Captions_SetAspect(KovaCaptionsRenderer *renderer, uint8_t aspect)
{
    if (!renderer || aspect > KOVA_CAPTIONS_NARROW) return -1;
    SetGrid(renderer->view, aspect);
    renderer->decoder = nullptr;
    return 0;
}

// ----------------------------------------------------------------------------------------------------------- Flashing

static bool Flashes(const Panel &panel, uint8_t economy)
{
    const Frame &frame = panel.frame;
    if (!frame.exists) return false;
    if (IsFlashing(FillInk(frame, economy))) return true;
    for (int row = 0; row < frame.rows; ++row) {
        for (int i = 0; i < CellsOf(frame); ++i) {
            const Cell &cell = panel.cells[row][i];
            if (!cell.flags) continue;
            const CellInks inks = InksOf(frame, cell, economy);
            if (((cell.flags & kBackground) && IsFlashing(inks.back)) ||
                (HasText(cell) && IsFlashing(inks.text))) {
                return true;
            }
        }
    }
    return false;
}

// Where pixels carry their colour, panels with another phase or opacity differ, and are drawn again.
static void MarkPhases(const KovaCaptionsScreen &screen, bool off, Scene &scene)
{
    for (int i = 0; i < kPanels; ++i) {
        Frame &frame = scene.panels[i].frame;
        if (!frame.exists || screen.color_mode == KOVA_CAPTIONS_INDEX_COLORS) continue;
        frame.alpha = frame.fades ? scene.alpha[i] : uint8_t(0);
        frame.off = off && Flashes(scene.panels[i], scene.economy);
    }
}

// Whether what flashes is in its second phase. Phases are counted from when the first flashing thing appeared.
static bool SettleFlash(KovaCaptionsRenderer *renderer, const Scene &before, Scene &scene)
{
    View &view = renderer->view;

    for (const Panel &panel : scene.panels) scene.flashes |= Flashes(panel, scene.economy);
    if (!scene.flashes) return false;
    if (scene.flash_since == KOVA_CAPTIONS_NO_TIME) {
        scene.flash_since = before.flashes ? before.flash_since : view.time;
    }
    const int64_t passed = view.time - scene.flash_since;
    const int64_t phases = passed < 0 ? 0 : passed / KOVA_CAPTIONS_FLASH_HALF;
    const int64_t next = scene.flash_since + (phases + 1) * KOVA_CAPTIONS_FLASH_HALF;
    if (next < view.next) view.next = next;
    return phases % 2 != 0;
}

// ------------------------------------------------------------------------------------------------------------ Drawing

// Makes a scene for which the palette has enough entries.
template <typename Show> static void MakeScene(KovaCaptionsRenderer *renderer, Scene &scene, Show show)
{
    for (uint8_t economy = kEverything;; ++economy) {
        memset(&scene, 0, sizeof scene);
        scene.economy = economy;
        renderer->view.snaps = economy >= kNoFades;
        renderer->view.next = KOVA_CAPTIONS_NEVER;
        show(scene);
        if (renderer->palette.Allot(scene) || economy == kNoMixtures) return;
    }
}

// The one thing that the machine's clock decides: the display's Blit copies what was flipped last, and it waits for a flip
// that is still to come only once the display's thread has heard of that flip. A drawing that follows too soon does not
// copy, but gives the same pixels.
static int64_t MachineTime()
{
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t(now.tv_sec) * 1000000 + now.tv_nsec / 1000;
}

static bool MayShift(const KovaCaptionsRenderer *renderer)
{
    constexpr int64_t kHalfFrame = 8000;
    const KovaCaptionsScreen &screen = renderer->screen;
    return !screen.no_blit && screen.layer != KOVA_GRAPHIC_LAYER1 &&
           MachineTime() - renderer->flipped >= kHalfFrame;
}

static int Flip(KovaCaptionsRenderer *renderer, const Scene &scene)
{
    renderer->painter.Draw(renderer->view, scene, renderer->damage);
    renderer->flipped = MachineTime();
    return 1;
}

// Brings a scene to the screen, and to be the current one.
static int Present(KovaCaptionsRenderer *renderer, const Scene &before, Scene &scene)
{
    const KovaCaptionsScreen &screen = renderer->screen;
    pKovaITextDisplay_t const display = screen.display;
    const bool off = SettleFlash(renderer, before, scene);

    MarkPhases(screen, off, scene);
    Compare(renderer->view, before, scene, renderer->stale, MayShift(renderer), renderer->damage);
    renderer->palette.Take(scene, off);
    const bool recolored = renderer->palette.Load(screen);
    renderer->stale = false;
    renderer->decoder = nullptr;
    renderer->next = renderer->view.next;
    renderer->current ^= 1;
    if (renderer->damage.count > 0) return Flip(renderer, scene);
    if (recolored && screen.palette_needs_flip) display->Flip(display, screen.context);
    return 0;
}

template <typename Show> static int Draw(KovaCaptionsRenderer *renderer, int64_t time, Show show)
{
    const Scene &before = renderer->scenes[renderer->current];
    Scene &scene = renderer->scenes[renderer->current ^ 1];

    renderer->view.previous = renderer->view.time;
    renderer->view.time = time;
    MakeScene(renderer, scene, [&](Scene &made) { show(renderer->view, before, made); });
    return Present(renderer, before, scene);
}

int Kova_Captions_DrawChannel(KovaCaptionsRenderer *renderer, const KovaCaptionsChannel *channel,
                              int64_t time)
{
    if (!renderer || !channel) return -1;
    return Draw(renderer, time, [channel](View &view, const Scene &before, Scene &scene) {
        ShowChannel(view, *channel, before, scene);
    });
}

int Kova_Captions_DrawService(KovaCaptionsRenderer *renderer, const KovaCaptionsService *service,
                              const KovaCaptionsWindow *windows, int64_t time)
{
    if (!renderer || !service || !windows) return -1;
    return Draw(renderer, time, [service, windows](View &view, const Scene &before, Scene &scene) {
        ShowService(view, *service, windows, before, scene);
    });
}

int Kova_Captions_Preview(KovaCaptionsRenderer *renderer, const char *text, int64_t time)
{
    if (!renderer || !text) return -1;
    return Draw(renderer, time,
                [text](View &view, const Scene &, Scene &scene) { ShowText(view, text, scene); });
}

int Kova_Captions_Clear(KovaCaptionsRenderer *renderer)
{
    return renderer ? Kova_Captions_Preview(renderer, "", renderer->view.time) : -1;
}

// Draws a copy of a source's state.
static int DrawSource(KovaCaptionsRenderer *renderer, KovaCaptions *decoder, uint8_t source, int64_t time)
{
    auto &state = renderer->state;

    if (source >= KOVA_CAPTIONS_CC1) {
        if (Kova_Captions_GetChannel(decoder, source, &state.channel)) return -1;
        return Kova_Captions_DrawChannel(renderer, &state.channel, time);
    }
    KovaCaptionsService service;
    if (Kova_Captions_GetService(decoder, source, &service, state.windows, 0xFF)) return -1;
    return Kova_Captions_DrawService(renderer, &service, state.windows, time);
}

int Kova_Captions_Draw(KovaCaptionsRenderer *renderer, KovaCaptions *decoder, uint8_t source, int64_t time)
{
    KovaCaptionsStatus status;

    if (!renderer || !decoder) return -1;
    Kova_Captions_Advance(decoder, time);
    if (source == KOVA_CAPTIONS_NONE) return Kova_Captions_Preview(renderer, "", time);
    if (Kova_Captions_GetStatus(decoder, source, &status)) return -1;
    const bool same = renderer->decoder == decoder && renderer->source == source &&
                      renderer->revision == status.revision && !renderer->stale;
    if (same && time >= renderer->view.time && time < renderer->next) return 0;
    const int drawn = DrawSource(renderer, decoder, source, time);
    if (drawn < 0) return -1;
    renderer->decoder = decoder;
    renderer->source = source;
    renderer->revision = status.revision;
    const int64_t change = Kova_Captions_NextChange(decoder, source, KOVA_CAPTIONS_CHANGE_STATE);
    if (change < renderer->next) renderer->next = change;
    return drawn;
}

int Kova_Captions_Redraw(KovaCaptionsRenderer *renderer)
{
    if (!renderer) return -1;
    const Scene &before = renderer->scenes[renderer->current];
    Scene &scene = renderer->scenes[renderer->current ^ 1];
    const int64_t next = renderer->next;

    renderer->palette.Forget();
    renderer->fonts.Forget();
    renderer->stale = true;
    memcpy(&scene, &before, sizeof scene);
    renderer->palette.Allot(scene);
    const int drawn = Present(renderer, before, scene);
    renderer->next = next;
    return drawn;
}

int64_t Kova_Captions_NextDraw(const KovaCaptionsRenderer *renderer)
{
    return renderer ? renderer->next : KOVA_CAPTIONS_NEVER;
}
