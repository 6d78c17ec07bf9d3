/* SPDX-License-Identifier: Apache-2.0 */
/* The four object records whose sub-images can be copied and released, each with its functions and their names. */
#ifndef PUBSEC_TESTS_UTIL_OBJECT_RECORDS_H
#define PUBSEC_TESTS_UTIL_OBJECT_RECORDS_H

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <pubsecstack/records.h>

#include "tests/util/host.h"

struct Person
{
    static constexpr char name[] = "Person";
    using Record = TPubSecPersonnelObjInfo;
    static constexpr auto copy = PubSecStackDup_TPubSecPersonnelObjInfo;
    static constexpr auto release = PubSecStackFree_TPubSecPersonnelObjInfo;
    static constexpr char copyName[] = "PubSecStackDup_TPubSecPersonnelObjInfo";
    static constexpr char releaseName[] = "PubSecStackFree_TPubSecPersonnelObjInfo";
};

struct Face
{
    static constexpr char name[] = "Face";
    using Record = TPubSecFaceObjInfo;
    static constexpr auto copy = PubSecStackDup_TPubSecFaceObjInfo;
    static constexpr auto release = PubSecStackFree_TPubSecFaceObjInfo;
    static constexpr char copyName[] = "PubSecStackDup_TPubSecFaceObjInfo";
    static constexpr char releaseName[] = "PubSecStackFree_TPubSecFaceObjInfo";
};

struct MotorVehicle
{
    static constexpr char name[] = "MotorVehicle";
    using Record = TPubSecMotorVehicleObjInfo;
    static constexpr auto copy = PubSecStackDup_TPubSecMotorVehicleObjInfo;
    static constexpr auto release = PubSecStackFree_TPubSecMotorVehicleObjInfo;
    static constexpr char copyName[] = "PubSecStackDup_TPubSecMotorVehicleObjInfo";
    static constexpr char releaseName[] = "PubSecStackFree_TPubSecMotorVehicleObjInfo";
};

struct NonMotorVehicle
{
    static constexpr char name[] = "NonMotorVehicle";
    using Record = TPubSecNonMotorVehicleObjInfo;
    static constexpr auto copy = PubSecStackDup_TPubSecNonMotorVehicleObjInfo;
    static constexpr auto release = PubSecStackFree_TPubSecNonMotorVehicleObjInfo;
    static constexpr char copyName[] = "PubSecStackDup_TPubSecNonMotorVehicleObjInfo";
    static constexpr char releaseName[] = "PubSecStackFree_TPubSecNonMotorVehicleObjInfo";
};

struct KindName
{
    template <typename Kind> static std::string GetName(int)
    {
        return Kind::name;
    }
};

using ObjectRecords = testing::Types<Person, Face, MotorVehicle, NonMotorVehicle>;

/* A sub-image list; "-" stands for a sub-image without a text. */
inline TPubSecSubImageInfo* subImages(const std::vector<std::string>& texts)
{
    auto* list = static_cast<TPubSecSubImageInfo*>(host::block(texts.size() * sizeof(TPubSecSubImageInfo)));
    for (size_t i = 0; i < texts.size(); i++)
    {
        list[i].nWidth = static_cast<s32>(i) + 1;
        list[i].pchData = texts[i] == "-" ? nullptr : host::text(texts[i]);
    }
    return list;
}

#endif
