// SPDX-License-Identifier: MIT
// The platform's DirectFB header as C has it. For C++ some versions draw in wrapper classes and with them the
// C++ run-time, which the library does without; the guard defined here keeps them out.
#ifndef TEXTDISP_DIRECTFB_C_H
#define TEXTDISP_DIRECTFB_C_H

#ifndef DIRECTFBPP_H
#define DIRECTFBPP_H
#endif

#include <directfb.h>

#endif
