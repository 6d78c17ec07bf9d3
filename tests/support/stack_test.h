/* SPDX-License-Identifier: Apache-2.0 */
/* A test that starts with the stack as it is at load, on a fresh fake platform. */
#ifndef PUBSEC_TESTS_STACK_TEST_H
#define PUBSEC_TESTS_STACK_TEST_H

#include <cstring>

#include <gmock/gmock.h>

#include "core/core.h"
#include "core/state.h"
#include "tests/support/fake_platform_fixture.h"
#include "tests/support/log_lines.h"
#include "tests/support/settings.h"

namespace stack
{

inline void clear()
{
    std::memset(g_atPubSecStackGlobalCommon, 0, sizeof(g_atPubSecStackGlobalCommon));
    std::memset(g_atPubSecStackGlobalCommon_New, 0, sizeof(g_atPubSecStackGlobalCommon_New));
    std::memset(g_tFirstRegMess, 0, sizeof(g_tFirstRegMess));
    for (u32 platform = 0; platform < PUBSEC_PLATFORM_NUM; ++platform)
    {
        g_bPubSecRegStatus[platform] = 0;
        g_adwPubSecStackPlatIndex[platform] = 0;
        g_ahKeepaliveTimer[platform] = nullptr;
        g_ahSyncTimeTimer[platform] = nullptr;
        abyKeepalivFailTimes[platform] = 0;
        g_pfRegStatus[platform] = nullptr;
    }
    g_bPubSecInit = 0;
    g_hMemPool = nullptr;
    g_hTaskMgr = nullptr;
    g_hAppTaskNoDelay = nullptr;
    g_hAppTaskDelay = nullptr;
    g_hAppTaskRegister = nullptr;
    g_ePubSecStackLogLevel = 0;
}

} // namespace stack

class StackTest : public FakePlatformTest
{
  protected:
    void SetUp() override
    {
        FakePlatformTest::SetUp();
        stack::clear();
    }

    void TearDown() override
    {
        stack::clear();
        FakePlatformTest::TearDown();
    }

    static void logAt(s32 level)
    {
        ASSERT_EQ(_SetPubSecStaLogLvl(level), level);
    }
};

#endif
