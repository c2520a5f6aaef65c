// SPDX-License-Identifier: MIT
// Runs each input once, for builds without libFuzzer. Inputs are files, folders of files, or --random COUNT
// SEED.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t uiSize);

static size_t s_uiPlayed;

static void PlayFile(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());

    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
    s_uiPlayed++;
}

static void PlayRandom(unsigned uiCount, unsigned uiSeed)
{
    std::mt19937 random(uiSeed);
    std::vector<uint8_t> bytes;

    for (unsigned i = 0; i < uiCount; i++) {
        bytes.resize(16 + random() % 600);
        for (uint8_t &byte : bytes) byte = uint8_t(random());
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
        s_uiPlayed++;
    }
}

int main(int argc, char **argv)
{
    for (int i = 1; i < argc; i++) {
        if (!strcmp(argv[i], "--random") && i + 2 < argc) {
            PlayRandom(unsigned(atoi(argv[i + 1])), unsigned(atoi(argv[i + 2])));
            i += 2;
        } else if (std::filesystem::is_directory(argv[i])) {
            for (const auto &entry : std::filesystem::directory_iterator(argv[i])) PlayFile(entry.path());
        } else if (std::filesystem::exists(argv[i])) {
            PlayFile(argv[i]);
        } else {
            fprintf(stdout, "%s: no such file or folder; usage: replay FILE|FOLDER|--random COUNT SEED...\n",
                    argv[i]);
            return 2;
        }
    }
    printf("%zu inputs run\n", s_uiPlayed);
    return s_uiPlayed ? 0 : 1;
}
