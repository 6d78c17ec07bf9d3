/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace viewlib
{

struct Registration
{
    std::string device;
    std::chrono::system_clock::time_point since;
    std::chrono::system_clock::time_point lastKeepalive; /* equals since until the first keepalive */
    bool online = false;                                 /* a sign of life came within the registration's lifetime */
};

/* A document or a block of data, whole and as it was sent. */
struct StoredPost
{
    std::int64_t id = 0;
    std::chrono::system_clock::time_point received;
    std::string device;
    std::string path;
    std::string contentType;
    std::string body;
};

/* One object of a document. */
struct StoredObject
{
    std::int64_t id = 0;
    std::int64_t post = 0;          /* StoredPost::id */
    std::string kind;               /* "Face", "Image", ... */
    std::string objectId;           /* its "FaceID", "ImageID", ... */
    std::string document;           /* its members as JSON, pictures left out */
    std::vector<std::string> notes; /* what was tolerated in it but is unwise, each "code: sentence" */
};

/* A picture or other data that was sent as base64, decoded. */
struct Picture
{
    std::int64_t id = 0;
    std::int64_t object = 0; /* StoredObject::id */
    std::string imageId;
    std::string type;   /* "Type" of a sub-image, "" for the data of the object itself */
    std::string format; /* "FileFormat" as sent */
    std::string file;   /* where it is kept, relative to the data directory; "" when it is kept in memory */
    int width = 0;      /* of a JPEG or PNG; 0: not known */
    int height = 0;
    std::string bytes;
};

/* A file that was streamed, as much of it as has arrived. */
struct Upload
{
    std::string name;
    std::uint64_t length = 0;
    std::string md5;   /* of that much, 32 digits */
    std::string file;  /* where it is kept, relative to the data directory; "" when it is kept in memory */
    std::string bytes; /* when it is kept in memory */
    std::chrono::system_clock::time_point changed;
};

/* What became of one post, for those who watch. */
struct StoredSummary
{
    struct Object
    {
        std::int64_t id = 0;
        std::string kind;
        std::string objectId;
        std::size_t notes = 0;
        std::optional<std::int64_t> picture; /* its first one */
    };
    std::int64_t post = 0;
    std::string device;
    std::vector<Object> objects;
};

struct StoreCounts
{
    std::size_t posts = 0;
    std::size_t objects = 0;
    std::size_t pictures = 0;
};

} // namespace viewlib
