// SPDX-License-Identifier: MIT
#include "fixture.h"

#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

namespace
{

// Runs after the test's own surfaces and fonts are destroyed, because they need DirectFB.
class Cleaner : public testing::EmptyTestEventListener
{
    void OnTestEnd(const testing::TestInfo &) override
    {
        live::DestroyDisplay();
    }
};

// The library opens libdirectfb.so by name, and the loader reads its path when a process starts: so this one starts again
// with the folder in it.
void UseNamedDirectFB(char **argv)
{
    const char *const pcFolder = getenv("KOVA_LIVE_DIRECTFB");
    if (!pcFolder || !*pcFolder) return;
    const std::string library = std::string(pcFolder) + "/libdirectfb.so";
    const char *const pcPath = getenv("LD_LIBRARY_PATH");
    const std::string path = std::string(pcFolder) + (pcPath ? std::string(":") + pcPath : "");

    if (access(library.c_str(), R_OK) != 0) {
        fprintf(stderr, "KOVA_LIVE_DIRECTFB: cannot read %s\n", library.c_str());
        _exit(2);
    }
    unsetenv("KOVA_LIVE_DIRECTFB");
    setenv("LD_LIBRARY_PATH", path.c_str(), 1);
    execv("/proc/self/exe", argv);
    perror("KOVA_LIVE_DIRECTFB");
    _exit(2);
}

} // namespace

int main(int argc, char **argv)
{
    UseNamedDirectFB(argv);
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new Cleaner);
    return RUN_ALL_TESTS();
}
