/* SPDX-License-Identifier: Apache-2.0 */
/* A test that starts with a fresh fake platform and ends with its contracts kept. */
#ifndef PUBSEC_FAKE_PLATFORM_FIXTURE_H
#define PUBSEC_FAKE_PLATFORM_FIXTURE_H

#include <gmock/gmock.h>

#include "tests/support/fake_platform.h"

class FakePlatformTest : public testing::Test
{
  protected:
    void SetUp() override
    {
        fake_platform::reset();
    }

    void TearDown() override
    {
        EXPECT_THAT(fake_platform::faults(), testing::IsEmpty());
        EXPECT_EQ(fake_platform::locksHeld(), 0u);
    }
};

#endif
