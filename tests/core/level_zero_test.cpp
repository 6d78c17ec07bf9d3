/* SPDX-License-Identifier: Apache-2.0 */
/* At level 0 the stack says nothing, whatever goes wrong; at level 1 the same is complained of. */
#include <algorithm>
#include <cstdlib>

#include <cjson/cJSON.h>

#include <pubsecstack/posts.h>
#include <pubsecstack/records.h>

#include "core/http.h"
#include "post/transfer_state.h"
#include "session/session.h"
#include "tests/support/curl_shim.h"
#include "tests/support/stack_test.h"

using fake_platform::Function;
using testing::IsEmpty;

namespace
{

constexpr u32 kTimerElapsed = 4;
constexpr u32 kFirst = 0;
constexpr u32 kNone = 2; /* no platform's number */
constexpr unsigned kAll = 100;

/* Something that goes wrong, and the error that level 1 has of it. */
struct Mishap
{
    const char* name;
    const char* function; /* in whose name it is complained of */
    const char* message;
    void (*happen)();
};

void PrintTo(const Mishap& mishap, std::ostream* out)
{
    *out << mishap.name;
}

/* What goes wrong ... */

void refuseGlobalInit()
{
    curl_shim::failGlobalInit(CURLE_FAILED_INIT);
}

void refuseHeaders()
{
    curl_shim::failAppend(0, kAll);
}

void breakTransfers()
{
    curl_shim::answerAlways({CURLE_COULDNT_CONNECT, 0});
}

/* While it lives, cJSON has no memory. */
struct NoJsonMemory
{
    NoJsonMemory()
    {
        cJSON_Hooks hooks = {[](size_t) -> void* { return nullptr; }, free};
        cJSON_InitHooks(&hooks);
    }

    ~NoJsonMemory()
    {
        cJSON_InitHooks(nullptr);
    }
};

/* ... and in which call. */

void start()
{
    PubSecStackInit();
}

void split(const std::string& url)
{
    char address[64];
    u32 port = 0;
    PubSecStackGetLocation(url.c_str(), address, &port);
}

void askState()
{
    TPubSecTransDataInf info = {};
    PubSecGetTransDataInf(0, &info, "http://10.0.0.1:8080/VIID/Upload/f", nullptr);
}

void readState(const char* answer)
{
    TPubSecTransDataInf info = {};
    _PubSecParseTransDataResp(answer, &info);
}

void askTime()
{
    TPubSecSystemTime time = {};
    PubSecGetSystemTimeMsg(0, &time);
}

void registerPlatform()
{
    PubSecStackPostRegister(0, &g_atPubSecStackGlobalCommon[0]);
}

void leave()
{
    PubSecPostUserUnRegisterMsg(0);
}

void setClock()
{
    _PubSecStackGetPlatformTimeTimerHandle(nullptr, kTimerElapsed, &kFirst);
}

/* A pass of the loop that finds another server configured. */
void changeServer()
{
    g_atPubSecStackGlobalCommon_New[0] = stack::configuration("10.0.0.2", 8080);
    g_bPubSecInit = 1;
    fake_platform::afterDelays(1, PubSecStackUnInit);
    PubSecStackRegisterThread(nullptr, 0, nullptr);
}

void copyNotifications(u32 persons)
{
    static TPubSecDispoNotifyObj notification = {};
    notification.dwPersonNum = persons;
    TPubsecDispositionNotificationList from = {1, &notification, 0};
    TPubsecDispositionNotificationList to = {};
    PubSecStackDup_TPubsecDispositionNotificationList(&from, &to);
}

const Mishap kMishaps[] = {
    {"BroadcastAddress", "_PubSecCheckIpAddr", "your IP is 255.255.255.255 or IpV6,IP:255.255.255.255",
     [] { _PubSecCheckIpAddr("255.255.255.255"); }},
    {"KeepaliveAnswerWithoutACode", "_PubSecKeepAliveParseJson", "Not Find ResponseStatusObject!",
     [] {
         char code[4];
         _PubSecKeepAliveParseJson(R"({"ResponseStatusObject":{}})", code);
     }},
    {"NullCallback", "PubSecStackRegisterCB", "pfRegStatus is NULL!", [] { PubSecStackRegisterCB(nullptr); }},
    {"RefusedOption", "PubSecPostImageFace", "curl_easy_setopt fault:",
     [] {
         curl_shim::refuse(CURLOPT_CONNECTTIMEOUT);
         PubSecPostImageFace(0, nullptr, 0);
     }},

    {"SelfTestWithoutAHandle", "_SetPubSecHttps", "curl_easy_init failed!",
     [] {
         curl_shim::failEasyInit();
         _SetPubSecHttps();
     }},
    {"SelfTestThatFails", "_SetPubSecHttps", "curl_easy_perform() failed: Couldn't connect to server",
     [] {
         breakTransfers();
         _SetPubSecHttps();
     }},
    {"SelfTest", "_SetPubSecHttps", "Res=0, response_code:200", _SetPubSecHttps},

    {"NoPool", "PubSecStackInit", "AppMemPoolCreate failed 4",
     [] {
         fake_platform::fail(Function::kMemPoolCreate, 4);
         start();
     }},
    {"NoTaskManager", "PubSecStackInit", "AppTaskMgrCreate failed 5",
     [] {
         fake_platform::fail(Function::kTaskMgrCreate, 5);
         start();
     }},
    {"NoTask", "PubSecStackInit", "AppTaskMgrNewTask failed 6",
     [] {
         fake_platform::fail(Function::kTaskMgrNewTask, 6);
         start();
     }},
    {"NoEvent", "PubSecStackInit", "AppTaskSendEvent pubsec_rfid failed 7",
     [] {
         fake_platform::fail(Function::kTaskSendEvent, 7);
         start();
     }},

    {"RedirectWithoutAScheme", "PubSecStackGetLocation", "NO http:// ", [] { split("10.1.1.1:80/VIID"); }},
    {"RedirectElsewhere", "PubSecStackGetLocation", "NO /VIID ", [] { split("http://10.1.1.1:80/"); }},
    {"RedirectWithoutAHost", "PubSecStackGetLocation", "Location Url Err ", [] { split("http:///VIID"); }},
    {"RedirectThatIsTooLong", "PubSecStackGetLocation", "Location of 70 characters is longer than 63",
     [] { split("http://" + std::string(67, 'h') + ":80/VIID"); }},
    {"RedirectWithoutAPort", "PubSecStackGetLocation", "NO port", [] { split("http://host/VIID"); }},

    {"NoNotifications", "PubSecPostDispositionNotification",
     "input param error(nPlatID=0,ptList=", [] { PubSecPostDispositionNotification(0, nullptr); }},
    {"StateOfAnUnregisteredPlatform", "PubSecGetTransDataInf", "Device not registered! ",
     [] {
         g_bPubSecRegStatus[0] = 0;
         askState();
     }},
    {"StateWithoutLibcurl", "PubSecGetTransDataInf", "curl_global_init() failed: Failed initialization",
     [] {
         refuseGlobalInit();
         askState();
     }},
    {"StateWithoutAHandle", "PubSecGetTransDataInf", "curl_easy_init() failed",
     [] {
         curl_shim::failEasyInit();
         askState();
     }},
    {"StateWithoutHeaders", "PubSecGetTransDataInf", "FillHeadMsgInfo Err!",
     [] {
         refuseHeaders();
         askState();
     }},
    {"StateWithoutItsHeader", "PubSecGetTransDataInf", "easy_setopt Header failed:An unknown option was passed",
     [] {
         curl_shim::refuse(CURLOPT_HTTPHEADER);
         askState();
     }},
    {"StateThatFails", "PubSecGetTransDataInf", "curl_easy_perform() failed: Couldn't connect to server",
     [] {
         breakTransfers();
         askState();
     }},
    {"LengthThatIsNoNumber", "_PubSecParseTransDataResp", "cannot find type is not int Please Check Again !",
     [] { readState(R"({"TransDataInfObject":{"FileLength":"7","FileHash":"abc"}})"); }},
    {"HashThatIsNoText", "_PubSecParseTransDataResp", "cannot find type is not string Please Check Again !",
     [] { readState(R"({"TransDataInfObject":{"FileLength":7,"FileHash":7}})"); }},

    {"TimeWithoutLibcurl", "PubSecGetSystemTimeMsg", "curl_global_init() failed: Failed initialization",
     [] {
         refuseGlobalInit();
         askTime();
     }},
    {"TimeWithoutHeaders", "PubSecGetSystemTimeMsg", "FillHeadMsgInfo Err!",
     [] {
         refuseHeaders();
         askTime();
     }},
    {"TimeThatLacksAMember", "_PubSecSystemTimeParseJson", "cannot find LocalTime !Please Check Again !",
     [] {
         TPubSecSystemTime time = {};
         _PubSecSystemTimeParseJson(R"({"SystemTimeObject":{"VIIDServerID":"1","TimeMode":"1"}})", &time);
     }},
    {"TimeThatIsNotTold", "_PubSecStackGetPlatformTimeTimerHandle", "plat[0] PubSecGetSystemTimeMsg fail{77}!",
     [] {
         breakTransfers();
         setClock();
     }},
    {"TimeThatCannotBeConverted", "_PubSecStackGetPlatformTimeTimerHandle", "NvrSysTimeSwitch is fail!",
     [] {
         curl_shim::answerAlways({CURLE_OK, 200,
                                  R"({"SystemTimeObject":{"VIIDServerID":"1","TimeMode":"1",)"
                                  R"("LocalTime":"20240131235959","TimeZone":"UTC+8"}})"});
         fake_platform::fail(Function::kTimeSwitch, 1);
         setClock();
     }},

    {"KeepaliveThatIsRefused", "_PubSecPostUserKeepAliveMsg", "statu code:200",
     [] {
         curl_shim::answerAlways({CURLE_OK, 200, R"({"ResponseStatusObject":{"StatusCode":10}})"});
         _PubSecPostUserKeepAliveMsg(0);
     }},

    {"RegistrationWithoutMemory", "PubSecStackPostRegister", "_PubSecUserRegisterJson failed().",
     [] {
         const NoJsonMemory none;
         registerPlatform();
     }},
    {"RegistrationWithoutLibcurl", "PubSecStackPostRegister", "curl_global_init() failed: Failed initialization",
     [] {
         refuseGlobalInit();
         registerPlatform();
     }},
    {"RegistrationWithoutAHandle", "PubSecStackPostRegister", "curl_easy_init failed().",
     [] {
         curl_shim::failEasyInit();
         registerPlatform();
     }},
    {"RegistrationWithoutHeaders", "PubSecStackPostRegister", "FillHeadMsgInfo Err!",
     [] {
         refuseHeaders();
         registerPlatform();
     }},
    {"RegistrationThatFailsTwice", "PubSecStackPostRegister",
     "curl_easy_perform no auth Ret:7,failed: Couldn't connect to server",
     [] {
         breakTransfers();
         registerPlatform();
     }},

    {"UnregistrationWithoutMemory", "PubSecPostUserUnRegisterMsg", "ptUnRegJson is null",
     [] {
         const NoJsonMemory none;
         leave();
     }},
    {"UnregistrationWithoutLibcurl", "PubSecPostUserUnRegisterMsg", "curl_global_init() failed: Failed initialization",
     [] {
         refuseGlobalInit();
         leave();
     }},
    {"UnregistrationWithoutAHandle", "PubSecPostUserUnRegisterMsg", "curl_easy_init() failed",
     [] {
         curl_shim::failEasyInit();
         leave();
     }},
    {"UnregistrationWithoutHeaders", "PubSecPostUserUnRegisterMsg", "FillHeadMsgInfo Err!",
     [] {
         refuseHeaders();
         leave();
     }},
    {"UnregistrationThatFails", "PubSecPostUserUnRegisterMsg", "curl_easy_perform() failed: Couldn't connect to server",
     [] {
         breakTransfers();
         leave();
     }},
    {"UnregistrationByTheLoopThatFails", "PubSecStackRegisterThread", "UnRegister failed!",
     [] {
         breakTransfers();
         changeServer();
     }},

    {"TimerWithoutAContext", "_PubSecStackKeepaliveTimerHandle", "pvContext is null.",
     [] { _PubSecStackKeepaliveTimerHandle(nullptr, kTimerElapsed, nullptr); }},
    {"TimerOfNoPlatform", "_PubSecStackKeepaliveTimerHandle", "PlatIndex=2 is overflow.",
     [] { _PubSecStackKeepaliveTimerHandle(nullptr, kTimerElapsed, &kNone); }},

    {"TooManyObjects", "PubSecStackDup_TPubsecDispositionNotificationList", "Input object num is overflow.",
     [] { copyNotifications(0xFFFFFFFF); }},
    {"CopyWithoutMemory", "PubSecStackDup_TPubsecDispositionNotificationList", "malloc aptDispoNotifyObj failed.",
     [] {
         fake_platform::fail(Function::kMemPoolMalloc, 0);
         copyNotifications(1);
     }},
};

class MishapTest : public StackTest, public testing::WithParamInterface<Mishap>
{
  protected:
    /* What a platform that is registered at a kind server says of the mishap at a level. */
    static std::vector<std::string> saidAt(s32 level)
    {
        fake_platform::reset();
        stack::clear();
        curl_shim::reset();
        curl_shim::answerAlways({CURLE_OK, 200, "{}"});
        g_atPubSecStackGlobalCommon[0] = g_atPubSecStackGlobalCommon_New[0] = stack::configuration("10.0.0.1", 8080);
        g_bPubSecRegStatus[0] = 1;
        logAt(level);
        GetParam().happen();
        curl_shim::cleanUp();
        return fake_platform::logLines();
    }
};

MATCHER_P2(Complains, function, message, std::string("has an error of ") + function + ": " + message)
{
    const std::string head = std::string("[PubSecStack ERR] ") + function + ":";
    return std::any_of(arg.begin(), arg.end(), [&](const std::string& line) {
        return line.compare(0, head.size(), head) == 0 && line.find(message) != std::string::npos;
    });
}

TEST_P(MishapTest, IsTakenInSilenceAtLevelZero)
{
    EXPECT_THAT(saidAt(0), IsEmpty());
    EXPECT_THAT(saidAt(1), Complains(GetParam().function, GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(LevelZero, MishapTest, testing::ValuesIn(kMishaps),
                         [](const testing::TestParamInfo<Mishap>& parameter) {
                             return std::string(parameter.param.name);
                         });

} // namespace
