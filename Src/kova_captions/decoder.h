// SPDX-License-Identifier: MIT
// What a caller's pointer to a decoder points to.
#ifndef KOVA_CAPTIONS_DECODER_H
#define KOVA_CAPTIONS_DECODER_H

#include "state.h"

#include <pthread.h>

struct KovaCaptions {
    pthread_mutex_t mutex;
    // state.revision, for readers without the lock.
    uint32_t revision;
    captions::State state;
};

#endif // KOVA_CAPTIONS_DECODER_H
