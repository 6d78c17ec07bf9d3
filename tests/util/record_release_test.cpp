/* SPDX-License-Identifier: Apache-2.0 */
#include <pubsecstack/records.h>

#include "core/state.h"
#include "tests/util/object_records.h"

using host::Allocator;
using host::Release;
using host::state;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

struct Mode
{
    s32 mode;
    Allocator allocator;
};

const Mode kModes[] = {
    {0, Allocator::heap}, {1, Allocator::pool},  {2, Allocator::service},
    {3, Allocator::pool}, {-1, Allocator::pool}, {-2147483647 - 1, Allocator::pool},
};

/* The heap is not told who releases. */
Release released(Allocator allocator, void* block, const char* function)
{
    return {allocator, block, allocator == Allocator::heap ? "" : function};
}

template <typename Kind> class ObjectRelease : public host::Test
{
};

class RecordRelease : public host::Test
{
};

TPubSecFeatureInfo* feature(char* data)
{
    auto* taken = static_cast<TPubSecFeatureInfo*>(host::block(sizeof(TPubSecFeatureInfo)));
    taken->pchFeatureData = data;
    return taken;
}

template <typename Record> Record* records(size_t count)
{
    return static_cast<Record*>(host::block(count * sizeof(Record)));
}

} // namespace

TYPED_TEST_SUITE(ObjectRelease, ObjectRecords, KindName);

TYPED_TEST(ObjectRelease, TextsThenArrayByMode)
{
    for (const Mode& mode : kModes)
    {
        typename TypeParam::Record record = {};
        record.nSubImageNum = 2;
        record.ptSubImageList = subImages({"first", "second"});
        void* list = record.ptSubImageList;
        void* first = record.ptSubImageList[0].pchData;
        void* second = record.ptSubImageList[1].pchData;

        state.releases.clear();
        EXPECT_EQ(TypeParam::release(mode.mode, &record), 1u);
        EXPECT_THAT(state.releases, ElementsAre(released(mode.allocator, first, TypeParam::releaseName),
                                                released(mode.allocator, second, TypeParam::releaseName),
                                                released(mode.allocator, list, TypeParam::releaseName)));
        EXPECT_EQ(record.ptSubImageList, nullptr);
        EXPECT_EQ(record.nSubImageNum, 2);
        EXPECT_THAT(state.blocks, IsEmpty());

        state.releases.clear();
        EXPECT_EQ(TypeParam::release(mode.mode, &record), 1u);
        EXPECT_THAT(state.releases, IsEmpty());
    }
}

TYPED_TEST(ObjectRelease, NullRecordIsRefused)
{
    for (const Mode& mode : kModes)
    {
        EXPECT_EQ(TypeParam::release(mode.mode, nullptr), 0u);
    }
    EXPECT_THAT(state.releases, IsEmpty());
}

TYPED_TEST(ObjectRelease, NullTextIsSkipped)
{
    typename TypeParam::Record record = {};
    record.nSubImageNum = 2;
    record.ptSubImageList = subImages({"-", "second"});
    void* list = record.ptSubImageList;
    void* second = record.ptSubImageList[1].pchData;
    EXPECT_EQ(TypeParam::release(1, &record), 1u);
    EXPECT_THAT(state.releases, ElementsAre(Release{Allocator::pool, second, TypeParam::releaseName},
                                            Release{Allocator::pool, list, TypeParam::releaseName}));
}

TYPED_TEST(ObjectRelease, WithoutEntriesTheArrayAloneIsReleased)
{
    for (const s32 count : {0, -1, -2147483647 - 1})
    {
        typename TypeParam::Record record = {};
        record.nSubImageNum = count;
        record.ptSubImageList = subImages({"-"});
        void* list = record.ptSubImageList;
        state.releases.clear();
        EXPECT_EQ(TypeParam::release(2, &record), 1u);
        EXPECT_THAT(state.releases, ElementsAre(Release{Allocator::service, list, TypeParam::releaseName}));
        EXPECT_EQ(record.ptSubImageList, nullptr);
        EXPECT_EQ(record.nSubImageNum, count);
    }
}

TYPED_TEST(ObjectRelease, FeatureDataOfASubImageStays)
{
    typename TypeParam::Record record = {};
    record.nSubImageNum = 1;
    record.ptSubImageList = subImages({"data"});
    char* vector = host::text("vector");
    record.ptSubImageList[0].tFeatureInfo.pchFeatureData = vector;
    EXPECT_EQ(TypeParam::release(1, &record), 1u);
    EXPECT_THAT(state.blocks, ElementsAre(vector));
}

TEST_F(RecordRelease, SliceTextsThenArrayByMode)
{
    const char function[] = "PubSecStackFree_TPubSecVideoSliceInfo";
    for (const Mode& mode : kModes)
    {
        TPubSecVideoSliceInfo slice = {};
        slice.dwSubImageNum = 2;
        slice.ptSubImageList = subImages({"first", "second"});
        void* list = slice.ptSubImageList;
        void* first = slice.ptSubImageList[0].pchData;
        void* second = slice.ptSubImageList[1].pchData;

        state.releases.clear();
        EXPECT_EQ(PubSecStackFree_TPubSecVideoSliceInfo(mode.mode, &slice), 1u);
        EXPECT_THAT(state.releases,
                    ElementsAre(released(mode.allocator, first, function), released(mode.allocator, second, function),
                                released(mode.allocator, list, function)));
        EXPECT_EQ(slice.ptSubImageList, nullptr);
        EXPECT_EQ(slice.dwSubImageNum, 2u);
    }
}

TEST_F(RecordRelease, SlicePassesANullTextOn)
{
    const char function[] = "PubSecStackFree_TPubSecVideoSliceInfo";
    for (const Mode& mode : {Mode{1, Allocator::pool}, Mode{2, Allocator::service}})
    {
        TPubSecVideoSliceInfo slice = {};
        slice.dwSubImageNum = 1;
        slice.ptSubImageList = subImages({"-"});
        void* list = slice.ptSubImageList;
        state.releases.clear();
        EXPECT_EQ(PubSecStackFree_TPubSecVideoSliceInfo(mode.mode, &slice), 1u);
        EXPECT_THAT(state.releases,
                    ElementsAre(Release{mode.allocator, nullptr, function}, Release{mode.allocator, list, function}));
    }
    TPubSecVideoSliceInfo slice = {};
    slice.dwSubImageNum = 1;
    slice.ptSubImageList = subImages({"-"});
    EXPECT_EQ(PubSecStackFree_TPubSecVideoSliceInfo(0, &slice), 1u);
    EXPECT_THAT(state.blocks, IsEmpty());
}

TEST_F(RecordRelease, SliceRefusalsAndEmptyOnes)
{
    TPubSecVideoSliceInfo slice = {};
    slice.dwSubImageNum = 5;
    EXPECT_EQ(PubSecStackFree_TPubSecVideoSliceInfo(1, nullptr), 0u);
    EXPECT_EQ(PubSecStackFree_TPubSecVideoSliceInfo(1, &slice), 1u);
    EXPECT_THAT(state.releases, IsEmpty());

    for (const u32 count : {0u, 0x80000000u, 0xFFFFFFFFu})
    {
        slice.dwSubImageNum = count;
        slice.ptSubImageList = subImages({"-"});
        EXPECT_EQ(PubSecStackFree_TPubSecVideoSliceInfo(1, &slice), 1u);
        EXPECT_EQ(slice.ptSubImageList, nullptr);
        EXPECT_THAT(state.blocks, IsEmpty()) << count;
    }
}

TEST_F(RecordRelease, ImageFeatureDataThenFeatureByMode)
{
    const char function[] = "PubSecStackFree_TPubSecImageObjInfo";
    for (const Mode& mode : kModes)
    {
        TPubSecImageObjInfo image = {};
        char* data = host::text("vector");
        image.ptFeatureInfo = feature(data);
        void* record = image.ptFeatureInfo;
        state.releases.clear();
        EXPECT_EQ(PubSecStackFree_TPubSecImageObjInfo(mode.mode, &image), 1u);
        EXPECT_THAT(state.releases,
                    ElementsAre(released(mode.allocator, data, function), released(mode.allocator, record, function)));
        EXPECT_EQ(image.ptFeatureInfo, nullptr);
    }
}

TEST_F(RecordRelease, ImageWithoutFeatureOrData)
{
    const char function[] = "PubSecStackFree_TPubSecImageObjInfo";
    TPubSecImageObjInfo image = {};
    EXPECT_EQ(PubSecStackFree_TPubSecImageObjInfo(1, nullptr), 0u);
    EXPECT_EQ(PubSecStackFree_TPubSecImageObjInfo(1, &image), 1u);
    EXPECT_THAT(state.releases, IsEmpty());

    image.ptFeatureInfo = feature(nullptr);
    void* record = image.ptFeatureInfo;
    EXPECT_EQ(PubSecStackFree_TPubSecImageObjInfo(1, &image), 1u);
    EXPECT_THAT(state.releases,
                ElementsAre(Release{Allocator::pool, nullptr, function}, Release{Allocator::pool, record, function}));
}

TEST_F(RecordRelease, PictureReleasesEverythingItOwnsInOrder)
{
    const char function[] = "PubSecStackFree_TPubSecIntelliPicObj";
    for (const Mode& mode : kModes)
    {
        TPubSecIntelliPicObj picture = {};
        picture.nImageNum = 1;
        picture.ptImageInfo = records<TPubSecImageObjInfo>(1);
        char* vector = host::text("vector");
        picture.ptImageInfo[0].ptFeatureInfo = feature(vector);
        picture.nMotorVehicleNum = 1;
        picture.ptMotorVehicle = records<TPubSecMotorVehicleObjInfo>(1);
        picture.ptMotorVehicle[0].nSubImageNum = 1;
        picture.ptMotorVehicle[0].ptSubImageList = subImages({"vehicle"});
        picture.nFaceNum = 2;
        picture.ptFace = records<TPubSecFaceObjInfo>(2);
        picture.ptFace[0].nSubImageNum = 1;
        picture.ptFace[0].ptSubImageList = subImages({"face 0"});
        picture.ptFace[1].nSubImageNum = 1;
        picture.ptFace[1].ptSubImageList = subImages({"face 1"});
        picture.nPersonnelNum = 1;
        picture.ptPersonnel = records<TPubSecPersonnelObjInfo>(1);
        picture.nNonMotorVehicleNum = 1;
        picture.ptNonMotorVehicle = records<TPubSecNonMotorVehicleObjInfo>(1);
        picture.ptNonMotorVehicle[0].nSubImageNum = 1;
        picture.ptNonMotorVehicle[0].ptSubImageList = subImages({"-"});

        const auto by = [&mode](void* block, const char* name) { return released(mode.allocator, block, name); };
        const std::vector<Release> expected = {
            by(vector, "PubSecStackFree_TPubSecImageObjInfo"),
            by(picture.ptImageInfo[0].ptFeatureInfo, "PubSecStackFree_TPubSecImageObjInfo"),
            by(picture.ptImageInfo, function),
            by(picture.ptMotorVehicle[0].ptSubImageList[0].pchData, "PubSecStackFree_TPubSecMotorVehicleObjInfo"),
            by(picture.ptMotorVehicle[0].ptSubImageList, "PubSecStackFree_TPubSecMotorVehicleObjInfo"),
            by(picture.ptMotorVehicle, function),
            by(picture.ptFace[0].ptSubImageList[0].pchData, "PubSecStackFree_TPubSecFaceObjInfo"),
            by(picture.ptFace[0].ptSubImageList, "PubSecStackFree_TPubSecFaceObjInfo"),
            by(picture.ptFace[1].ptSubImageList[0].pchData, "PubSecStackFree_TPubSecFaceObjInfo"),
            by(picture.ptFace[1].ptSubImageList, "PubSecStackFree_TPubSecFaceObjInfo"),
            by(picture.ptFace, function),
            by(picture.ptPersonnel, function),
            by(picture.ptNonMotorVehicle[0].ptSubImageList, "PubSecStackFree_TPubSecNonMotorVehicleObjInfo"),
            by(picture.ptNonMotorVehicle, function),
        };
        state.releases.clear();
        EXPECT_EQ(PubSecStackFree_TPubSecIntelliPicObj(mode.mode, &picture), 1u);
        EXPECT_EQ(state.releases, expected);
        EXPECT_THAT(state.blocks, IsEmpty());
        EXPECT_EQ(picture.ptImageInfo, nullptr);
        EXPECT_EQ(picture.ptMotorVehicle, nullptr);
        EXPECT_EQ(picture.ptFace, nullptr);
        EXPECT_EQ(picture.ptPersonnel, nullptr);
        EXPECT_EQ(picture.ptNonMotorVehicle, nullptr);
        EXPECT_EQ(picture.nFaceNum, 2);

        state.releases.clear();
        EXPECT_EQ(PubSecStackFree_TPubSecIntelliPicObj(mode.mode, &picture), 1u);
        EXPECT_THAT(state.releases, IsEmpty());
    }
}

TEST_F(RecordRelease, PicturePointersAreReleasedEachOnItsOwn)
{
    EXPECT_EQ(PubSecStackFree_TPubSecIntelliPicObj(1, nullptr), 0u);

    TPubSecIntelliPicObj picture = {};
    picture.nImageNum = 3;
    picture.nFaceNum = 3;
    EXPECT_EQ(PubSecStackFree_TPubSecIntelliPicObj(1, &picture), 1u);
    EXPECT_THAT(state.releases, IsEmpty());

    picture.nPersonnelNum = 1;
    picture.ptPersonnel = records<TPubSecPersonnelObjInfo>(1);
    EXPECT_EQ(PubSecStackFree_TPubSecIntelliPicObj(1, &picture), 1u);
    EXPECT_THAT(state.blocks, IsEmpty());
    EXPECT_EQ(picture.ptPersonnel, nullptr);
}

TEST_F(RecordRelease, PictureWithNegativeCountsLosesItsArraysOnly)
{
    TPubSecIntelliPicObj picture = {};
    picture.nImageNum = -1;
    picture.nFaceNum = -1;
    picture.ptImageInfo = records<TPubSecImageObjInfo>(1);
    picture.ptFace = records<TPubSecFaceObjInfo>(1);
    picture.ptFace[0].nSubImageNum = 1;
    picture.ptFace[0].ptSubImageList = subImages({"-"});
    void* kept = picture.ptFace[0].ptSubImageList;
    EXPECT_EQ(PubSecStackFree_TPubSecIntelliPicObj(1, &picture), 1u);
    EXPECT_THAT(state.blocks, ElementsAre(kept));
}

/* In the first of several pictures nImageNum is the number of pictures, and the block holds one image record. */
TEST_F(RecordRelease, PictureReleasesOneImageRecordWhateverItsCount)
{
    for (const s32 count : {0, 1, 1000000})
    {
        TPubSecIntelliPicObj picture = {};
        picture.nImageNum = count;
        picture.ptImageInfo = records<TPubSecImageObjInfo>(1);
        picture.ptImageInfo[0].ptFeatureInfo = feature(host::text("vector"));
        EXPECT_EQ(PubSecStackFree_TPubSecIntelliPicObj(1, &picture), 1u);
        EXPECT_THAT(state.blocks, IsEmpty()) << count;
    }
}

TEST_F(RecordRelease, PictureLeavesTheHostsOwnAlone)
{
    TPubSecIntelliPicObj picture = {};
    picture.nThingNum = 1;
    picture.ptThing = records<TPubSecThingObjInfo>(1);
    picture.nSceneNum = 1;
    picture.ptScene = records<TPubSecSceneObjInfo>(1);
    picture.ptAccessRecord = records<TPubSecAccessRecordInfo>(1);
    picture.pchData = host::text("picture");
    EXPECT_EQ(PubSecStackFree_TPubSecIntelliPicObj(1, &picture), 1u);
    EXPECT_THAT(state.releases, IsEmpty());
    EXPECT_NE(picture.ptThing, nullptr);
    EXPECT_STREQ(picture.pchData, "picture");
}

TEST_F(RecordRelease, SliceListOfOne)
{
    for (const Mode& mode : kModes)
    {
        TPubsecVideoSliceList list = {1, records<TPubSecVideoSliceInfo>(1)};
        list.ptVideoSlice[0].dwSubImageNum = 1;
        list.ptVideoSlice[0].ptSubImageList = subImages({"data"});
        void* text = list.ptVideoSlice[0].ptSubImageList[0].pchData;
        void* images = list.ptVideoSlice[0].ptSubImageList;
        void* slices = list.ptVideoSlice;
        state.releases.clear();
        EXPECT_EQ(PubSecStackFree_TPubsecVideoSliceList(mode.mode, &list), 1u);
        EXPECT_THAT(state.releases,
                    ElementsAre(released(mode.allocator, text, "PubSecStackFree_TPubSecVideoSliceInfo"),
                                released(mode.allocator, images, "PubSecStackFree_TPubSecVideoSliceInfo"),
                                released(mode.allocator, slices, "PubSecStackFree_TPubsecVideoSliceList")));
        EXPECT_EQ(list.ptVideoSlice, nullptr);
        EXPECT_EQ(list.dwVideoSliceNum, 1u);
    }
}

TEST_F(RecordRelease, SliceListOfSeveralEndsWithTheFirst)
{
    TPubsecVideoSliceList list = {2, records<TPubSecVideoSliceInfo>(2)};
    for (u32 i = 0; i < 2; i++)
    {
        list.ptVideoSlice[i].dwSubImageNum = 1;
        list.ptVideoSlice[i].ptSubImageList = subImages({"-"});
    }
    void* second = list.ptVideoSlice[1].ptSubImageList;
    EXPECT_EQ(PubSecStackFree_TPubsecVideoSliceList(1, &list), 1u);
    EXPECT_THAT(state.blocks, ElementsAre(second));
    EXPECT_EQ(list.ptVideoSlice, nullptr);
    EXPECT_EQ(list.dwVideoSliceNum, 2u);
}

TEST_F(RecordRelease, SliceListOfSeveralReleasedOneByOneFirst)
{
    TPubsecVideoSliceList list = {2, records<TPubSecVideoSliceInfo>(2)};
    for (u32 i = 0; i < 2; i++)
    {
        list.ptVideoSlice[i].dwSubImageNum = 1;
        list.ptVideoSlice[i].ptSubImageList = subImages({"data"});
        EXPECT_EQ(PubSecStackFree_TPubSecVideoSliceInfo(1, &list.ptVideoSlice[i]), 1u);
    }
    EXPECT_EQ(PubSecStackFree_TPubsecVideoSliceList(1, &list), 1u);
    EXPECT_THAT(state.blocks, IsEmpty());
}

TEST_F(RecordRelease, SliceListRefusalsAndEmptyOnes)
{
    TPubsecVideoSliceList list = {3, nullptr};
    EXPECT_EQ(PubSecStackFree_TPubsecVideoSliceList(1, nullptr), 0u);
    EXPECT_EQ(PubSecStackFree_TPubsecVideoSliceList(1, &list), 1u);

    list = {0, records<TPubSecVideoSliceInfo>(1)};
    EXPECT_EQ(PubSecStackFree_TPubsecVideoSliceList(1, &list), 1u);
    EXPECT_NE(list.ptVideoSlice, nullptr);
    EXPECT_THAT(state.releases, IsEmpty());
}

/* The fake pool refuses a handle other than the library's own. */
TEST_F(RecordRelease, PoolIsTheLibrarysOwn)
{
    g_hMemPool = reinterpret_cast<TAppMemPoolHandle>(this);
    TPubSecFaceObjInfo face = {};
    face.nSubImageNum = 1;
    face.ptSubImageList = subImages({"data"});
    EXPECT_EQ(PubSecStackFree_TPubSecFaceObjInfo(1, &face), 1u);
    EXPECT_EQ(state.releases.size(), 2u);
}
