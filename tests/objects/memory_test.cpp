/* SPDX-License-Identifier: Apache-2.0 */
/* Encoders only read records, and live with what memory there is. */
#include <cstdlib>
#include <cstring>
#include <string>

#include <cjson/cJSON.h>
#include <gtest/gtest.h>

#include "objects/encoders.h"
#include "tests/objects/record_case.h"

namespace
{

using records::Case;
using records::Record;
using records::State;

int g_untilFailure; /* allocations that succeed before one fails; negative: none fails */
int g_outstanding;

void* CountedMalloc(size_t size)
{
    if (g_untilFailure-- == 0)
    {
        return nullptr;
    }
    g_outstanding++;
    return malloc(size);
}

void CountedFree(void* block)
{
    g_outstanding -= block != nullptr ? 1 : 0;
    free(block);
}

int Nodes(const cJSON* object)
{
    int nodes = 0;
    const cJSON* child = nullptr;
    cJSON_ArrayForEach(child, object)
    {
        nodes += 1 + Nodes(child);
    }
    return nodes;
}

/* The number of members written into an object when the given allocation fails. */
int NodesWith(int untilFailure, const TPubSecSubImageInfo& image)
{
    cJSON_Hooks hooks = {CountedMalloc, CountedFree};
    cJSON_InitHooks(&hooks);
    g_outstanding = 0;
    g_untilFailure = -1;
    cJSON* object = cJSON_CreateObject();
    g_untilFailure = untilFailure;
    _PubSecSubImgObjJson(object, &image);
    g_untilFailure = -1;
    const int nodes = Nodes(object);
    cJSON_Delete(object);
    cJSON_InitHooks(nullptr);
    return nodes;
}

TEST(Memory, AMemberThatCannotBeMadeIsLeftOut)
{
    char data[] = "QUJD";
    TPubSecSubImageInfo image = {};
    memset(image.achDeviceID, 'd', sizeof(image.achDeviceID)); /* has no terminator */
    image.pchData = data;
    image.wFeatureValid = 1;
    image.tFeatureInfo.pchFeatureData = data;

    /* device, type, format, width, height, data, feature with three members of its own */
    constexpr int all = 10;
    /* and copies of device, type, format, data and what the feature has */
    constexpr int allocations = all + 7;
    ASSERT_EQ(NodesWith(-1, image), all);
    for (int failing = 0; failing < allocations; failing++)
    {
        SCOPED_TRACE(failing);
        const bool isFeature = failing == 6;
        EXPECT_EQ(NodesWith(failing, image), isFeature ? all - 4 : all - 1);
        EXPECT_EQ(g_outstanding, 0);
    }
    EXPECT_EQ(NodesWith(allocations, image), all);
}

class UnchangedTest : public testing::TestWithParam<Case>
{
};

TEST_P(UnchangedTest, EncodersOnlyRead)
{
    Record record(GetParam());
    record.Background(0xA5);
    record.PutAll(State::full);
    const std::string before(&record.As<char>(), GetParam().size);
    record.Encoded();
    EXPECT_EQ(memcmp(before.data(), &record.As<char>(), before.size()), 0);
}

INSTANTIATE_TEST_SUITE_P(Records, UnchangedTest, testing::ValuesIn(records::AllCases()),
                         [](const testing::TestParamInfo<Case>& parameter) { return parameter.param.name; });

/* The object is the caller's and may be printed when the record, and what it points to, is gone. */
TEST(Memory, TheTextsAreTheObjectsOwn)
{
    TPubSecSubImageInfo image = {};
    char data[] = "Zm9v";
    const auto encode = [&](cJSON* object) {
        std::memset(&image, 0, sizeof(image));
        std::memcpy(image.achImageID, "34020000001190000001", 20);
        image.pchData = data;
        _PubSecSubImgObjJson(object, &image);
    };
    const std::string kept = records::Printed(encode);
    EXPECT_NE(kept.find("\"ImageID\":\"34020000001190000001\""), std::string::npos);
    EXPECT_NE(kept.find("\"Data\":\"Zm9v\""), std::string::npos);
    EXPECT_EQ(records::Printed([&](cJSON* object) {
                  encode(object);
                  std::memset(&image, 'x', sizeof(image));
                  std::memset(data, 'x', sizeof(data) - 1);
              }),
              kept);
}

TEST(Memory, NothingIsAddedWithoutARecordOrAnObject)
{
    EXPECT_EQ(records::Printed([](cJSON* object) { _PubSecFaceObjListObjJson(object, nullptr); }), "{}");
    const TPubSecFaceObjInfo face = {};
    _PubSecFaceObjListObjJson(nullptr, &face);
}

} // namespace
