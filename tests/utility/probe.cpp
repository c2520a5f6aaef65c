// SPDX-License-Identifier: MIT
// Uses the logging library as a program would, one scene per run. The records appear on standard error.
#include "kova/kova_textdisp.h"
#include "kova_debug.h"

#include <pthread.h>
#include <stdio.h>
#include <string>
#include <thread>
#include <vector>

enum { THREADS = 8, ERRORS_A_THREAD = 250 };

// An error as the library logs it: location, message, end of line.
static void Error(const char *pcMessage)
{
    kova_debug_log(KOVA_CAT_DEFAULT, 1, "File", __func__, 7, "[File:%s Function:%s Line:%d]:", "File",
                   __func__, 7);
    kova_debug_log(KOVA_CAT_DEFAULT, 1, "File", __func__, 7, "%s", pcMessage);
    kova_debug_log(KOVA_CAT_DEFAULT, 1, "File", __func__, 7, "\n");
}

static void Banner()
{
    kova_debug_log(KOVA_CAT_DEFAULT, 5, "File", __func__, 8, "\n\n#### %s ####\n\n", "banner");
}

static void Unfinished(const char *pcMessage)
{
    kova_debug_log(KOVA_CAT_DEFAULT, 2, "File", __func__, 9, "%s", pcMessage);
}

static void ErrorsOfAllThreads()
{
    pthread_barrier_t start;
    std::vector<std::thread> threads;

    pthread_barrier_init(&start, nullptr, THREADS);
    for (int iThread = 0; iThread < THREADS; iThread++) {
        threads.emplace_back([iThread, &start] {
            pthread_barrier_wait(&start);
            for (int i = 0; i < ERRORS_A_THREAD; i++) {
                Error((std::to_string(iThread) + "/" + std::to_string(i) + ".").c_str());
            }
        });
    }
    for (std::thread &thread : threads) thread.join();
    pthread_barrier_destroy(&start);
}

int main(int argc, char **argv)
{
    const std::string scene = argc > 1 ? argv[1] : "";

    if (scene == "threshold") return printf("%d\n", __kova_debug_min), 0;
    if (scene == "error") return Error("what"), 0;
    if (scene == "threads") return ErrorsOfAllThreads(), 0;
    if (scene == "banner") return Banner(), 0;
    if (scene == "interrupted") return Unfinished("begun"), Error("what"), 0;
    if (scene == "unfinished") return Unfinished("begun"), 0;
    if (scene == "ended thread") return std::thread(Unfinished, "begun").join(), Error("what"), 0;
    if (scene == "long") return Error(std::string(5000, 'x').c_str()), Error("what"), 0;
    if (scene == "long traces") {
        for (int i = 0; i < 2; i++) {
            kova_debug_log(KOVA_CAT_DEFAULT, 5, "File", __func__, 11, "%s\n", std::string(5000, 'x').c_str());
        }
        return 0;
    }
    if (scene == "library") {
        KovaTextInitParam_t param = {};
        return Kova_TextDisp_Create(KOVA_GRAPHIC_DIRECTFB, &param), 0;
    }
    if (scene == "category") {
        static KovaDebugCategory *pCategory; // never freed
        pCategory = kova_debug_category_new("Name", 373, "what it is for");
        return kova_debug_log(pCategory, 3, "File", __func__, 10, "text\n"), 0;
    }
    return 2;
}
