// SPDX-License-Identifier: MIT
// The overhead of the library. Without an argument it measures nanoseconds. With --count it calls every
// operation once, between marks that bench/count finds in the output of callgrind and strace, and prints the
// number of allocations.
#include "operations.h"

#include <cstdio>
#include <cstring>
#include <pthread.h>
#include <sys/time.h>
#include <unistd.h>
#include <valgrind/callgrind.h>

// NOLINTBEGIN(bugprone-reserved-identifier): the C library's names
extern "C" void *__libc_malloc(size_t);
extern "C" void *__libc_calloc(size_t, size_t);
extern "C" void *__libc_realloc(void *, size_t);
// NOLINTEND(bugprone-reserved-identifier)

static int g_iAllocations;

// Every allocation of the process goes through these functions.
extern "C" void *malloc(size_t uiSize)
{
    return g_iAllocations++, __libc_malloc(uiSize);
}

extern "C" void *calloc(size_t uiCount, size_t uiSize)
{
    return g_iAllocations++, __libc_calloc(uiCount, uiSize);
}

extern "C" void *realloc(void *pOld, size_t uiSize)
{
    return g_iAllocations++, __libc_realloc(pOld, uiSize);
}

namespace bench
{

// A system call without side effects that strace prints with the name of the operation.
static void Mark(const char *pcPhase, const char *pcName)
{
    // cppcheck-suppress ignoredReturnValue ; the file is never there
    (void)access((std::string(pcPhase) + "/" + pcName).c_str(), F_OK);
}

static int Count(const Operation &operation)
{
    NullDisplay display(operation.eColors, operation.eLayer);

    // The dynamic loader resolves symbols during the first call.
    for (int i = 0; i < 3; i++) {
        if (operation.pPrepare) operation.pPrepare(display);
        operation.pCall(display);
    }
    if (operation.pPrepare) operation.pPrepare(display);
    Mark("begin", operation.pcName);
    g_iAllocations = 0;
    CALLGRIND_ZERO_STATS;
    operation.pCall(display);
    CALLGRIND_DUMP_STATS_AT(operation.pcName);
    const int iAllocations = g_iAllocations;
    Mark("end", operation.pcName);
    std::printf("%d %s\n", iAllocations, operation.pcName);
    return iAllocations;
}

template <typename Candidate> static void Time(benchmark::State &state, Candidate candidate)
{
    const int iCalls = CallsInABatch(candidate);
    std::vector<double> times;

    for (auto _ : state) {
        times.push_back(SecondsOf(iCalls, candidate) / iCalls);
        state.SetIterationTime(times.back());
    }
    state.counters["ours"] = Median(times) * 1e9;
}

// Registers a building block of many operations on its own.
template <typename Candidate> static void RegisterAlone(const char *pcName, Candidate candidate)
{
    Register(std::string("calls//") + pcName,
             [candidate](benchmark::State &state) { Time(state, candidate); });
}

static void RegisterBuildingBlocks()
{
    static pthread_mutex_t s_mutex;
    static struct timeval s_now;
    pthread_mutexattr_t attribute;

    pthread_mutexattr_init(&attribute);
    pthread_mutexattr_settype(&attribute, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&s_mutex, &attribute);
    RegisterAlone("(the mutex only, locked and unlocked)", [] {
        pthread_mutex_lock(&s_mutex);
        pthread_mutex_unlock(&s_mutex);
    });
    RegisterAlone("(the clock only)", [] { gettimeofday(&s_now, nullptr); });
}

} // namespace bench

int main(int argc, char **argv)
{
    const bool bDemand = argc == 2 && std::strcmp(argv[1], "--demand-no-allocations") == 0;

    if (bDemand || (argc == 2 && std::strcmp(argv[1], "--count") == 0)) {
        int iAllocations = 0;
        for (const bench::Operation &operation : bench::Operations()) iAllocations += bench::Count(operation);
        return bDemand && iAllocations != 0;
    }
    for (const bench::Operation &operation : bench::Operations()) {
        if (operation.pPrepare) continue; // cannot be repeated without its preparation
        bench::Register(std::string("calls//") + operation.pcName, [&operation](benchmark::State &state) {
            bench::NullDisplay display(operation.eColors, operation.eLayer);
            bench::Time(state, [&] { operation.pCall(display); });
        });
    }
    bench::RegisterBuildingBlocks();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
