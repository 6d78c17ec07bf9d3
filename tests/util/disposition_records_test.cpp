/* SPDX-License-Identifier: Apache-2.0 */
#include <string.h>

#include <pubsecstack/records.h>

#include "core/state.h"
#include "tests/util/object_records.h"

using host::Allocator;
using host::isError;
using host::state;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

constexpr char kCopy[] = "PubSecStackDup_TPubsecDispositionNotificationList";

class DispositionRecords : public host::Test
{
  protected:
    DispositionRecords()
    {
        memset(static_cast<void*>(m_objects), 0, sizeof(m_objects));
        m_source = {1, m_objects, 7};
        memset(static_cast<void*>(&m_copy), 0, sizeof(m_copy));
    }

    u32 copy()
    {
        return PubSecStackDup_TPubsecDispositionNotificationList(&m_source, &m_copy);
    }

    /* Notification 0 with one of each kind, each with one sub-image. */
    void fill()
    {
        TPubSecDispoNotifyObj& object = m_objects[0];
        object.dwPersonNum = 1;
        object.tPerson.nSubImageNum = 1;
        object.tPerson.ptSubImageList = subImages({"person"});
        object.dwMotorVehicleNum = 1;
        object.tMotorVehicle.nSubImageNum = 1;
        object.tMotorVehicle.ptSubImageList = subImages({"motor"});
        object.dwFaceNum = 1;
        object.tFace.nSubImageNum = 1;
        object.tFace.ptSubImageList = subImages({"face"});
        object.dwNonMotorVehicleNum = 1;
        object.tNonMotorVehicle.nSubImageNum = 1;
        object.tNonMotorVehicle.ptSubImageList = subImages({"non-motor"});
    }

    std::vector<std::string> releasers() const
    {
        std::vector<std::string> names;
        for (const host::Release& release : state.releases)
        {
            names.push_back(release.function);
        }
        return names;
    }

    TPubSecDispoNotifyObj m_objects[2];
    TPubsecDispositionNotificationList m_source;
    TPubsecDispositionNotificationList m_copy;
};

} // namespace

TEST_F(DispositionRecords, CopiesTheListAndWhatIsEmbedded)
{
    fill();
    strcpy(m_objects[0].achNotificationID, "notification 0");
    strcpy(m_objects[1].achTitle, "title 1");
    TPubSecDispositionListObj entries[1] = {};
    m_objects[0].dwDispositionNum = 1;
    m_objects[0].ptDispositionList = entries;
    m_source.wObjectNum = 2;
    TPubSecSubImageInfo* former = m_objects[0].tFace.ptSubImageList;

    ASSERT_EQ(copy(), 1u);
    EXPECT_EQ(m_copy.wObjectNum, 2);
    EXPECT_EQ(m_copy.dwObjectForm, 7u);
    ASSERT_NE(m_copy.aptDispoNotifyObj, nullptr);
    EXPECT_NE(m_copy.aptDispoNotifyObj, m_objects);
    EXPECT_EQ(m_source.aptDispoNotifyObj, m_objects);
    const TPubSecDispoNotifyObj& first = m_copy.aptDispoNotifyObj[0];
    EXPECT_STREQ(first.achNotificationID, "notification 0");
    EXPECT_STREQ(m_copy.aptDispoNotifyObj[1].achTitle, "title 1");
    EXPECT_EQ(first.dwDispositionNum, 1u);
    EXPECT_EQ(first.ptDispositionList, entries);

    EXPECT_STREQ(first.tPerson.ptSubImageList[0].pchData, "person");
    EXPECT_STREQ(first.tMotorVehicle.ptSubImageList[0].pchData, "motor");
    EXPECT_STREQ(first.tFace.ptSubImageList[0].pchData, "face");
    EXPECT_STREQ(first.tNonMotorVehicle.ptSubImageList[0].pchData, "non-motor");
    EXPECT_EQ(first.tFace.ptSubImageList, former);
    EXPECT_NE(m_objects[0].tFace.ptSubImageList, former);
    EXPECT_STREQ(m_objects[0].tFace.ptSubImageList[0].pchData, "face");
    EXPECT_NE(m_objects[0].tFace.ptSubImageList[0].pchData, first.tFace.ptSubImageList[0].pchData);
}

TEST_F(DispositionRecords, AsksThePoolForTheArrayFirst)
{
    fill();
    g_hMemPool = reinterpret_cast<TAppMemPoolHandle>(this);
    ASSERT_EQ(copy(), 1u);
    EXPECT_THAT(state.sizesAsked,
                ElementsAre(sizeof(TPubSecDispoNotifyObj), sizeof(TPubSecSubImageInfo), 7u, sizeof(TPubSecSubImageInfo),
                            5u, sizeof(TPubSecSubImageInfo), 6u, sizeof(TPubSecSubImageInfo), 10u));
    EXPECT_THAT(state.functionsAsked,
                ElementsAre(kCopy, "PubSecStackDup_TPubSecPersonnelObjInfo", "PubSecStackDup_TPubSecPersonnelObjInfo",
                            "PubSecStackDup_TPubSecFaceObjInfo", "PubSecStackDup_TPubSecFaceObjInfo",
                            "PubSecStackDup_TPubSecMotorVehicleObjInfo", "PubSecStackDup_TPubSecMotorVehicleObjInfo",
                            "PubSecStackDup_TPubSecNonMotorVehicleObjInfo",
                            "PubSecStackDup_TPubSecNonMotorVehicleObjInfo"));
    EXPECT_THAT(state.poolsAsked, testing::Each(g_hMemPool));
}

TEST_F(DispositionRecords, BothAreReleasedWithNothingLeftButTheArray)
{
    fill();
    ASSERT_EQ(copy(), 1u);
    EXPECT_EQ(PubSecStackFree_TPubsecDispositionNotificationList(1, &m_source), 1u);
    EXPECT_STREQ(m_copy.aptDispoNotifyObj[0].tFace.ptSubImageList[0].pchData, "face");
    EXPECT_EQ(PubSecStackFree_TPubsecDispositionNotificationList(1, &m_copy), 1u);
    EXPECT_THAT(state.blocks, ElementsAre(m_copy.aptDispoNotifyObj));
    EXPECT_EQ(m_copy.wObjectNum, 1);
}

TEST_F(DispositionRecords, WhatIsNotThereIsNotCopiedDeeply)
{
    fill();
    m_objects[0].dwPersonNum = 0;
    m_objects[0].dwMotorVehicleNum = 0;
    m_objects[0].dwNonMotorVehicleNum = 0;
    TPubSecSubImageInfo* person = m_objects[0].tPerson.ptSubImageList;
    ASSERT_EQ(copy(), 1u);
    EXPECT_EQ(m_objects[0].tPerson.ptSubImageList, person);
    EXPECT_EQ(m_copy.aptDispoNotifyObj[0].tPerson.ptSubImageList, person);
    EXPECT_THAT(state.sizesAsked,
                ElementsAre(sizeof(TPubSecDispoNotifyObj), sizeof(TPubSecSubImageInfo), 5u)); /* the face */
}

TEST_F(DispositionRecords, CountAboveOneCopiesAndReleasesTheOneRecord)
{
    fill();
    m_objects[0].dwPersonNum = 256;
    m_objects[0].dwMotorVehicleNum = 2;
    m_objects[0].dwFaceNum = 256;
    m_objects[0].dwNonMotorVehicleNum = 3;
    ASSERT_EQ(copy(), 1u);
    EXPECT_EQ(state.sizesAsked.size(), 9u);
    EXPECT_EQ(m_copy.aptDispoNotifyObj[0].dwPersonNum, 256u);
    EXPECT_EQ(PubSecStackFree_TPubsecDispositionNotificationList(1, &m_source), 1u);
    EXPECT_EQ(PubSecStackFree_TPubsecDispositionNotificationList(1, &m_copy), 1u);
    EXPECT_THAT(state.blocks, ElementsAre(m_copy.aptDispoNotifyObj));
}

TEST_F(DispositionRecords, EmbeddedRecordWithTooManySubImagesIsSharedAndTheRestCopied)
{
    fill();
    m_objects[0].tPerson.nSubImageNum = 257;
    TPubSecSubImageInfo* person = m_objects[0].tPerson.ptSubImageList;
    logAt(1);
    EXPECT_EQ(copy(), 1u);
    EXPECT_EQ(m_objects[0].tPerson.ptSubImageList, person);
    EXPECT_EQ(m_copy.aptDispoNotifyObj[0].tPerson.ptSubImageList, person);
    EXPECT_NE(m_copy.aptDispoNotifyObj[0].tFace.ptSubImageList, m_objects[0].tFace.ptSubImageList);
    EXPECT_THAT(state.lines, ElementsAre(isError("PubSecStackDup_TPubSecPersonnelObjInfo", "Input param failed.")));
}

TEST_F(DispositionRecords, RefusedArguments)
{
    const auto refused = [this] {
        state.lines.clear();
        EXPECT_EQ(copy(), 0u);
        EXPECT_THAT(state.lines, ElementsAre(isError(kCopy, "Input param failed.")));
        EXPECT_EQ(m_copy.aptDispoNotifyObj, nullptr);
        EXPECT_EQ(m_copy.dwObjectForm, 0u);
    };
    logAt(1);
    m_source.wObjectNum = 0;
    refused();
    m_source.wObjectNum = 257;
    refused();
    m_source.wObjectNum = 65535;
    refused();
    m_source = {1, nullptr, 7};
    refused();

    m_source.aptDispoNotifyObj = m_objects;
    state.lines.clear();
    EXPECT_EQ(PubSecStackDup_TPubsecDispositionNotificationList(nullptr, &m_copy), 0u);
    EXPECT_EQ(PubSecStackDup_TPubsecDispositionNotificationList(&m_source, nullptr), 0u);
    EXPECT_EQ(PubSecStackDup_TPubsecDispositionNotificationList(nullptr, nullptr), 0u);
    EXPECT_THAT(state.lines, testing::SizeIs(3));
    EXPECT_THAT(state.lines, testing::Each(isError(kCopy, "Input param failed.")));
    EXPECT_THAT(state.sizesAsked, IsEmpty());

    logAt(0);
    state.lines.clear();
    EXPECT_EQ(PubSecStackDup_TPubsecDispositionNotificationList(nullptr, &m_copy), 0u);
    EXPECT_THAT(state.lines, IsEmpty());
}

TEST_F(DispositionRecords, CountOfAnEmbeddedRecordBeyondTheLimitIsRefused)
{
    fill();
    logAt(1);
    m_source.wObjectNum = 2;
    for (u32 TPubSecDispoNotifyObj::*count :
         {&TPubSecDispoNotifyObj::dwPersonNum, &TPubSecDispoNotifyObj::dwMotorVehicleNum,
          &TPubSecDispoNotifyObj::dwFaceNum, &TPubSecDispoNotifyObj::dwNonMotorVehicleNum})
    {
        for (const u32 value : {257u, 0xFFFFFFFFu})
        {
            /* in the last notification, so that all are looked at before anything is done */
            m_objects[1].*count = value;
            state.lines.clear();
            EXPECT_EQ(copy(), 0u);
            EXPECT_THAT(state.lines, ElementsAre(isError(kCopy, "Input object num is overflow.")));
            EXPECT_EQ(m_copy.aptDispoNotifyObj, nullptr);
        }
        m_objects[1].*count = 0;
    }
    EXPECT_THAT(state.sizesAsked, IsEmpty());
}

TEST_F(DispositionRecords, NoMemoryForTheArray)
{
    fill();
    logAt(1);
    state.poolFailsAt = 0;
    TPubSecSubImageInfo* former = m_objects[0].tFace.ptSubImageList;
    EXPECT_EQ(copy(), 0u);
    EXPECT_THAT(state.lines, ElementsAre(isError(kCopy, "malloc aptDispoNotifyObj failed.")));
    EXPECT_EQ(m_copy.aptDispoNotifyObj, nullptr);
    EXPECT_EQ(m_copy.wObjectNum, 1);
    EXPECT_EQ(m_copy.dwObjectForm, 7u);
    EXPECT_EQ(m_objects[0].tFace.ptSubImageList, former);
}

TEST_F(DispositionRecords, MostNotifications)
{
    std::vector<TPubSecDispoNotifyObj> objects(256);
    memset(static_cast<void*>(objects.data()), 0, objects.size() * sizeof(objects[0]));
    strcpy(objects[255].achTitle, "last");
    m_source = {256, objects.data(), 0};
    EXPECT_EQ(copy(), 1u);
    EXPECT_STREQ(m_copy.aptDispoNotifyObj[255].achTitle, "last");
}

TEST_F(DispositionRecords, ReleaseInOrderByMode)
{
    const struct
    {
        u32 mode;
        Allocator allocator;
    } modes[] = {{1, Allocator::pool}, {2, Allocator::service}, {0xFFFFFFFF, Allocator::pool}};
    for (const auto& mode : modes)
    {
        fill();
        state.releases.clear();
        EXPECT_EQ(PubSecStackFree_TPubsecDispositionNotificationList(mode.mode, &m_source), 1u);
        EXPECT_THAT(releasers(),
                    ElementsAre("PubSecStackFree_TPubSecPersonnelObjInfo", "PubSecStackFree_TPubSecPersonnelObjInfo",
                                "PubSecStackFree_TPubSecFaceObjInfo", "PubSecStackFree_TPubSecFaceObjInfo",
                                "PubSecStackFree_TPubSecMotorVehicleObjInfo",
                                "PubSecStackFree_TPubSecMotorVehicleObjInfo",
                                "PubSecStackFree_TPubSecNonMotorVehicleObjInfo",
                                "PubSecStackFree_TPubSecNonMotorVehicleObjInfo"));
        for (const host::Release& release : state.releases)
        {
            EXPECT_EQ(release.allocator, mode.allocator);
        }
        EXPECT_THAT(state.blocks, IsEmpty());
        EXPECT_EQ(m_source.aptDispoNotifyObj, m_objects);
    }
    fill();
    EXPECT_EQ(PubSecStackFree_TPubsecDispositionNotificationList(0, &m_source), 1u);
    EXPECT_EQ(state.releases.back().allocator, Allocator::heap);
    EXPECT_THAT(state.blocks, IsEmpty());
}

TEST_F(DispositionRecords, ReleaseOfEveryNotificationAndOnlyOfWhatIsThere)
{
    m_source.wObjectNum = 2;
    m_objects[1].dwFaceNum = 1;
    m_objects[1].tFace.nSubImageNum = 1;
    m_objects[1].tFace.ptSubImageList = subImages({"face"});
    m_objects[1].tPerson.nSubImageNum = 1;
    m_objects[1].tPerson.ptSubImageList = subImages({"-"});
    void* kept = m_objects[1].tPerson.ptSubImageList;
    EXPECT_EQ(PubSecStackFree_TPubsecDispositionNotificationList(1, &m_source), 1u);
    EXPECT_THAT(state.blocks, ElementsAre(kept));
}

TEST_F(DispositionRecords, ReleaseOfNothing)
{
    EXPECT_EQ(PubSecStackFree_TPubsecDispositionNotificationList(1, nullptr), 0u);
    m_source = {5, nullptr, 0};
    EXPECT_EQ(PubSecStackFree_TPubsecDispositionNotificationList(1, &m_source), 1u);
    EXPECT_THAT(state.releases, IsEmpty());
}
