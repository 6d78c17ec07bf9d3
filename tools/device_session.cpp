/* SPDX-License-Identifier: Apache-2.0 */
#include "device_session.h"

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string_view>

#include <pubsecplatform_posix.h>

namespace device
{

namespace
{

/* What a device without a battery shows when it is switched on; a clock behind that year has not been set. */
constexpr TNvrSysTime c_powerOnTime = {2000, 1, 1, 0, 0, 0, {}};
constexpr int64_t c_year2001Ms = 978307200000;
constexpr u32 c_keepaliveSeconds = 60;
constexpr u32 c_clockMinutes = 60;
constexpr u32 c_pollMs = 50;

enum class Leaving
{
    NotYet,
    Done,
    Failed
};

/* What the stack's tasks told. Written by them, waited for by the main thread. */
struct News
{
    std::mutex mutex;
    std::condition_variable changed;
    bool registered = false;
    bool keepaliveAnswered = false;
    std::string keepaliveCode;
    Leaving leaving = Leaving::NotYet;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> log{nullptr, std::fclose};
};

News& news()
{
    static News instance;
    return instance;
}

void onStatus(u32 platform, u32 status, const TPubSecPlatRegInfo*)
{
    if (platform == c_platform)
    {
        const std::lock_guard<std::mutex> lock(news().mutex);
        news().registered = status != 0;
        news().changed.notify_all();
    }
}

/* What follows the mark in the line, without the line's end. */
bool after(std::string_view line, std::string_view mark, std::string& rest)
{
    const std::size_t at = line.find(mark);
    if (at == std::string_view::npos)
    {
        return false;
    }
    rest = line.substr(at + mark.size());
    rest.erase(rest.find_last_not_of("\r\n") + 1);
    return true;
}

void onLog(void*, const char* text, std::size_t length)
{
    const std::string_view line(text, length);
    std::string rest;
    const std::lock_guard<std::mutex> lock(news().mutex);
    if (news().log)
    {
        std::fwrite(text, 1, length, news().log.get());
    }
    if (after(line, "_PubSecKeepAliveParseJson: StatusCode:", news().keepaliveCode))
    {
        news().keepaliveAnswered = true;
    }
    else if (after(line, "UnRegister Success!", rest))
    {
        news().leaving = Leaving::Done;
    }
    else if (after(line, "UnRegister failed!", rest))
    {
        news().leaving = Leaving::Failed;
    }
    news().changed.notify_all();
}

template <typename Predicate> bool waitFor(unsigned seconds, Predicate predicate)
{
    std::unique_lock<std::mutex> lock(news().mutex);
    return news().changed.wait_for(lock, std::chrono::seconds(seconds), predicate);
}

template <std::size_t size> void put(char (&field)[size], const std::string& text)
{
    std::snprintf(field, size, "%s", text.c_str());
}

void openLog(const std::string& file)
{
    if (!file.empty())
    {
        news().log.reset(std::fopen(file.c_str(), "w"));
        if (!news().log)
        {
            throw std::runtime_error("--log \"" + file + "\": " + std::strerror(errno));
        }
    }
    PosixPlatformSetLogCallback(onLog, nullptr);
}

} // namespace

Session::Session(const Options& options) : m_options(options)
{
    openLog(options.logFile);
    NvrSysSetSystemTime(&c_powerOnTime, 0);
    PubSecStackRegisterCB(onStatus);
    configure(true);
    const u32 result = PubSecStackInit();
    if (result != PUBSEC_OK)
    {
        throw std::runtime_error(std::string("the stack did not start: ") + PubSecResultText(result));
    }
    /* Keepalives and unregistrations are seen in the log alone. */
    PosixPlatformConsoleExecute("pbsklog 2", nullptr, 0);
}

Session::~Session()
{
    if (PubSecGetRegisterStatus(c_platform) != 0) /* something failed on the way */
    {
        configure(false);
        waitFor(m_options.waitSeconds, [] { return news().leaving != Leaving::NotYet; });
    }
    PubSecStackUnInit();
    PosixPlatformStop();
    PosixPlatformSetLogCallback(nullptr, nullptr);
}

void Session::configure(bool enable) const
{
    TPubSecPlatRegInfo info = {};
    info.dwEnable = enable ? 1 : 0;
    put(info.achDeviceID, m_options.deviceId);
    put(info.achServerIP, m_options.host);
    info.dwServerPort = m_options.port;
    put(info.achUserName, m_options.user);
    put(info.achPassword, m_options.password);
    info.dwKeepaliveSec = c_keepaliveSeconds;
    info.dwHttpsEnable = m_options.https ? 1 : 0;
    info.dwSyncTimeMin = c_clockMinutes;
    PubSecStackUpdateRegisterInfo(static_cast<s32>(c_platform), &info);
}

void Session::fail(const std::string& what) const
{
    throw std::runtime_error(what + " within " + std::to_string(m_options.waitSeconds) + " s (" +
                             m_options.serverUrl() + ")");
}

void Session::waitRegistered() const
{
    if (!waitFor(m_options.waitSeconds, [] { return news().registered; }))
    {
        fail("the server did not accept the registration of device " + m_options.deviceId + " for user \"" +
             m_options.user + "\"");
    }
}

std::string Session::waitKeepalive() const
{
    if (!waitFor(m_options.waitSeconds, [] { return news().keepaliveAnswered; }))
    {
        fail("no keepalive was answered");
    }
    const std::lock_guard<std::mutex> lock(news().mutex);
    return news().keepaliveCode;
}

void Session::waitClock() const
{
    for (u32 waited = 0; PosixPlatformDeviceClockMs() < c_year2001Ms; waited += c_pollMs)
    {
        if (waited >= m_options.waitSeconds * 1000)
        {
            fail("the clock was not set");
        }
        AppDelay(c_pollMs);
    }
}

void Session::leave()
{
    configure(false);
    if (!waitFor(m_options.waitSeconds, [] { return news().leaving != Leaving::NotYet; }))
    {
        fail("the device did not unregister");
    }
    const std::lock_guard<std::mutex> lock(news().mutex);
    if (news().leaving != Leaving::Done)
    {
        throw std::runtime_error("the server could not be told that the device leaves (" + m_options.serverUrl() + ")");
    }
}

} // namespace device
