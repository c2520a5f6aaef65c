// SPDX-License-Identifier: MIT
// The platform's DirectFB header as C sees it. Some versions include wrapper classes for C++ and with them the C++
// run-time, which the library does not use; the guard defined here keeps them out.
#ifndef TEXTDISP_DIRECTFB_C_H
#define TEXTDISP_DIRECTFB_C_H

#ifndef DIRECTFBPP_H
#define DIRECTFBPP_H
#endif

#include <directfb.h>

#endif
