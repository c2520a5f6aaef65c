// SPDX-License-Identifier: MIT
#include "call.h"

#include <stdio.h>
#include <unistd.h>

namespace textdisp
{

DisplayLock_t DisplayLock;

// The "thread" of both lines is the process, as in all logs so far.
void ReportResult(DFBResult eResult, int iLine)
{
    fprintf(stderr, "TextDisp: [thread:%d]:%s <%d>: err %#x \n\t", getpid(), TEXTDISP_SOURCE, iLine,
            unsigned(eResult));
}

void ReportResultBriefly(int iLine)
{
    fprintf(stderr, "TextDisp: [thread:%d]:%s <%d>:\n\t", getpid(), TEXTDISP_SOURCE, iLine);
}

} // namespace textdisp
