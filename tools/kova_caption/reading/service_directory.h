// SPDX-License-Identifier: MIT
// What a broadcast announces of its caption services.
#ifndef KOVA_CAPTION_READING_SERVICE_DIRECTORY_H
#define KOVA_CAPTION_READING_SERVICE_DIRECTORY_H

#include <map>
#include <string>
#include <vector>

#include "kova/kova_captions_carriage.h"

namespace caption
{

// By the PID of the stream that carries the captions.
using ServiceDirectory = std::map<int, std::vector<KovaCaptionsServiceInfo>>;

// Reads the caption service descriptors of the programme map tables at the beginning of a transport stream.
// Empty for other files and where nothing is announced.
ServiceDirectory ReadServiceDirectory(const std::string &file);

} // namespace caption

#endif
