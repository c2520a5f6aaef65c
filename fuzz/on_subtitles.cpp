// SPDX-License-Identifier: MIT
// Fuzzes subtitle files, which are read as kova-caption reads them: every format, every stream.
#include "memory_file.h"

#include "base/failure.h"
#include "reading/subtitles.h"

#include <cstdint>

extern "C" {
#include <libavutil/log.h>
#include <libavutil/mem.h>
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t uiSize);

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t uiSize)
{
    static const bool s_bBounded = [] {
        av_max_alloc(64 << 20); // per allocation; a header can announce a picture of any size
        av_log_set_level(AV_LOG_QUIET);
        return true;
    }();
    const fuzz::MemoryFile file(pData, uiSize);
    if (!s_bBounded || !file.IsWhole()) return 0;
    caption::SourceOptions options;
    options.file = file.Name();

    try {
        caption::ReadSubtitles(options);
    } catch (const caption::Failure &) { // the expected way to reject an input
    }
    try {
        for (const caption::StreamInfo &stream : caption::ListStreams(options)) {
            options.stream = stream.index;
            try {
                caption::ReadSubtitles(options);
            } catch (const caption::Failure &) {
            }
        }
    } catch (const caption::Failure &) {
    }
    return 0;
}
