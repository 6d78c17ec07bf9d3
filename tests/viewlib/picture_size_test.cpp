/* SPDX-License-Identifier: Apache-2.0 */
#include "viewlib/picture_size.h"

#include <gtest/gtest.h>

using viewlib::jpegSize;
using viewlib::pictureSize;
using namespace std::string_literals;

namespace
{

const std::string c_start = "\xFF\xD8";
const std::string c_application = "\xFF\xE0\0\x04JF"s;
/* length 11, 8 bits, height 0x0102, width 0x0304, one component */
const std::string c_frame = "\xFF\xC0\0\x0B\x08\x01\x02\x03\x04\x01\x01\x11\0"s;

} // namespace

TEST(JpegSize, OfTheFrameHeader)
{
    const auto size = jpegSize(c_start + c_application + c_frame);
    ASSERT_TRUE(size);
    EXPECT_EQ(size->width, 0x0304);
    EXPECT_EQ(size->height, 0x0102);
}

TEST(JpegSize, OfAProgressiveOneBehindTablesAndPadding)
{
    std::string frame = c_frame;
    frame[1] = '\xC2';
    const auto size = jpegSize(c_start + "\xFF\xC4\0\x02"s + "\xFF\xFF" + frame);
    ASSERT_TRUE(size);
    EXPECT_EQ(size->width, 0x0304);
}

TEST(JpegSize, NoneOfWhatIsNoJpeg)
{
    EXPECT_FALSE(jpegSize(""));
    EXPECT_FALSE(jpegSize("\xFF"));
    EXPECT_FALSE(jpegSize("\x89PNG\r\n"));
    EXPECT_FALSE(jpegSize(c_start));
    EXPECT_FALSE(jpegSize(c_start + c_application));
    EXPECT_FALSE(jpegSize(c_start + "\xFF\xE0\0\x01"s + c_frame));       /* a length that cannot be */
    EXPECT_FALSE(jpegSize(c_start + "\xFF\xDA\0\x02"s + c_frame));       /* a scan before any frame */
    EXPECT_FALSE(jpegSize((c_start + c_frame).substr(0, 2 + 7)));        /* cut within the width */
    EXPECT_FALSE(jpegSize(c_start + "\xFF\xC0\0\x0B\x08\0\0\x03\x04"s)); /* no lines */
}

TEST(PictureSize, OfAPngAndAJpeg)
{
    const std::string png = "\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR\0\0\x03\x20\0\0\x02\x58\x08\x02\0\0\0"s;
    ASSERT_TRUE(pictureSize(png));
    EXPECT_EQ(pictureSize(png)->width, 800);
    EXPECT_EQ(pictureSize(png)->height, 600);
    EXPECT_FALSE(pictureSize(png.substr(0, 23)));
    EXPECT_FALSE(pictureSize("GIF89a"));
    ASSERT_TRUE(pictureSize(c_start + c_application + c_frame));
    EXPECT_EQ(pictureSize(c_start + c_application + c_frame)->height, 0x0102);
}
