// SPDX-License-Identifier: MIT
#include "fixture.h"

namespace
{

// Runs after the test's own surfaces and fonts are destroyed, because they need DirectFB.
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
