// SPDX-License-Identifier: MIT
#include "drawing/font_slots.h"

#include <algorithm>

#include <fcntl.h>
#include <unistd.h>

#include "base/failure.h"

namespace caption
{

static const std::size_t g_most = 8; // fonts of a display

FontSlots::FontSlots(pKovaITextDisplay_t display, kova_sint8 context) : display_(display), context_(context)
{
}

FontSlots::~FontSlots()
{
    for (const Slot &slot : slots_) close(slot.descriptor);
}

void FontSlots::Select(const std::string &file, int height, bool slanted)
{
    Slot &slot = For(file, height, slanted);

    slot.used = ++clock_;
    display_->SetFont(display_, context_, slot.number, kova_uint32(height),
                      slanted ? KOVA_FONTATTR_ITALIC : KOVA_FONTATTR_NONE);
}

FontSlots::Slot &FontSlots::For(const std::string &file, int height, bool slanted)
{
    const auto wanted = std::find_if(slots_.begin(), slots_.end(), [&](const Slot &slot) {
        return slot.file == file && slot.height == height && slot.slanted == slanted;
    });
    if (wanted != slots_.end()) return *wanted;

    if (slots_.size() < g_most) slots_.emplace_back();
    // A slot that was never used counts as the oldest.
    Slot &slot = *std::min_element(slots_.begin(), slots_.end(),
                                   [](const Slot &one, const Slot &other) { return one.used < other.used; });
    slot.file = file;
    slot.height = height;
    slot.slanted = slanted;
    Open(slot);
    return slot;
}

kova_sint32 FontSlots::Create(const Slot &slot, int height)
{
    const std::string name = "/proc/self/fd/" + std::to_string(slot.descriptor);
    kova_sint32 number = -1;

    display_->CreateFont(display_, context_, name.c_str(), kova_uint32(height), KOVA_FONTATTR_NONE, &number);
    return number;
}

void FontSlots::Open(Slot &slot)
{
    const int descriptor = open(slot.file.c_str(), O_RDONLY | O_CLOEXEC);
    const bool renewed = slot.descriptor >= 0;

    if (descriptor < 0) throw Failure(slot.file + ": the font file can no longer be opened; restore it");
    if (renewed) {
        dup3(descriptor, slot.descriptor, O_CLOEXEC);
        close(descriptor);
        Create(slot, slot.height + 1); // another height closes the font of this name
    } else {
        slot.descriptor = descriptor;
    }
    slot.number = Create(slot, slot.height);
    if (slot.number < 0) {
        throw Failure(slot.file + ": DirectFB cannot open this font; install libdirectfb-extra, its FreeType "
                                  "module, and mount /proc");
    }
}

} // namespace caption
