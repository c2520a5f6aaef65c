// SPDX-License-Identifier: MIT
#include "reading/captions/text_file.h"

#include <filesystem>

#include "base/failure.h"
#include "reading/captions/ccd.h"
#include "reading/captions/mcc.h"
#include "reading/captions/scc.h"

namespace caption
{

bool IsCaptionText(const std::string &text, const std::string &file)
{
    if (text.empty()) return false;
    return IsScc(text) || IsMcc(text) || IsCcd(text) || std::filesystem::path(file).extension() == ".ccd";
}

std::string CaptionTextFormat(const std::string &text)
{
    return IsScc(text) ? "scc" : IsMcc(text) ? "mcc" : "ccd";
}

Triplets ReadCaptionText(const std::string &text, const std::string &file, Notices &notices)
{
    if (IsScc(text)) return ReadScc(text, notices);
    if (IsMcc(text)) return ReadMcc(text, notices);
    try {
        return ReadCcd(text);
    } catch (const Failure &failure) {
        throw Failure(file + ": " + failure.what());
    }
}

} // namespace caption
