/* SPDX-License-Identifier: Apache-2.0 */
/* The document of a log event. */
#include "tests/documents/document.h"

namespace
{

using namespace bare;

TEST(LogEvent, EveryMemberIsWritten)
{
    TPubSecLogInfo record = {};
    EXPECT_EQ(textOf(_PubSecLogInfoJson(&record)),
              R"([{"clientId":"","clientTime":0,"category":"","action":"","value":{"TargetID":""},"entryTime":0,)"
              R"("viidId":"","softVer":"","ip":"","test":""}])");
    put(record.achClientId, "c");
    record.qwClientTime = 1700000000123u;
    put(record.achCategory, "k");
    put(record.achAction, "a");
    put(record.achTargetID, "t");
    put(record.achViidId, "v");
    put(record.achSoftVer, "s");
    record.qwEntryTime = 4294967296u;
    put(record.achIp, "10.0.0.1");
    put(record.achTest, "Inv"); /* says nothing here */
    EXPECT_EQ(textOf(_PubSecLogInfoJson(&record)),
              R"([{"clientId":"c","clientTime":1700000000123,"category":"k","action":"a","value":{"TargetID":"t"},)"
              R"("entryTime":4294967296,"viidId":"v","softVer":"s","ip":"10.0.0.1","test":"Inv"}])");
    EXPECT_EQ(textOf(_PubSecLogInfoJson(nullptr)), kNone);
}

} // namespace
