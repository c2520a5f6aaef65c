// SPDX-License-Identifier: MIT
#include "bed.h"

namespace
{

// After the test's own surfaces and fonts are gone, which would not outlive DirectFB.
class Cleaner : public testing::EmptyTestEventListener
{
    void OnTestEnd(const testing::TestInfo &) override
    {
        live::DestroyDisplay();
    }
};

} // namespace

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new Cleaner);
    return RUN_ALL_TESTS();
}
