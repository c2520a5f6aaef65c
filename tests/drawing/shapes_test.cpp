#include "support.h"

using namespace test;

TEST(DrawLine, DrawsForAnyContextAndFlipsAtOnce)
{
    pKovaITextDisplay_t pDisplay = GivenShownDisplay(KOVA_GRAPHIC_LAYER2, INDEX_COLORS, ACTIVE_CONTEXT(1));

    EXPECT_EQ(pDisplay->DrawLine(pDisplay, 0, 10, 20, 30, 20, 7), 0);

    EXPECT_EQ(Trace(), "enter DrawLine\n"
                       "  base.SetColorIndex 7\n"
                       "  base.DrawLine 10,20 30,20\n"
                       "  layer.GetConfiguration\n"
                       "  base.Flip all WAIT|BLIT|ONSYNC\n"
                       "exit DrawLine\n");
    Destroy(pDisplay);
}
