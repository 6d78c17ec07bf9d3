/* SPDX-License-Identifier: Apache-2.0 */
#include <string.h>

#include <pubsecstack/records.h>

#include "core/state.h"
#include "tests/util/object_records.h"

using host::isError;
using host::state;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace
{

template <typename Record> std::string bytesOf(const Record& record)
{
    return std::string(reinterpret_cast<const char*>(&record), sizeof(record));
}

template <typename Kind> class ObjectCopy : public host::Test
{
  protected:
    using Record = typename Kind::Record;

    ObjectCopy()
    {
        m_source.nSubImageNum = 2;
        m_source.ptSubImageList = subImages({"first", "second one"});
        m_former = m_source.ptSubImageList;
        m_firstText = m_former[0].pchData;
        m_secondText = m_former[1].pchData;
    }

    u32 copy()
    {
        return Kind::copy(&m_source, &m_copy);
    }

    Record m_source = {};
    Record m_copy = {};
    TPubSecSubImageInfo* m_former;
    char* m_firstText;
    char* m_secondText;
};

} // namespace

TYPED_TEST_SUITE(ObjectCopy, ObjectRecords, KindName);

TYPED_TEST(ObjectCopy, BlocksChangeHands)
{
    ASSERT_EQ(this->copy(), 1u);

    ASSERT_NE(this->m_source.ptSubImageList, nullptr);
    EXPECT_NE(this->m_source.ptSubImageList, this->m_former);
    EXPECT_EQ(this->m_source.nSubImageNum, 2);
    EXPECT_EQ(this->m_source.ptSubImageList[0].pchData, this->m_firstText);
    EXPECT_EQ(this->m_source.ptSubImageList[1].pchData, this->m_secondText);
    EXPECT_EQ(this->m_source.ptSubImageList[0].nWidth, 1);
    EXPECT_EQ(this->m_source.ptSubImageList[1].nWidth, 2);

    EXPECT_EQ(this->m_copy.ptSubImageList, this->m_former);
    EXPECT_EQ(this->m_copy.nSubImageNum, 2);
    EXPECT_NE(this->m_copy.ptSubImageList[0].pchData, this->m_firstText);
    EXPECT_NE(this->m_copy.ptSubImageList[1].pchData, this->m_secondText);
    EXPECT_STREQ(this->m_copy.ptSubImageList[0].pchData, "first");
    EXPECT_STREQ(this->m_copy.ptSubImageList[1].pchData, "second one");
    EXPECT_EQ(this->m_copy.ptSubImageList[1].nWidth, 2);
}

TYPED_TEST(ObjectCopy, AsksThePoolForTheArrayAndThenEachText)
{
    const TAppMemPoolHandle pool = reinterpret_cast<TAppMemPoolHandle>(this);
    g_hMemPool = pool;
    ASSERT_EQ(this->copy(), 1u);
    EXPECT_THAT(state.sizesAsked, ElementsAre(2 * sizeof(TPubSecSubImageInfo), 6u, 11u));
    EXPECT_THAT(state.poolsAsked, Each(pool));
    EXPECT_THAT(state.functionsAsked, Each(std::string(TypeParam::copyName)));
}

TYPED_TEST(ObjectCopy, WholeRecordIsCopied)
{
    memset(static_cast<void*>(&this->m_copy), 0x5A, sizeof(this->m_copy));
    strcpy(this->m_source.achSourceID, "source");
    strcpy(this->m_source.achDeviceID, "device");
    ASSERT_EQ(this->copy(), 1u);
    EXPECT_STREQ(this->m_copy.achSourceID, "source");
    EXPECT_STREQ(this->m_copy.achDeviceID, "device");
    EXPECT_STREQ(this->m_source.achSourceID, "source");
    this->m_copy.ptSubImageList = this->m_source.ptSubImageList;
    EXPECT_EQ(bytesOf(this->m_copy), bytesOf(this->m_source));
}

TYPED_TEST(ObjectCopy, BothAreReleasedWithNothingLeft)
{
    ASSERT_EQ(this->copy(), 1u);
    EXPECT_THAT(state.blocks, SizeIs(6));
    EXPECT_EQ(TypeParam::release(1, &this->m_source), 1u);
    EXPECT_STREQ(this->m_copy.ptSubImageList[1].pchData, "second one");
    EXPECT_EQ(TypeParam::release(1, &this->m_copy), 1u);
    EXPECT_THAT(state.blocks, IsEmpty());
}

TYPED_TEST(ObjectCopy, CopyOfACopy)
{
    typename TypeParam::Record second = {};
    ASSERT_EQ(this->copy(), 1u);
    ASSERT_EQ(TypeParam::copy(&this->m_copy, &second), 1u);
    EXPECT_STREQ(second.ptSubImageList[0].pchData, "first");
    for (auto* record : {&this->m_source, &this->m_copy, &second})
    {
        EXPECT_EQ(TypeParam::release(1, record), 1u);
    }
    EXPECT_THAT(state.blocks, IsEmpty());
}

TYPED_TEST(ObjectCopy, NullTextStaysNull)
{
    this->m_former[0].pchData = nullptr;
    ASSERT_EQ(this->copy(), 1u);
    EXPECT_EQ(this->m_source.ptSubImageList[0].pchData, nullptr);
    EXPECT_EQ(this->m_copy.ptSubImageList[0].pchData, nullptr);
    EXPECT_STREQ(this->m_copy.ptSubImageList[1].pchData, "second one");
    EXPECT_THAT(state.sizesAsked, ElementsAre(2 * sizeof(TPubSecSubImageInfo), 11u));
}

TYPED_TEST(ObjectCopy, EmptyTextIsCopied)
{
    this->m_former[0].pchData[0] = '\0';
    ASSERT_EQ(this->copy(), 1u);
    ASSERT_NE(this->m_copy.ptSubImageList[0].pchData, nullptr);
    EXPECT_NE(this->m_copy.ptSubImageList[0].pchData, this->m_firstText);
    EXPECT_STREQ(this->m_copy.ptSubImageList[0].pchData, "");
}

TYPED_TEST(ObjectCopy, FeatureDataOfASubImageIsShared)
{
    char vector[] = "vector";
    this->m_former[0].tFeatureInfo.pchFeatureData = vector;
    ASSERT_EQ(this->copy(), 1u);
    EXPECT_EQ(this->m_source.ptSubImageList[0].tFeatureInfo.pchFeatureData, vector);
    EXPECT_EQ(this->m_copy.ptSubImageList[0].tFeatureInfo.pchFeatureData, vector);
}

TYPED_TEST(ObjectCopy, NoSubImagesClearsTheSourcesPointer)
{
    this->m_source.nSubImageNum = 0;
    EXPECT_EQ(this->copy(), 1u);
    EXPECT_EQ(this->m_source.ptSubImageList, nullptr);
    EXPECT_EQ(this->m_copy.ptSubImageList, this->m_former);
    EXPECT_EQ(this->m_copy.nSubImageNum, 0);
    EXPECT_THAT(state.sizesAsked, IsEmpty());
}

TYPED_TEST(ObjectCopy, CountWithoutAList)
{
    this->m_source.ptSubImageList = nullptr;
    EXPECT_EQ(this->copy(), 1u);
    EXPECT_EQ(this->m_source.ptSubImageList, nullptr);
    EXPECT_EQ(this->m_copy.ptSubImageList, nullptr);
    EXPECT_EQ(this->m_copy.nSubImageNum, 2);
    EXPECT_THAT(state.sizesAsked, IsEmpty());
}

TYPED_TEST(ObjectCopy, CountsAtTheLimit)
{
    this->m_source.ptSubImageList = subImages(std::vector<std::string>(256, "-"));
    this->m_source.ptSubImageList[255].pchData = host::text("last");
    this->m_source.nSubImageNum = 256;
    EXPECT_EQ(this->copy(), 1u);
    EXPECT_THAT(state.sizesAsked, ElementsAre(256 * sizeof(TPubSecSubImageInfo), 5u));
    EXPECT_STREQ(this->m_copy.ptSubImageList[255].pchData, "last");
}

TYPED_TEST(ObjectCopy, CountBeyondTheLimitIsRefused)
{
    for (const s32 count : {257, 2147483647})
    {
        this->m_source.nSubImageNum = count;
        EXPECT_EQ(this->copy(), 0u);
        EXPECT_EQ(this->m_source.ptSubImageList, this->m_former);
        EXPECT_EQ(this->m_copy.ptSubImageList, nullptr);
        EXPECT_EQ(this->m_copy.nSubImageNum, 0);
    }
    EXPECT_THAT(state.sizesAsked, IsEmpty());
}

TYPED_TEST(ObjectCopy, NegativeCountIsAnAllocationThatFails)
{
    for (const s32 count : {-1, -2147483647 - 1})
    {
        this->m_source.nSubImageNum = count;
        this->m_source.ptSubImageList = this->m_former;
        EXPECT_EQ(this->copy(), 1u);
        EXPECT_EQ(this->m_source.ptSubImageList, nullptr);
        EXPECT_EQ(this->m_copy.ptSubImageList, this->m_former);
        EXPECT_EQ(this->m_copy.nSubImageNum, count);
        EXPECT_EQ(this->m_former[0].pchData, this->m_firstText);
    }
}

TYPED_TEST(ObjectCopy, NoMemoryForTheArray)
{
    state.poolFailsAt = 0;
    EXPECT_EQ(this->copy(), 1u);
    EXPECT_EQ(this->m_source.ptSubImageList, nullptr);
    EXPECT_EQ(this->m_copy.ptSubImageList, this->m_former);
    EXPECT_EQ(this->m_former[0].pchData, this->m_firstText);
    EXPECT_THAT(state.sizesAsked, SizeIs(1));
    TypeParam::release(1, &this->m_source);
    TypeParam::release(1, &this->m_copy);
    EXPECT_THAT(state.blocks, IsEmpty());
}

TYPED_TEST(ObjectCopy, NoMemoryForAText)
{
    state.poolFailsAt = 1;
    EXPECT_EQ(this->copy(), 1u);
    EXPECT_EQ(this->m_copy.ptSubImageList[0].pchData, nullptr);
    EXPECT_STREQ(this->m_copy.ptSubImageList[1].pchData, "second one");
    EXPECT_EQ(this->m_source.ptSubImageList[0].pchData, this->m_firstText);
    TypeParam::release(1, &this->m_source);
    TypeParam::release(1, &this->m_copy);
    EXPECT_THAT(state.blocks, IsEmpty());
}

TYPED_TEST(ObjectCopy, NullRecords)
{
    EXPECT_EQ(TypeParam::copy(nullptr, &this->m_copy), 0u);
    EXPECT_EQ(TypeParam::copy(&this->m_source, nullptr), 0u);
    EXPECT_EQ(TypeParam::copy(nullptr, nullptr), 0u);
    EXPECT_EQ(this->m_source.ptSubImageList, this->m_former);
    EXPECT_THAT(state.sizesAsked, IsEmpty());
}

TYPED_TEST(ObjectCopy, Lines)
{
    TypeParam::copy(nullptr, &this->m_copy);
    EXPECT_THAT(state.lines, IsEmpty());
    this->logAt(1);
    TypeParam::copy(nullptr, &this->m_copy);
    this->m_source.nSubImageNum = 257;
    this->copy();
    EXPECT_THAT(state.lines, ElementsAre(isError(TypeParam::copyName, "Input param failed."),
                                         isError(TypeParam::copyName, "Input param failed.")));
    state.lines.clear();
    this->logAt(4);
    this->m_source.nSubImageNum = 2;
    this->copy();
    TypeParam::release(1, &this->m_copy);
    EXPECT_THAT(state.lines, IsEmpty());
}
