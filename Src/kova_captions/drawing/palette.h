// SPDX-License-Identifier: MIT
// The 256 palette entries: 0 transparent, 1 to 64 the colours, 65 to 128 translucent, 129 to 192 flashing, 193 to 255
// handed out while something on the screen needs them.
#ifndef KOVA_CAPTIONS_PALETTE_H
#define KOVA_CAPTIONS_PALETTE_H

#include "look.h"

namespace captions
{

constexpr int kSolidEntries = 1;
constexpr int kTranslucentEntries = 65;
constexpr int kFlashEntries = 129;
constexpr int kPoolEntries = 193;
constexpr int kPool = 256 - kPoolEntries;

// A panel that does not fade has no entries of its own.
constexpr uint8_t kNoPanel = 0xFF;

class Palette
{
public:
    // Finds entries for all colours of a scene. False if there are not enough.
    bool Allot(const Scene &scene);
    // The entries of this scene count from now on; the colours are computed for a phase of flashing.
    void Take(const Scene &scene, bool off);
    // Loads what differs from what the display has. Whether there was anything.
    bool Load(const KovaCaptionsScreen &screen);
    // The display's palette is not what was loaded.
    void Forget()
    {
        m_known = false;
    }

    // What the display's operations take for an ink of a panel.
    kova_uint32 Value(const KovaCaptionsScreen &screen, const Ink &ink, uint8_t panel) const;

private:
    struct Entry {
        Ink ink;
        uint8_t panel;
        bool used;
    };

    void Keep(const Ink &ink, uint8_t panel);
    bool Need(const Ink &ink, uint8_t panel);
    template <typename Action> static void ForEachInk(const Scene &scene, Action action);
    Rgba Current(const Ink &ink, uint8_t panel) const;

    // On the screen, and for the scene that comes.
    Entry m_entries[kPool];
    Entry m_next[kPool];
    uint8_t m_alpha[kPanels];
    KovaTextColor_t m_loaded[256];
    bool m_off;
    bool m_known;
};

} // namespace captions

#endif
