// SPDX-License-Identifier: MIT
#include "watch.h"

#ifndef DIRECTFBPP_H
#define DIRECTFBPP_H // excludes the C++ wrapper classes of directfb.h
#endif
#include <directfb.h>

#include <atomic>
#include <dlfcn.h>

using Clock = std::chrono::steady_clock;

namespace soak
{

static std::atomic<bool> s_bMeasuring, s_bPending;
static std::atomic<uint64_t> s_uiFlips;
static Clock::time_point s_drawn;                          // time of the oldest line not yet flipped
static std::vector<std::chrono::microseconds> s_latencies; // both under the display's lock

// The original methods. All objects of a kind have the same within a run.
static decltype(IDirectFB::GetDisplayLayer) s_pGetDisplayLayer;
static decltype(IDirectFBDisplayLayer::GetSurface) s_pGetLayerSurface;
static decltype(IDirectFBDisplayLayer::CreateWindow) s_pCreateWindow;
static decltype(IDirectFBWindow::GetSurface) s_pGetWindowSurface;
static decltype(IDirectFBSurface::DrawLine) s_pDrawLine;
static decltype(IDirectFBSurface::Flip) s_pFlip;

template <typename Method> static void Replace(Method &method, Method &kept, Method ours)
{
    if (method == ours) return; // an object can be returned more than once
    kept = method;
    method = ours;
}

static DFBResult DrawLine(IDirectFBSurface *pSurface, int iX1, int iY1, int iX2, int iY2)
{
    const DFBResult eResult = s_pDrawLine(pSurface, iX1, iY1, iX2, iY2);

    if (!s_bPending) s_drawn = Clock::now();
    s_bPending = true;
    return eResult;
}

static DFBResult Flip(IDirectFBSurface *pSurface, const DFBRegion *pRegion, DFBSurfaceFlipFlags eFlags)
{
    const DFBResult eResult = s_pFlip(pSurface, pRegion, eFlags);

    if (eResult != DFB_OK) return eResult;
    if (s_bMeasuring) s_uiFlips++;
    if (s_bPending && s_bMeasuring) {
        s_latencies.push_back(std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - s_drawn));
    }
    s_bPending = false;
    return eResult;
}

static void WatchSurface(IDirectFBSurface *pSurface)
{
    Replace(pSurface->DrawLine, s_pDrawLine, DrawLine);
    Replace(pSurface->Flip, s_pFlip, Flip);
}

static DFBResult GetWindowSurface(IDirectFBWindow *pWindow, IDirectFBSurface **ppSurface)
{
    const DFBResult eResult = s_pGetWindowSurface(pWindow, ppSurface);

    if (eResult == DFB_OK) WatchSurface(*ppSurface);
    return eResult;
}

static DFBResult CreateWindow(IDirectFBDisplayLayer *pLayer, const DFBWindowDescription *pDescription,
                              IDirectFBWindow **ppWindow)
{
    const DFBResult eResult = s_pCreateWindow(pLayer, pDescription, ppWindow);

    if (eResult == DFB_OK) Replace((*ppWindow)->GetSurface, s_pGetWindowSurface, GetWindowSurface);
    return eResult;
}

static DFBResult GetLayerSurface(IDirectFBDisplayLayer *pLayer, IDirectFBSurface **ppSurface)
{
    const DFBResult eResult = s_pGetLayerSurface(pLayer, ppSurface);

    if (eResult == DFB_OK) WatchSurface(*ppSurface);
    return eResult;
}

static DFBResult GetDisplayLayer(IDirectFB *pDfb, DFBDisplayLayerID id, IDirectFBDisplayLayer **ppLayer)
{
    const DFBResult eResult = s_pGetDisplayLayer(pDfb, id, ppLayer);

    if (eResult != DFB_OK) return eResult;
    Replace((*ppLayer)->GetSurface, s_pGetLayerSurface, GetLayerSurface);
    Replace((*ppLayer)->CreateWindow, s_pCreateWindow, CreateWindow);
    return eResult;
}

bool WatchDirectFB()
{
    static void *const pHandle = dlopen("libdirectfb.so", RTLD_NOW | RTLD_GLOBAL);
    IDirectFB *pDfb = nullptr;

    if (!pHandle) return false;
    const auto pInit = reinterpret_cast<DFBResult (*)(int *, char ***)>(dlsym(pHandle, "DirectFBInit"));
    const auto pCreate = reinterpret_cast<DFBResult (*)(IDirectFB **)>(dlsym(pHandle, "DirectFBCreate"));
    if (!pInit || !pCreate || pInit(nullptr, nullptr) != DFB_OK || pCreate(&pDfb) != DFB_OK) return false;
    Replace(pDfb->GetDisplayLayer, s_pGetDisplayLayer, GetDisplayLayer);
    return true;
}

void StartMeasuring(size_t uiLatencies)
{
    s_latencies.reserve(uiLatencies); // before other threads use it
    s_bMeasuring = true;
}

uint64_t Flips()
{
    return s_uiFlips;
}

const std::vector<std::chrono::microseconds> &Latencies()
{
    return s_latencies;
}

bool IsFramePending()
{
    return s_bPending;
}

} // namespace soak
