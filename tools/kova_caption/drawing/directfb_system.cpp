// SPDX-License-Identifier: MIT
#include "drawing/directfb_system.h"

#include <cstdlib>
#include <string>

#include <dlfcn.h>

#include "base/failure.h"
#include "kova/kova_textdisp_dfb.h"
#include "terminal/report.h"

namespace caption
{

// Why DirectFB cannot open a window on the X server, or an empty text. It is checked beforehand because
// DirectFB's module crashes on a server that does not respond, and on one with GLX.
static std::string WhyNoWindow()
{
    using Open = void *(*)(const char *);
    using Close = int (*)(void *);
    using Query = int (*)(void *, const char *, int *, int *, int *);

    const char *const name = std::getenv("DISPLAY");
    if (!name || !*name) return "no X server (DISPLAY is not set)";
    void *const library = dlopen("libX11.so.6", RTLD_NOW | RTLD_LOCAL);
    if (!library) return "libX11.so.6 is not installed";

    const auto open = reinterpret_cast<Open>(dlsym(library, "XOpenDisplay"));
    const auto close = reinterpret_cast<Close>(dlsym(library, "XCloseDisplay"));
    const auto query = reinterpret_cast<Query>(dlsym(library, "XQueryExtension"));
    void *const server = open && close && query ? open(name) : nullptr;
    int opcode = 0;
    int event = 0;
    int error = 0;
    std::string reason;

    if (!server) {
        reason = std::string("the X server ") + name + " (DISPLAY) does not respond";
    } else if (query(server, "GLX", &opcode, &event, &error)) {
        reason = std::string("the X server ") + name + " has GLX, with which DirectFB's X11 module crashes";
    }
    if (server) close(server);
    dlclose(library);
    return reason;
}

void ChooseDirectFBSystem(const Options &options)
{
    if (std::getenv("DFBARGS")) return;

    const std::string reason = options.headless ? "--headless was given" : WhyNoWindow();
    if (!reason.empty() && options.layer != KOVA_GRAPHIC_LAYER1) {
        throw Failure(
            "--layer " + std::to_string(options.layer + 1) + ": " + reason +
            "; only layer 1 is available: use --layer 1, or an X server such as Xvfb -extension GLX");
    }
    if (!reason.empty() && !options.headless && std::getenv("DISPLAY")) {
        Report(reason + "; drawing without a window");
    }
    const std::string arguments = std::string("system=") + (reason.empty() ? "x11" : "dummy") +
                                  ",mode=" + std::to_string(options.plane.width) + "x" +
                                  std::to_string(options.plane.height) +
                                  ",no-sighandler,no-banner,no-cursor,quiet";
    setenv("DFBARGS", arguments.c_str(), 1);
}

void KeepDirectFBStarted()
{
    static bool kept = false;
    auto *const directfb = static_cast<IDirectFB *>(Kova_TextDisp_GetDFB());

    if (kept || !directfb) return;
    // The display closes the shared object too, so that has to be held as well; neither is given back.
    // cppcheck-suppress leakReturnValNotUsed
    kept = dlopen("libdirectfb.so", RTLD_NOW | RTLD_NOLOAD) != nullptr && directfb->AddRef(directfb) == DR_OK;
}

} // namespace caption
