// Words that expectations of many files share.
#ifndef TESTS_EXPECT_H
#define TESTS_EXPECT_H

#include "support.h"

#include <thread>

namespace test
{

// Whether another thread could take the display's lock now.
inline bool LockIsFree(pKovaITextDisplay_t pDisplay)
{
    bool bFree = false;

    std::thread([&] {
        pthread_mutex_t *const pMutex = &RecordOf(pDisplay)->display_mutex;
        bFree = pthread_mutex_trylock(pMutex) == 0;
        if (bFree) pthread_mutex_unlock(pMutex);
    }).join();
    return bFree;
}

inline bool Contains(const std::string &text, const std::string &part)
{
    return text.find(part) != std::string::npos;
}

inline int CountOf(const std::string &text, const std::string &part)
{
    int iCount = 0;
    for (size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) iCount++;
    return iCount;
}

} // namespace test

#endif
