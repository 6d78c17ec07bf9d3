/* SPDX-License-Identifier: Apache-2.0 */
/* A device in a program: registers, is kept alive, takes the server's time, reports a picture and its face, leaves. */
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include <pubsecplatform_posix.h>
#include <pubsecstack/pubsecstack.h>

#include "device_options.h"
#include "device_records.h"
#include "device_session.h"
#include "report.h"
#include "tour.h"

namespace device
{

namespace
{

void askTime(Report& report)
{
    TPubSecSystemTime time = {};
    const u32 result = PubSecGetSystemTimeMsg(c_platform, &time);
    report.row("ask time", "GET /VIID/System/Time", result,
               result == PUBSEC_OK ? std::string(": ") + time.achLocalTime + ' ' + time.achTimeZone : std::string());
}

void postPicture(Report& report, const Options& options, Picture& picture, const Identity& identity)
{
    TPubSecImageObjInfo image = imageRecord(options, picture, identity);
    TPubSecIntelliPicObj gathered = {};
    gathered.ptImageInfo = &image;
    gathered.nImageNum = 1;
    gathered.pchData = picture.base64.c_str();
    char status[PUBSEC_STATUS_SIZE] = {};
    const u32 imageResult = PubSecPostImage(c_platform, &gathered, status);
    report.row("post image", "POST /VIID/Images", imageResult,
               status[0] != '\0' ? std::string(", the server says \"") + status + '"' : std::string());

    TPubSecSubImageInfo subImage = subImageRecord(options, picture, identity);
    const TPubSecFaceObjInfo face = faceRecord(options, identity, subImage);
    report.row("post face", "POST /VIID/Faces", PubSecPostImageFace(c_platform, &face, 1), "");
}

std::string clockText()
{
    TNvrSysTime now;
    PosixPlatformDeviceTime(&now);
    char text[64];
    std::snprintf(text, sizeof(text), "%04u-%02u-%02u %02u:%02u:%02u", now.wYear, now.byMonth, now.byDay, now.byHour,
                  now.byMinute, now.bySecond);
    return text;
}

void live(Report& report, const Options& options, Picture& picture)
{
    Session session(options);
    const std::string powerOn = clockText();
    session.waitRegistered();
    report.row("register", "POST /VIID/System/Register", true, "registered, says the status callback");
    const std::string code = session.waitKeepalive();
    report.row("keepalive", "POST /VIID/System/Keepalive", code == "0", "answered with status code " + code);
    session.waitClock();
    report.row("set clock", "GET /VIID/System/Time", true, "from " + powerOn + " to " + clockText());
    askTime(report);
    const Identity identity = makeIdentity(options);
    postPicture(report, options, picture, identity);
    if (options.tour)
    {
        Tour(report, options, picture, identity).run();
    }
    session.leave();
    report.row("unregister", "POST /VIID/System/UnRegister", true, "the server was told");
    report.line("\n  image ID %s\n  face ID  %s", identity.imageId, identity.faceId);
}

int run(const Options& options)
{
    Picture picture = loadPicture(options);
    Report report(options.rowsFile);
    report.line("device %s at %s", options.deviceId.c_str(), options.serverUrl().c_str());
    report.line("picture %s: %dx%d, %u bytes, MD5 %s, %zu characters of base64", picture.path.c_str(),
                picture.size.width, picture.size.height, picture.bytes, picture.hash, picture.base64.size());
    report.line("\n  %-12s %-36s %s", "operation", "request", "result");
    live(report, options, picture);
    if (report.failures() > 0)
    {
        throw std::runtime_error(std::to_string(report.failures()) + " of the requests failed, see above");
    }
    return Good;
}

} // namespace

} // namespace device

int main(int count, char** arguments)
{
    return device::runProgram("pubsec-device", count, arguments, device::run);
}
