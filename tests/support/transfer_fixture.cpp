/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/support/transfer_fixture.h"

#include <cstdio>

std::vector<std::string> headerLines(const std::string& device)
{
    return {"localhost:8080",
            "Accept:application/json,application/VIID+JSON",
            "Content-Type:application/VIID+JSON;charset=UTF-8",
            "Connection:Keep-alive",
            "Expect:",
            "User-Identify:" + device};
}

void TransferTest::SetUp()
{
    StackTest::SetUp();
    curl_shim::reset();
}

void TransferTest::TearDown()
{
    EXPECT_EQ(curl_shim::openHandles(), 0u);
    EXPECT_EQ(curl_shim::openLists(), 0u);
    EXPECT_THAT(curl_shim::callsOf("free of"), testing::IsEmpty());
    EXPECT_THAT(curl_shim::callsOf("cleanup of"), testing::IsEmpty());
    curl_shim::cleanUp();
    StackTest::TearDown();
}

void TransferTest::connect()
{
    server.start();
    for (u32 platform = 0; platform < PUBSEC_PLATFORM_NUM; ++platform)
    {
        g_atPubSecStackGlobalCommon[platform] = stack::configuration("127.0.0.1", server.port());
        stack::put(g_atPubSecStackGlobalCommon[platform].achDeviceID, platform == 0 ? kFirstDevice : kSecondDevice);
        g_bPubSecRegStatus[platform] = 1;
    }
}

void TransferTest::answer(long status, const std::string& body)
{
    curl_shim::answer({CURLE_OK, status, body, ""});
}

std::vector<std::string> TransferTest::newLines()
{
    const std::vector<std::string> all = fake_platform::logLines();
    const std::vector<std::string> fresh(all.begin() + static_cast<std::ptrdiff_t>(m_linesRead), all.end());
    m_linesRead = all.size();
    return fresh;
}

std::vector<std::string> TransferTest::newErrors(const std::string& operation)
{
    const std::string head = "[PubSecStack ERR] " + operation + ":";
    std::vector<std::string> errors;
    for (const std::string& line : newLines())
    {
        const size_t blank = line.find(' ', head.size());
        if (line.compare(0, head.size(), head) == 0 && blank != std::string::npos && line.back() == '\n')
        {
            errors.push_back(line.substr(blank + 1, line.size() - blank - 2));
        }
    }
    return errors;
}

std::string outputOf(const std::function<void()>& run)
{
    testing::internal::CaptureStdout();
    run();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}
