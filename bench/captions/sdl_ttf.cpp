// SPDX-License-Identifier: MIT
#include "contender.h"

#include <SDL_ttf.h>

const char *const CONTENDER = "SDL_ttf";
const char *const DIFFERENCES =
    "shapes with HarfBuzz, hinted; a new surface for each colour of each line, blitted once "
    "per pass, a uniform edge as its own outline";

static SDL_Surface *g_pPicture;
static TTF_Font *g_pFont, *g_pOutline;
static Edge_e g_eEdge;

void Start()
{
    g_pPicture = SDL_CreateRGBSurfaceWithFormat(0, WIDTH, HEIGHT, 32, SDL_PIXELFORMAT_ARGB8888);
    SDL_FillRect(g_pPicture, nullptr, 0);
}

void Open(Edge_e eEdge)
{
    g_eEdge = eEdge;
    TTF_Init();
    g_pFont = TTF_OpenFont(FONT_FILE, FONT_SIZE);
    if (eEdge != EDGE_UNIFORM) return;
    g_pOutline = TTF_OpenFont(FONT_FILE, FONT_SIZE);
    TTF_SetFontOutline(g_pOutline, 1);
}

static void Show(SDL_Surface *pText, int iX, int iY)
{
    SDL_Rect to = {iX, iY, 0, 0};
    SDL_BlitSurface(pText, nullptr, g_pPicture, &to);
}

void Draw(int iCaption)
{
    const SDL_Rect box = {BOX_X, BOX_Y, BOX_WIDTH, BOX_HEIGHT};
    const SDL_Color white = {255, 255, 255, 255}, black = {0, 0, 0, 255};

    SDL_FillRect(g_pPicture, &box, 0);
    for (int i = 0; i < 2; i++) {
        const char *const pcLine = CAPTIONS[iCaption][i];
        SDL_Surface *const pText = TTF_RenderUTF8_Blended(g_pFont, pcLine, white);
        SDL_Surface *pEdge = nullptr;
        if (g_eEdge == EDGE_UNIFORM) {
            pEdge = TTF_RenderUTF8_Blended(g_pOutline, pcLine, black);
            Show(pEdge, LEFT, TOPS[i]);
            Show(pText, LEFT + 1, TOPS[i] + 1);
        } else {
            if (g_eEdge != EDGE_NONE) pEdge = TTF_RenderUTF8_Blended(g_pFont, pcLine, black);
            for (const Pass_t &pass : Passes(g_eEdge)) {
                Show(pass.bEdge ? pEdge : pText, LEFT + pass.iX, TOPS[i] + pass.iY);
            }
        }
        SDL_FreeSurface(pText);
        SDL_FreeSurface(pEdge);
    }
}

const uint32_t *Pixels(int *piPitch)
{
    *piPitch = g_pPicture->pitch / 4;
    return static_cast<const uint32_t *>(g_pPicture->pixels);
}
