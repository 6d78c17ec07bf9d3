/* SPDX-License-Identifier: Apache-2.0 */
#include "records.h"

#include <algorithm>
#include <cstring>

#include "members.h"

namespace bench
{

namespace
{

/* Fills the first members that it is shown, with values of the lengths that devices send. */
class Filler
{
  public:
    explicit Filler(unsigned members) : m_left(members)
    {
    }

    template <size_t Size> void text(const char*, char (&field)[Size])
    {
        static constexpr char kText[] = "340200000011900000010220261121124800000010600001";
        if (takes())
        {
            const size_t length = std::min({Size - 1, sizeof(kText) - 1, size_t{48}});
            std::memcpy(field, kText, length);
            field[length] = '\0';
        }
    }

    template <typename Number> void number(const char*, u32& flag, Number& field)
    {
        flag = takes() ? 1 : 0;
        field = flag != 0 ? value<Number>() : Number{};
    }

    template <typename Number> void number(const char*, Number& field)
    {
        field = takes() ? value<Number>() : Number{};
    }

    void oneOrZero(const char*, u32& field)
    {
        field = takes() ? 1 : 0;
    }

    void textPointer(const char*, char*&)
    {
    }

  private:
    bool takes()
    {
        if (m_left == 0)
        {
            return false;
        }
        --m_left;
        return true;
    }

    template <typename Number> static Number value()
    {
        return static_cast<Number>(1234.5);
    }

    unsigned m_left;
};

} // namespace

std::string pictureText(size_t length)
{
    static constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text(length, '\0');
    unsigned state = 1;
    for (char& letter : text)
    {
        state = state * 1103515245u + 12345u;
        letter = kAlphabet[state >> 16 & 63];
    }
    return text;
}

TPubSecFaceObjInfo face(unsigned members)
{
    TPubSecFaceObjInfo record = {};
    Filler filler(members);
    faceMembers(filler, record);
    return record;
}

TPubSecPersonnelObjInfo person(unsigned members)
{
    TPubSecPersonnelObjInfo record = {};
    Filler filler(members);
    personMembers(filler, record);
    return record;
}

TPubSecMotorVehicleObjInfo vehicle(unsigned members)
{
    TPubSecMotorVehicleObjInfo record = {};
    Filler filler(members);
    vehicleMembers(filler, record);
    return record;
}

std::vector<TPubSecFaceObjInfo> faces(size_t count)
{
    return std::vector<TPubSecFaceObjInfo>(count, face(kObjectMembers));
}

std::vector<TPubSecPersonnelObjInfo> persons(size_t count)
{
    return std::vector<TPubSecPersonnelObjInfo>(count, person(kObjectMembers));
}

std::vector<TPubSecMotorVehicleObjInfo> vehicles(size_t count)
{
    return std::vector<TPubSecMotorVehicleObjInfo>(count, vehicle(kObjectMembers));
}

TPubSecSubImageInfo subImage(const char* data)
{
    TPubSecSubImageInfo record = {};
    Filler filler(~0u);
    subImageMembers(filler, record);
    record.pchData = const_cast<char*>(data);
    return record;
}

FacesWithPictures::FacesWithPictures(size_t count, size_t dataLength)
    : m_data(pictureText(dataLength)), m_subImages(2 * count, subImage(m_data.c_str())), m_faces(faces(count))
{
    for (size_t index = 0; index < count; ++index)
    {
        m_faces[index].nSubImageNum = 2;
        m_faces[index].ptSubImageList = &m_subImages[2 * index];
    }
}

Picture::Picture(size_t dataLength, size_t faces, size_t faceDataLength)
    : m_data(pictureText(dataLength)), m_faceData(faces, pictureText(faceDataLength)),
      m_faces(faces, face(kObjectMembers)), m_info{}, m_record{}
{
    Filler filler(~0u);
    imageMembers(filler, m_info);
    for (const std::string& data : m_faceData)
    {
        m_subImages.push_back(subImage(data.c_str()));
    }
    for (size_t index = 0; index < faces; ++index)
    {
        m_faces[index].nSubImageNum = 1;
        m_faces[index].ptSubImageList = &m_subImages[index];
    }
    m_record.ptImageInfo = &m_info;
    m_record.nImageNum = 1;
    m_record.ptFace = m_faces.data();
    m_record.nFaceNum = static_cast<s32>(faces);
    m_record.pchData = m_data.c_str();
}

} // namespace bench
