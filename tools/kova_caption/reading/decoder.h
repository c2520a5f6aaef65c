// SPDX-License-Identifier: MIT
#ifndef KOVA_CAPTION_READING_DECODER_H
#define KOVA_CAPTION_READING_DECODER_H

#include "reading/av.h"
#include "reading/media_file.h"

namespace caption
{

// Opens libavcodec's decoder for the stream. Throws Failure if there is none.
av::Decoder OpenDecoder(const MediaFile &source, const AVStream &stream);

} // namespace caption

#endif
