/* SPDX-License-Identifier: Apache-2.0 */
/* A host may configure the stack from the constructor of an object of its own, before main and before the library's. */
#include <pubsecstack/config.h>

#include <gtest/gtest.h>

#include "core/state.h"
#include "tests/support/fake_platform.h"
#include "tests/support/stack_test.h"

namespace
{

struct Early
{
    TPubSecPlatRegInfo info = stack::configuration("10.9.8.7", 6543);
    u32 result = PubSecStackUpdateRegisterInfo(1, &info);
    TPubSecPlatRegInfo pending = g_atPubSecStackGlobalCommon_New[1];
    std::vector<std::string> faults = fake_platform::faults();
    u32 takes = fake_platform::lockTakes();
    u32 gives = fake_platform::lockGives();
};

/* Ahead of every constructor without a priority. */
Early* s_early;

__attribute__((constructor(200))) void configureEarly()
{
    s_early = new Early;
}

TEST(EarlyTest, AConfigurationIsTakenUnderARealLockBeforeMain)
{
    EXPECT_EQ(s_early->result, 50u);
    EXPECT_EQ(std::memcmp(&s_early->pending, &s_early->info, sizeof(s_early->info)), 0);
    EXPECT_THAT(s_early->faults, testing::IsEmpty());
    EXPECT_EQ(s_early->takes, 1u);
    EXPECT_EQ(s_early->gives, 1u);
}

} // namespace
