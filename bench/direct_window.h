// SPDX-License-Identifier: MIT
// The DirectFB calls of an activation of layer 1.
#ifndef BENCH_DIRECT_WINDOW_H
#define BENCH_DIRECT_WINDOW_H

#include "platform/directfb_c.h"

#include <vector>

namespace bench
{

class DirectWindow
{
public:
    explicit DirectWindow(IDirectFB *pDfb) : m_pDfb(pDfb)
    {
    }
    ~DirectWindow()
    {
        Close();
    }
    DirectWindow(const DirectWindow &) = delete;
    DirectWindow &operator=(const DirectWindow &) = delete;

    void Open(int iWidth, int iHeight, int iFonts);
    void Close();
    IDirectFBSurface *Surface() const
    {
        return m_pSurface;
    }

private:
    IDirectFB *m_pDfb;
    IDirectFBDisplayLayer *m_pLayer = nullptr;
    IDirectFBWindow *m_pWindow = nullptr;
    IDirectFBSurface *m_pSurface = nullptr;
    std::vector<IDirectFBFont *> m_fonts;
};

} // namespace bench

#endif
