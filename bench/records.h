/* SPDX-License-Identifier: Apache-2.0 */
/* The records that are measured. */
#ifndef PUBSEC_BENCH_RECORDS_H
#define PUBSEC_BENCH_RECORDS_H

#include <cstddef>
#include <string>
#include <vector>

#include <pubsecstack/pubsecstack.h>

namespace bench
{

/* The device that the programs report as. */
constexpr const char* kDeviceID = "34020000001190000001";

/* What a picture looks like to the library: text of this length in the alphabet of base64. */
std::string pictureText(size_t length);

/* Objects with so many of their members filled; those that are always written are empty or 0 beyond that. */
TPubSecFaceObjInfo face(unsigned members);
TPubSecPersonnelObjInfo person(unsigned members);
TPubSecMotorVehicleObjInfo vehicle(unsigned members);

/* So many equal objects of 60 members. */
std::vector<TPubSecFaceObjInfo> faces(size_t count);
std::vector<TPubSecPersonnelObjInfo> persons(size_t count);
std::vector<TPubSecMotorVehicleObjInfo> vehicles(size_t count);

/* A sub-image; the data stay the caller's. */
TPubSecSubImageInfo subImage(const char* data);

/* Faces with two sub-images each, which share one text of data. */
class FacesWithPictures
{
  public:
    FacesWithPictures(size_t count, size_t dataLength);

    const std::vector<TPubSecFaceObjInfo>& records() const
    {
        return m_faces;
    }

  private:
    std::string m_data;
    std::vector<TPubSecSubImageInfo> m_subImages;
    std::vector<TPubSecFaceObjInfo> m_faces;
};

/* A picture: its information and its data, and faces whose sub-images have data of their own. */
class Picture
{
  public:
    explicit Picture(size_t dataLength, size_t faces = 0, size_t faceDataLength = 0);
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    const TPubSecIntelliPicObj& record() const
    {
        return m_record;
    }

    const TPubSecImageObjInfo& info() const
    {
        return m_info;
    }

  private:
    std::string m_data;
    std::vector<std::string> m_faceData;
    std::vector<TPubSecSubImageInfo> m_subImages;
    std::vector<TPubSecFaceObjInfo> m_faces;
    TPubSecImageObjInfo m_info;
    TPubSecIntelliPicObj m_record;
};

} // namespace bench

#endif
