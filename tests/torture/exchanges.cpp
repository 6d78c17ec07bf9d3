/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/torture/exchanges.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>

#include <gtest/gtest.h>

#include <pubsecstack/pubsecstack.h>

#include "core/state.h"
#include "session/session.h"
#include "tests/support/settings.h"

namespace torture
{

Place& place()
{
    static Place only;
    return only;
}

void makeFile(size_t size)
{
    place().file = testing::TempDir() + "torture-" + std::to_string(getpid());
    std::ofstream(place().file) << std::string(size, 'f');
}

void removeFile()
{
    std::remove(place().file.c_str());
}

TPubSecPlatRegInfo configuration()
{
    TPubSecPlatRegInfo info = stack::configuration("127.0.0.1", place().port);
    info.dwHttpsEnable = place().secure ? 1 : 0;
    return info;
}

TPubSecRegParam param()
{
    const TPubSecPlatRegInfo info = configuration();
    TPubSecRegParam made;
    std::memcpy(&made, info.achDeviceID, sizeof(made));
    return made;
}

std::string url()
{
    return (place().secure ? "https://127.0.0.1:" : "http://127.0.0.1:") + std::to_string(place().port) +
           "/VIID/Upload/file";
}

u32 registration()
{
    const TPubSecPlatRegInfo info = configuration();
    g_bPubSecRegStatus[0] = 0;
    PubSecStackPostRegister(0, &info);
    return g_bPubSecRegStatus[0];
}

u32 directRegistration()
{
    const TPubSecRegParam to = param();
    return PubSecStackPostRegisterExt(&to);
}

u32 unregistration()
{
    return PubSecPostUserUnRegisterMsg(0);
}

u32 keepalive()
{
    return _PubSecPostUserKeepAliveMsg(0);
}

u32 clockQuery()
{
    TPubSecSystemTime time = {};
    return PubSecGetSystemTimeMsg(0, &time);
}

u32 picture()
{
    TPubSecImageObjInfo info = {};
    TPubSecIntelliPicObj one = {};
    stack::put(info.achImageID, "34020000001190000001022024022923595900001");
    stack::put(info.achDeviceID, "34020000001190000001");
    one.nImageNum = 1;
    one.ptImageInfo = &info;
    char status[PUBSEC_STATUS_SIZE];
    return PubSecPostImage(0, &one, status);
}

u32 face()
{
    TPubSecFaceObjInfo one = {};
    stack::put(one.achFaceID, "340200000011900000010220240229235959000010600001");
    return PubSecPostImageFace(0, &one, 1);
}

u32 gps()
{
    TPubSecGpsInfo one = {};
    return PubSecPostGpsInfo(0, &one);
}

u32 slice()
{
    TPubSecVideoSliceObj none = {};
    char status[PUBSEC_STATUS_SIZE];
    return PubSecPostVideoSlice(0, &none, status);
}

u32 upload()
{
    return PubSecCurlUpLoadFile((url() + "?position=0").c_str(), place().file.c_str(), 0);
}

u32 transferState()
{
    TPubSecTransDataInf info = {};
    u32 code = 0;
    return PubSecGetTransDataInf(0, &info, url().c_str(), &code);
}

} // namespace torture
