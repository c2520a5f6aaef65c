// SPDX-License-Identifier: MIT
// A file in memory with a path under which other code can open it.
#ifndef FUZZ_MEMORY_FILE_H
#define FUZZ_MEMORY_FILE_H

#include <cstddef>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace fuzz
{

class MemoryFile
{
public:
    MemoryFile(const void *pData, size_t uiSize) : m_iFile(memfd_create("fuzz", MFD_CLOEXEC))
    {
        m_bWhole = m_iFile >= 0 && write(m_iFile, pData, uiSize) == ssize_t(uiSize);
    }
    ~MemoryFile()
    {
        if (m_iFile >= 0) close(m_iFile);
    }
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;

    bool IsWhole() const
    {
        return m_bWhole;
    }
    std::string Name() const
    {
        return "/proc/self/fd/" + std::to_string(m_iFile);
    }

private:
    int m_iFile;
    bool m_bWhole;
};

} // namespace fuzz

#endif
