// SPDX-License-Identifier: MIT
// The cost of the library's own layer. Without an argument: nanoseconds. With --count every operation is
// called once, between marks that bench/count finds in the output of callgrind and strace, and its
// allocations are printed.
#include "operations.h"

#include <cstdio>
#include <cstring>
#include <pthread.h>
#include <sys/time.h>
#include <unistd.h>
#include <valgrind/callgrind.h>

extern "C" void *__libc_malloc(size_t);
extern "C" void *__libc_calloc(size_t, size_t);
extern "C" void *__libc_realloc(void *, size_t);

static int g_iAllocations;

// Every allocation of the process comes here first.
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

// A system call that changes nothing and that strace prints with its name.
static void Mark(const char *pcPhase, const char *pcName)
{
    // cppcheck-suppress ignoredReturnValue ; the file is never there
    access((std::string(pcPhase) + "/" + pcName).c_str(), F_OK);
}

static int Count(const Operation &operation)
{
    NullDisplay display(operation.eColors, operation.eLayer);

    // The first call is the loader's too, which resolves names then.
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

template <typename Way> static void Time(benchmark::State &state, Way way)
{
    const int iCalls = CallsInABatch(way);
    std::vector<double> times;

    for (auto _ : state) {
        times.push_back(SecondsOf(iCalls, way) / iCalls);
        state.SetIterationTime(times.back());
    }
    state.counters["ours"] = Median(times) * 1e9;
}

// What many operations cannot do without, alone.
template <typename Way> static void RegisterAlone(const char *pcName, Way way)
{
    Register(std::string("calls//") + pcName, [way](benchmark::State &state) { Time(state, way); });
}

static void RegisterWhatIsNeeded()
{
    static pthread_mutex_t s_mutex;
    static struct timeval s_now;
    pthread_mutexattr_t attribute;

    pthread_mutexattr_init(&attribute);
    pthread_mutexattr_settype(&attribute, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&s_mutex, &attribute);
    RegisterAlone("(the mutex alone, locked and unlocked)", [] {
        pthread_mutex_lock(&s_mutex);
        pthread_mutex_unlock(&s_mutex);
    });
    RegisterAlone("(the clock alone)", [] { gettimeofday(&s_now, nullptr); });
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
        if (operation.pPrepare) continue; // no operation to repeat by itself
        bench::Register(std::string("calls//") + operation.pcName, [&operation](benchmark::State &state) {
            bench::NullDisplay display(operation.eColors, operation.eLayer);
            bench::Time(state, [&] { operation.pCall(display); });
        });
    }
    bench::RegisterWhatIsNeeded();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
