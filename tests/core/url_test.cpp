/* SPDX-License-Identifier: Apache-2.0 */
/* The URL form, and the kinds of address. */
#include <pubsecstack/posts.h>

#include "core/http.h"
#include "session/session.h"
#include "tests/support/curl_shim.h"
#include "tests/support/stack_test.h"

using log_lines::info;
using log_lines::IsError;
using log_lines::IsOpenError;
using testing::ElementsAre;

namespace
{

class UrlTest : public StackTest
{
  protected:
    void SetUp() override
    {
        StackTest::SetUp();
        curl_shim::reset();
        curl_shim::answerAlways({CURLE_OK, 200, "{}"});
        g_bPubSecRegStatus[0] = 1;
        info = stack::configuration("10.0.0.1", 8080);
    }

    /* The URLs that libcurl was given since the last call. */
    static std::string url()
    {
        const auto urls = curl_shim::callsOf("setopt(URL=");
        const std::string only = urls.size() == 1 ? urls[0].substr(11, urls[0].size() - 12) : "not one URL";
        curl_shim::reset();
        curl_shim::answerAlways({CURLE_OK, 200, "{}"});
        return only;
    }

    std::string ofPost()
    {
        g_atPubSecStackGlobalCommon[0] = info;
        EXPECT_EQ(PubSecPostImageFace(0, nullptr, 0), 50u);
        return url();
    }

    std::string ofKeepalive()
    {
        g_atPubSecStackGlobalCommon[0] = info;
        EXPECT_EQ(_PubSecPostUserKeepAliveMsg(0), 50u);
        return url();
    }

    std::string ofClock()
    {
        g_atPubSecStackGlobalCommon[0] = info;
        TPubSecSystemTime time = {};
        EXPECT_EQ(PubSecGetSystemTimeMsg(0, &time), 51u);
        return url();
    }

    std::string ofUnregistration()
    {
        g_atPubSecStackGlobalCommon[0] = info;
        EXPECT_EQ(PubSecPostUserUnRegisterMsg(0), 50u);
        g_bPubSecRegStatus[0] = 1;
        return url();
    }

    std::string ofRegistration()
    {
        PubSecStackPostRegister(0, &info);
        return url();
    }

    std::string ofDirectRegistration()
    {
        TPubSecRegParam param;
        std::memcpy(&param, reinterpret_cast<const char*>(&info) + sizeof(u32), sizeof(param));
        EXPECT_EQ(PubSecStackPostRegisterExt(&param), 1u);
        return url();
    }

    std::string ofDirectUnregistration()
    {
        TPubSecRegParam param;
        std::memcpy(&param, reinterpret_cast<const char*>(&info) + sizeof(u32), sizeof(param));
        EXPECT_EQ(PubSecPostUserUnRegisterMsgExt(&param), 50u);
        return url();
    }

    TPubSecPlatRegInfo info;
};

TEST_F(UrlTest, EachExchangeHasItsPath)
{
    EXPECT_EQ(ofPost(), "http://10.0.0.1:8080/VIID/Faces");
    EXPECT_EQ(ofKeepalive(), "http://10.0.0.1:8080/VIID/System/Keepalive");
    EXPECT_EQ(ofClock(), "http://10.0.0.1:8080/VIID/System/Time");
    EXPECT_EQ(ofRegistration(), "http://10.0.0.1:8080/VIID/System/Register");
    EXPECT_EQ(ofUnregistration(), "http://10.0.0.1:8080/VIID/System/UnRegister");
    EXPECT_EQ(ofDirectRegistration(), "http://10.0.0.1:8080/VIID/System/Register");
    EXPECT_EQ(ofDirectUnregistration(), "http://10.0.0.1:8080/VIID/System/UnRegister");
}

TEST_F(UrlTest, HttpsIsExactlyOne)
{
    for (const u32 enable : {0u, 2u, 3u, 256u, 0x80000001u, 0xFFFFFFFFu})
    {
        info.dwHttpsEnable = enable;
        EXPECT_EQ(ofPost(), "http://10.0.0.1:8080/VIID/Faces") << enable;
        EXPECT_EQ(ofRegistration(), "http://10.0.0.1:8080/VIID/System/Register") << enable;
    }
    info.dwHttpsEnable = 1;
    EXPECT_EQ(ofPost(), "https://10.0.0.1:8080/VIID/Faces");
    EXPECT_EQ(ofKeepalive(), "https://10.0.0.1:8080/VIID/System/Keepalive");
    EXPECT_EQ(ofClock(), "https://10.0.0.1:8080/VIID/System/Time");
    EXPECT_EQ(ofRegistration(), "https://10.0.0.1:8080/VIID/System/Register");
    EXPECT_EQ(ofUnregistration(), "https://10.0.0.1:8080/VIID/System/UnRegister");
    EXPECT_EQ(ofDirectRegistration(), "https://10.0.0.1:8080/VIID/System/Register");
    EXPECT_EQ(ofDirectUnregistration(), "https://10.0.0.1:8080/VIID/System/UnRegister");
}

TEST_F(UrlTest, ThePortIsASignedDecimal)
{
    info.dwServerPort = 0;
    EXPECT_EQ(ofPost(), "http://10.0.0.1:0/VIID/Faces");
    info.dwServerPort = 65535;
    EXPECT_EQ(ofPost(), "http://10.0.0.1:65535/VIID/Faces");
    info.dwServerPort = 2147483647u;
    EXPECT_EQ(ofPost(), "http://10.0.0.1:2147483647/VIID/Faces");
    info.dwServerPort = 0xFFFFFFFFu;
    EXPECT_EQ(ofPost(), "http://10.0.0.1:-1/VIID/Faces");
    EXPECT_EQ(ofRegistration(), "http://10.0.0.1:-1/VIID/System/Register");
}

TEST_F(UrlTest, OnlyTheRegistrationsPutAnIpv6AddressInBrackets)
{
    stack::put(info.achServerIP, "fd00::5");
    info.dwServerPort = 80;
    EXPECT_EQ(ofRegistration(), "http://[fd00::5]:80/VIID/System/Register");
    EXPECT_EQ(ofDirectRegistration(), "http://[fd00::5]:80/VIID/System/Register");
    EXPECT_EQ(ofPost(), "http://fd00::5:80/VIID/Faces");
    EXPECT_EQ(ofKeepalive(), "http://fd00::5:80/VIID/System/Keepalive");
    EXPECT_EQ(ofClock(), "http://fd00::5:80/VIID/System/Time");
    EXPECT_EQ(ofUnregistration(), "http://fd00::5:80/VIID/System/UnRegister");
    EXPECT_EQ(ofDirectUnregistration(), "http://fd00::5:80/VIID/System/UnRegister");
    stack::put(info.achServerIP, "1:2:3:4:5:6:7:8");
    EXPECT_EQ(ofRegistration(), "http://[1:2:3:4:5:6:7:8]:80/VIID/System/Register");
}

TEST_F(UrlTest, AHostNameGoesInUnchanged)
{
    stack::put(info.achServerIP, "viid.example.com");
    EXPECT_EQ(ofRegistration(), "http://viid.example.com:8080/VIID/System/Register");
    EXPECT_EQ(ofPost(), "http://viid.example.com:8080/VIID/Faces");
}

TEST_F(UrlTest, AnEmptyAddressGoesInUnchanged)
{
    stack::put(info.achServerIP, "");
    EXPECT_EQ(ofRegistration(), "http://:8080/VIID/System/Register");
    EXPECT_EQ(ofPost(), "http://:8080/VIID/Faces");
}

TEST_F(UrlTest, AnAddressThatFillsItsFieldIsReadToItsEnd)
{
    const std::string host(64, 'h');
    std::memset(&info, 0xFF, sizeof(info));
    stack::put(info.achServerIP, host);
    info.dwServerPort = 8080;
    info.dwHttpsEnable = 0;
    stack::put(info.achDeviceID, "d");
    stack::put(info.achUserName, "u");
    stack::put(info.achPassword, "p");
    EXPECT_EQ(ofPost(), "http://" + host + ":8080/VIID/Faces");
    EXPECT_EQ(ofUnregistration(), "http://" + host + ":8080/VIID/System/UnRegister");
    EXPECT_EQ(ofRegistration(), "http://" + host + ":8080/VIID/System/Register");
    EXPECT_EQ(ofDirectRegistration(), "http://" + host + ":8080/VIID/System/Register");
}

TEST_F(UrlTest, TheKeepaliveAndTheClockHaveRoomFor63Characters)
{
    /* "http://" + 29 + ":8080" + "/VIID/System/Keepalive" is 63 characters, one more is cut. */
    stack::put(info.achServerIP, std::string(29, 'h'));
    EXPECT_EQ(ofKeepalive(), "http://" + std::string(29, 'h') + ":8080/VIID/System/Keepalive");
    stack::put(info.achServerIP, std::string(30, 'h'));
    EXPECT_EQ(ofKeepalive(), "http://" + std::string(30, 'h') + ":8080/VIID/System/Keepaliv");
    stack::put(info.achServerIP, std::string(64, 'h'));
    EXPECT_EQ(ofKeepalive(), "http://" + std::string(56, 'h'));
    /* "/VIID/System/Time" leaves five more. */
    stack::put(info.achServerIP, std::string(34, 'h'));
    EXPECT_EQ(ofClock(), "http://" + std::string(34, 'h') + ":8080/VIID/System/Time");
    stack::put(info.achServerIP, std::string(35, 'h'));
    EXPECT_EQ(ofClock(), "http://" + std::string(35, 'h') + ":8080/VIID/System/Tim");
}

TEST_F(UrlTest, AUrlIsCutAtItsBuffer)
{
    TPubSecTarget target = {};
    stack::put(target.achServerIP, "h");
    target.dwServerPort = 1;
    const std::string path(600, 'p');
    char url[512];
    std::memset(url, 'x', sizeof(url));
    PubSecFormatUrl(url, 256, &target, path.c_str());
    EXPECT_EQ(std::string(url), "http://h:1" + std::string(245, 'p'));
    EXPECT_EQ(url[256], 'x');
    PubSecFormatUrl(url, 512, &target, path.c_str());
    EXPECT_EQ(std::string(url), "http://h:1" + std::string(501, 'p'));
    stack::put(target.achServerIP, "::1");
    PubSecFormatBracketedUrl(url, 64, &target, path.c_str());
    EXPECT_EQ(std::string(url), "http://[::1]:1" + std::string(49, 'p'));
}

/* --------------------------------------------------------------------------------------------------------- addresses
 */

class AddressTest : public StackTest
{
  protected:
    /* The kind, with the lines that were written on the way. */
    static s32 kindOf(const char* text)
    {
        fake_platform::reset();
        logAt(3);
        return _PubSecCheckIpAddr(text);
    }
};

TEST_F(AddressTest, TheBroadcastAddressIsIpv4WithAComplaint)
{
    EXPECT_EQ(kindOf("255.255.255.255"), 1);
    EXPECT_THAT(fake_platform::logLines(),
                ElementsAre(IsError("_PubSecCheckIpAddr", "your IP is 255.255.255.255 or IpV6,IP:255.255.255.255")));
}

TEST_F(AddressTest, ADoubleColonIsIpv6WhateverElseThereIs)
{
    for (const char* text : {"fe80::1", "::", "::1", "no::address", "10.0.0.1::"})
    {
        EXPECT_EQ(kindOf(text), 2) << text;
        EXPECT_THAT(fake_platform::logLines(),
                    ElementsAre(IsOpenError("_PubSecCheckIpAddr", std::string("your IP is IpV6,IP:") + text)));
    }
}

TEST_F(AddressTest, Ipv4IsToldWithTheConvertersResult)
{
    for (const char* text : {"10.0.0.1", "0.0.0.0", "255.255.255.254", "192.168.100.200"})
    {
        EXPECT_EQ(kindOf(text), 1) << text;
        EXPECT_THAT(fake_platform::logLines(), ElementsAre(info("_PubSecCheckIpAddr", "dwIpAddr:1 ")));
    }
}

TEST_F(AddressTest, Ipv6WithoutADoubleColonIsFoundByTheConverter)
{
    EXPECT_EQ(kindOf("1:2:3:4:5:6:7:8"), 2);
    EXPECT_THAT(fake_platform::logLines(), ElementsAre(IsError("_PubSecCheckIpAddr", "Not Ipv4,check Ipv6")));
}

TEST_F(AddressTest, AnythingElseIsNoAddress)
{
    for (const char* text :
         {"10.0.0.300", "host", "viid.example.com", "", "10.0.0", "1:2:3", "255.255.255.255 ", "[fd00:1:2:3:4:5:6:7]"})
    {
        EXPECT_EQ(kindOf(text), 0) << text;
        EXPECT_THAT(fake_platform::logLines(), ElementsAre(IsError("_PubSecCheckIpAddr", "Not Ipv4,check Ipv6")));
    }
}

TEST_F(AddressTest, NullIsNoAddress)
{
    EXPECT_EQ(_PubSecCheckIpAddr(nullptr), 0);
}

} // namespace
