// SPDX-License-Identifier: MIT
// The only place that prints messages for the user.
#ifndef KOVA_CAPTION_TERMINAL_REPORT_H
#define KOVA_CAPTION_TERMINAL_REPORT_H

#include <string>

namespace caption
{

// One line on standard error, with the tool's name before it and a full stop after it.
void Report(const std::string &message);

} // namespace caption

#endif
