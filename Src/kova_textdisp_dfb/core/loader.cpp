// SPDX-License-Identifier: MIT
// DirectFB is opened by name and never linked: a program with this library also starts on a set without DirectFB.
#include "operations.h"

#include <dlfcn.h>

namespace textdisp
{

template <typename Function>
static bool Resolve(KovaDFBDisplay_t *pDisplay, const char *pcName, Function *pfnResult, Place_t place)
{
    *pfnResult = reinterpret_cast<Function>(dlsym(pDisplay->pDlHandle, pcName));
    // A symbol may be null without an error, so the text decides.
    const char *const pcError = dlerror();
    if (pcError) TEXTDISP_RECORD_AT(place, LEVEL_ERROR, "Load libdirectfb.so error:%s\n", pcError);
    return !pcError;
}

int TextDisplayLoadLibrary(pKovaDFBDisplay_t pDisplay)
{
    dlerror(); // forget an older error
    pDisplay->pDlHandle = dlopen("libdirectfb.so", RTLD_NOW | RTLD_GLOBAL);
    if (!pDisplay->pDlHandle) return TEXTDISP_ERROR_RECORD("Load libdirectfb.so error:%s\n", dlerror()), -1;
    if (!Resolve(pDisplay, "DirectFBInit", &pDisplay->pFnDirectFBInit, TEXTDISP_HERE)) return -1;
    if (!Resolve(pDisplay, "DirectFBCreate", &pDisplay->pFnDirectFBCreate, TEXTDISP_HERE)) return -1;
    if (!Resolve(pDisplay, "DirectFBErrorFatal", &pDisplay->pFnDirectFBErrorFatal, TEXTDISP_HERE)) return -1;
    return 0;
}

int TextDisplayUnLoadLibrary(pKovaDFBDisplay_t pDisplay)
{
    if (!pDisplay) return TEXTDISP_ERROR("NULL pointer!"), -1;
    if (pDisplay->pDlHandle) dlclose(pDisplay->pDlHandle);
    return 0;
}

} // namespace textdisp
