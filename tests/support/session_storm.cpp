/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/support/session_storm.h"

#include <random>

#include <pubsecstack/pubsecstack.h>

#include "tests/support/session_records.h"

using viewlib::Answer;

SessionStorm::SessionStorm(viewlib::Server& first, viewlib::Server& second, u32 seed)
    : m_first(first), m_second(second), m_seed(seed)
{
}

SessionStorm::~SessionStorm()
{
    end();
}

void SessionStorm::repeat(std::function<void(u32 random)> step, std::chrono::milliseconds pause)
{
    const u32 seed = m_seed * 100 + static_cast<u32>(m_threads.size());
    m_threads.emplace_back([this, step = std::move(step), pause, seed] {
        std::mt19937 random(seed);
        while (!m_over)
        {
            step(static_cast<u32>(random()));
            std::this_thread::sleep_for(pause);
        }
    });
}

void SessionStorm::end()
{
    m_over = true;
    for (std::thread& thread : m_threads)
    {
        thread.join();
    }
    m_threads.clear();
    m_first.clearScripts();
    m_second.clearScripts();
}

u32 SessionStorm::posted() const
{
    return m_posted;
}

viewlib::Server& SessionStorm::serverOf(u32 random) const
{
    return (random & 1) != 0 ? m_first : m_second;
}

const char* SessionStorm::deviceOf(u32 platform)
{
    return platform == 0 ? "44010000001190000000" : kDevice;
}

TPubSecPlatRegInfo SessionStorm::recordOf(u32 platform, const viewlib::Server& server)
{
    TPubSecPlatRegInfo info = recordFor(server.port());
    setText(info.achDeviceID, deviceOf(platform));
    info.dwKeepaliveSec = 1;
    info.dwSyncTimeMin = 1;
    return info;
}

void SessionStorm::post(u32 random)
{
    static const TPubSecIntelliPicObj s_tPicture = {};
    char achStatus[PUBSEC_STATUS_SIZE] = "";
    m_posted += PubSecPostImage(random & 1, &s_tPicture, achStatus) == 50 ? 1u : 0u;
}

void SessionStorm::configure(u32 random) const
{
    const u32 platform = random & 1;
    TPubSecPlatRegInfo info = recordOf(platform, serverOf(random >> 1));
    info.dwEnable = (random & 0x1c) != 0 ? 1 : 0;
    info.dwKeepaliveSec = (random & 0x20) != 0 ? 1 : 2;
    info.dwSyncTimeMin = (random >> 6) & 1;
    info.achReserved[0] = static_cast<char>(random >> 7);
    PubSecStackUpdateRegisterInfo(static_cast<s32>(platform), &info);
}

/* The direct calls go by the name of platform 1 or of a third device. */
void SessionStorm::callDirectly(u32 random) const
{
    const u32 platform = (random >> 3) & 1;
    TPubSecRegParam param = paramFor(serverOf(random >> 4).port());
    setText(param.achDeviceID, (random & 0x20) != 0 ? deviceOf(1) : "44010000001190000002");
    TPubSecSystemTime time = {};
    switch (random % 6)
    {
    case 0:
        PubSecPostUserUnRegisterMsg(platform);
        break;
    case 1:
        PubSecStackTestRegister(&param);
        break;
    case 2:
        PubSecGetSystemTimeMsg(platform, &time);
        break;
    case 3:
        PubSecStackPostRegisterExt(&param);
        break;
    case 4:
        PubSecPostUserUnRegisterMsgExt(&param);
        break;
    default:
        PubSecGetRegisterStatus(static_cast<s32>(platform));
    }
}

void SessionStorm::misbehave(u32 random) const
{
    viewlib::Server& server = serverOf(random);
    switch ((random >> 1) % 4)
    {
    case 0:
        return server.always(kKeepalive, Answer(500));
    case 1:
        return server.script(kRegister, Answer::redirect(302, serverOf(random >> 3).url(kRegister)));
    case 2:
        return server.script(kKeepalive, Answer(200, "{\"ResponseStatusObject\":{\"StatusCode\":10}}"));
    default:
        return server.clearScripts();
    }
}
