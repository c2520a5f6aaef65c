// SPDX-License-Identifier: MIT
// The memory of this process, as the kernel reports it.
#ifndef BENCH_MEMORY_H
#define BENCH_MEMORY_H

#include <cstdio>
#include <cstdlib>
#include <cstring>

// The key is that of /proc/self/status: "VmRSS:" for the current size, "VmHWM:" for the peak.
inline long MemoryKiB(const char *pcKey)
{
    const std::size_t uiKey = std::strlen(pcKey);
    char acLine[256];
    long lKiB = 0;
    FILE *const pFile = std::fopen("/proc/self/status", "r");

    while (pFile && std::fgets(acLine, sizeof acLine, pFile)) {
        if (std::strncmp(acLine, pcKey, uiKey) == 0) lKiB = std::strtol(acLine + uiKey, nullptr, 10);
    }
    if (pFile) std::fclose(pFile);
    return lKiB;
}

#endif
