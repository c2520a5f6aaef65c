// SPDX-License-Identifier: MIT
// From coding order to presentation order.
#include "bytes.h"

#include <string.h>

namespace captions
{

// Further back than any coding reorders pictures: another stream begins, or the same one again.
constexpr int64_t STEP_BACK = 1000000;

static bool IsUsable(const KovaCaptionsReorder *queue)
{
    return queue && queue->pictures && queue->count <= queue->capacity;
}

static bool IsStepBack(const KovaCaptionsReorder &queue, int64_t time)
{
    return queue.arrivals > 0 && time < queue.latest &&
           uint64_t(queue.latest) - uint64_t(time) > uint64_t(STEP_BACK);
}

static bool IsBefore(const KovaCaptionsPicture &left, const KovaCaptionsPicture &right)
{
    if (left.series != right.series) return left.series < right.series;
    if (left.time != right.time) return left.time < right.time;
    return left.arrival < right.arrival;
}

static size_t IndexOfNext(const KovaCaptionsReorder &queue)
{
    size_t next = 0;

    for (size_t i = 1; i < queue.count; i++) {
        if (IsBefore(queue.pictures[i], queue.pictures[next])) next = i;
    }
    return next;
}

} // namespace captions

using namespace captions;

int Kova_Captions_ReorderStart(KovaCaptionsReorder *queue, KovaCaptionsPicture *pictures, size_t capacity)
{
    if (!queue || !pictures || capacity == 0) return -1;
    memset(queue, 0, sizeof *queue);
    queue->pictures = pictures;
    queue->capacity = capacity;
    queue->depth = capacity - 1;
    return 0;
}

int Kova_Captions_ReorderPush(KovaCaptionsReorder *queue, int64_t time, const uint8_t *bytes, size_t count)
{
    constexpr unsigned kMost = KOVA_CAPTIONS_PICTURE_TRIPLETS;
    if (!captions::IsUsable(queue) || (!bytes && count) || count > kMost) return -1;
    if (queue->count == queue->capacity) return -1;
    const bool isStepBack = IsStepBack(*queue, time);
    if (isStepBack) queue->series++;
    if (isStepBack || queue->arrivals == 0 || time > queue->latest) queue->latest = time;

    KovaCaptionsPicture *const picture = &queue->pictures[queue->count++];
    picture->time = time;
    picture->count = uint32_t(count);
    picture->series = queue->series;
    picture->arrival = queue->arrivals++;
    if (count) memcpy(picture->bytes, bytes, 3 * count);
    return 0;
}

int Kova_Captions_ReorderPop(KovaCaptionsReorder *queue, int flush, KovaCaptionsPicture *picture)
{
    if (!captions::IsUsable(queue) || !picture) return -1;
    if (queue->count == 0) return 0;
    KovaCaptionsPicture *const next = &queue->pictures[IndexOfNext(*queue)];
    if (!flush && queue->count <= queue->depth && next->series == queue->series) return 0;
    *picture = *next;
    *next = queue->pictures[--queue->count];
    return 1;
}
