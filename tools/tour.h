/* SPDX-License-Identifier: Apache-2.0 */
/* One of everything that the library can report, so that a server can be tried with it. */
#pragma once

#include <string>

#include <pubsecstack/pubsecstack.h>

#include "device_records.h"
#include "report.h"

namespace device
{

class Tour
{
  public:
    Tour(Report& report, const Options& options, Picture& picture, const Identity& identity);

    /* Posts with the platform registered; each row of the report is one request. */
    void run();

  private:
    std::string contentId(u32 kind, u64 serial) const;
    std::string objectId(u64 serial) const;
    void row(const char* operation, const std::string& request, u32 code, const std::string& remark = {});

    void objects();
    void wholePicture();
    void slice();
    void file();
    void upload(const std::string& path, const std::string& name, u32 held);
    void violation();
    void accessRecord();
    void sensors();
    void disposition();
    void logEvent();

    TPubSecPersonnelObjInfo person() const;
    TPubSecFaceObjInfo face();
    TPubSecThingObjInfo thing(u64 serial, const char* name, const Box& box) const;
    TPubSecMotorVehicleObjInfo motorVehicle() const;
    TPubSecNonMotorVehicleObjInfo nonMotorVehicle() const;
    TPubSecSceneObjInfo scene() const;

    Report& m_report;
    const Options& m_options;
    Picture& m_picture;
    const Identity& m_identity;
    TPubSecSubImageInfo m_subImage;
};

} // namespace device
