/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A program with a version of its own of every function, linked with every object file of the POSIX platform. It would
 * not link if one function of that platform couldn't be replaced alone; that the program's version wins is tested here.
 */
#include <pubsecplatform_posix.h>

/* The fake's functions as ordinary ones instead of weak ones. */
#define FAKE_FUNCTION
#include "tests/support/fake_platform.cpp" // NOLINT(bugprone-suspicious-include)
#include "tests/support/fake_platform_fixture.h"

namespace
{

class PosixReplacedAll : public FakePlatformTest
{
};

TEST_F(PosixReplacedAll, EveryFamilyIsTheProgramsOwn)
{
    AppDelay(4000000); /* the platform's own would take an hour */
    EXPECT_EQ(fake_platform::now(), 4000000u);
    TlxPrintf(1, 0, "x\n");
    EXPECT_EQ(fake_platform::logLines().size(), 1u);
    EXPECT_EQ(AppBaseInit(), 0u);
    EXPECT_EQ(AppBaseInit(), 0u); /* 102 from the platform's */
    void* block = AppMemPoolMallocEx(nullptr, 1, "f", 1);
    EXPECT_EQ(fake_platform::outstandingBlocks(), 1u);
    EXPECT_EQ(PosixPlatformPoolBlocks(), 0);
    AppMemPoolFreeEx(nullptr, block, "f", 1);
    NvrSrvFree(nullptr, "f", 1);
    EXPECT_EQ(fake_platform::releases().size(), 2u);
    static const TAppLockHandle lock = AppLockCreate();
    AppLockTakeByTime(lock, 0);
    EXPECT_EQ(fake_platform::lockTakes(), 1u);
    AppLockGive(lock);
    AppRegCommand(
        "c", [](s32 n) { return n; }, "");
    EXPECT_EQ(fake_platform::commands().size(), 1u);
    EXPECT_EQ(AppGetTick(), 12345u + 4000000u);
}

} // namespace
