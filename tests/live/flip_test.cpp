// SPDX-License-Identifier: MIT
// Drawing reaches the screen, directly or through the flip thread, and the thread always ends.
#include "fixture.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

using namespace live;

static void FillPlane(pKovaITextDisplay_t pDisplay, Reference &reference, kova_uint32 i)
{
    KovaTextRect_t rect = {0, 0, PLANE_WIDTH, PLANE_HEIGHT};
    EXPECT_EQ(pDisplay->FillRect(pDisplay, 0, &rect, Color(i)), 0);
    reference.Fill(0, 0, PLANE_WIDTH, PLANE_HEIGHT, i);
}

static bool IsOnScreen(const Reference &reference)
{
    return OnScreen().data == reference.Pixels().data;
}

TEST(Flip, ShowsTheLastFrameOfABurst)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    Reference reference;

    for (int iBurst = 0; iBurst < 40; iBurst++) {
        for (int i = 0; i < 1 + iBurst % 12; i++) {
            FillPlane(pDisplay, reference, kova_uint32((iBurst * 12 + i) % 250 + 1));
            reference.SetColor(255);
            EXPECT_EQ(pDisplay->DrawLine(pDisplay, 0, i, 0, 100, iBurst, Color(255)), 0); // flips
            reference->DrawLine(reference.Surface(), i, 0, 100, iBurst);
        }
        ASSERT_TRUE(Eventually([&] { return IsOnScreen(reference); }))
            << "burst " << iBurst << ": " << Same(reference.Pixels(), OnScreen()).message();
    }
}

TEST(Flip, ShowsNothingThatIsNotFlipped)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    Reference shown, drawn;
    FillPlane(pDisplay, shown, 7);
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
    ASSERT_TRUE(Eventually([&] { return IsOnScreen(shown); }));

    FillPlane(pDisplay, drawn, 8);
    SleepMilliseconds(100);

    EXPECT_TRUE(Same(shown.Pixels(), OnScreen()));
    EXPECT_TRUE(Same(drawn.Pixels(), Drawn()));
}

TEST(SetFlip, HoldsBackEveryFrameOfALayerAndNoneOfAWindow)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    Reference before, after;
    FillPlane(pDisplay, before, 7);
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
    ASSERT_TRUE(Eventually([&] { return IsOnScreen(before); }));

    EXPECT_EQ(pDisplay->SetFlip(pDisplay, 0), 0);
    FillPlane(pDisplay, after, 8);
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
    SleepMilliseconds(100);
    EXPECT_TRUE(Same(Layer() == KOVA_GRAPHIC_LAYER1 ? after.Pixels() : before.Pixels(), OnScreen()));

    EXPECT_EQ(pDisplay->SetFlip(pDisplay, 1), 0);
    EXPECT_TRUE(Eventually([&] { return IsOnScreen(after); }));
}

TEST(Flip, ShowsWhatSeveralThreadsDrew)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    Reference reference;
    std::vector<std::thread> threads;

    for (kova_uint32 t = 0; t < 4; t++) {
        threads.emplace_back([pDisplay, t] {
            for (kova_uint32 i = 0; i < 60; i++) {
                KovaTextRect_t rect = {t * 80, 0, 80, PLANE_HEIGHT};
                pDisplay->FillRect(pDisplay, 0, &rect, Color(t * 60 + i + 1));
                if (i % 3 == 0) pDisplay->Flip(pDisplay, 0);
                if (i % 7 == 0) usleep(3000);
            }
        });
    }
    for (std::thread &thread : threads) thread.join();
    for (int t = 0; t < 4; t++) reference.Fill(t * 80, 0, 80, PLANE_HEIGHT, kova_uint32(t * 60 + 60));
    EXPECT_TRUE(Same(reference.Pixels(), Drawn()));
    EXPECT_EQ(pDisplay->Flip(pDisplay, 0), 0);
    EXPECT_TRUE(Eventually([&] { return IsOnScreen(reference); }));
}

// A thread that does not end would block the join for ever; then the alarm ends the process.
TEST(FlipThread, EndsWithItsLastContextAlways)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    KovaTextRect_t rect = {0, 0, 10, 10};
    alarm(60);

    for (kova_uint32 i = 0; i < 100; i++) {
        pDisplay->FillRect(pDisplay, 0, &rect, Color(i + 1));
        // With a flip in each state: requested, sleeping, done, none.
        for (kova_uint32 k = 0; k < i % 4; k++) pDisplay->Flip(pDisplay, 0);
        if (i % 5 == 1) usleep(1000 * (i % 20));
        DestroyContext(pDisplay, 0);
        if (i % 5 == 2) usleep(100 * (i % 20));
        ASSERT_EQ(GivenContext(pDisplay), 0);
    }
    // The existing context is context 0 again, which is still active.
    Reference reference;
    FillPlane(pDisplay, reference, 9);
    pDisplay->Flip(pDisplay, 0);
    pDisplay->Flip(pDisplay, 0);
    EXPECT_TRUE(Eventually([&] { return IsOnScreen(reference); }));
}

// The X server keeps its screen in a file in XWD format: a header of big-endian words, then the colour map,
// then the pixels, four bytes each.
class Screen
{
public:
    Screen()
    {
        const char *const pcName = getenv("KOVA_XVFB_SCREEN");
        const int iFile = pcName ? open(pcName, O_RDONLY) : -1;
        struct stat status = {};
        if (iFile < 0 || fstat(iFile, &status) != 0) return;
        void *const pData = mmap(nullptr, size_t(status.st_size), PROT_READ, MAP_SHARED, iFile, 0);
        close(iFile);
        if (pData != MAP_FAILED) m_pucData = static_cast<const kova_uint8 *>(pData);
    }

    bool IsThere() const
    {
        return m_pucData;
    }

    kova_uint32 Word(int i) const
    {
        const kova_uint8 *const puc = m_pucData + i * 4;
        return kova_uint32(puc[0]) << 24 | kova_uint32(puc[1]) << 16 | kova_uint32(puc[2]) << 8 | puc[3];
    }

    // The pure red, green and blue values.
    kova_uint32 Pixel(kova_uint32 uiX, kova_uint32 uiY) const
    {
        kova_uint32 uiPixel;
        const kova_uint32 uiHeader = Word(0), uiColors = Word(19), uiRow = Word(12);
        memcpy(&uiPixel, m_pucData + uiHeader + uiColors * 12 + uiY * uiRow + uiX * 4, sizeof uiPixel);
        return uiPixel & 0xFFFFFF;
    }

private:
    const kova_uint8 *m_pucData = nullptr;
};

TEST(Flip, ReachesTheScreenOfTheXServer)
{
    const Screen screen;
    if (!screen.IsThere()) GTEST_SKIP() << "no X server";
    if (Layer() == KOVA_GRAPHIC_LAYER1 || Colors() == INDEX) {
        GTEST_SKIP() << "DirectFB's X11 system shows no LUT8 layer, and its desktop blends a window";
    }
    pKovaITextDisplay_t pDisplay = GivenShownDisplay();
    Reference reference;
    KovaTextRect_t rect = {40, 60, 200, 90};

    for (kova_uint32 i = 0; i < 9; i++) { // opaque entries: 1, 5, 9 ...
        FillPlane(pDisplay, reference, i * 4 + 1);
        pDisplay->FillRect(pDisplay, 0, &rect, Color(i * 4 + 101));
        reference.Fill(40, 60, 200, 90, i * 4 + 101);
        pDisplay->Flip(pDisplay, 0);
    }
    const Picture_t expected = reference.Pixels();
    const auto isShown = [&] {
        for (kova_uint32 y = 0; y < PLANE_HEIGHT; y++) {
            for (kova_uint32 x = 0; x < PLANE_WIDTH; x++) {
                if (screen.Pixel(x, y) != (expected.Pixel(int(x), int(y)) & 0xFFFFFF)) return false;
            }
        }
        return true;
    };
    EXPECT_TRUE(Eventually(isShown)) << std::hex << "at the corner: " << screen.Pixel(0, 0) << ", expected "
                                     << expected.Pixel(0, 0);
}
