/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <optional>
#include <string>

namespace viewlib
{

enum class Kind
{
    Register,
    UnRegister,
    Keepalive,
    Time,
    Collection, /* documents with objects */
    Data,       /* the bytes of an object that was announced before */
    Member,     /* the document that a collection's object came in */
    Picture,    /* decoded */
    Upload,     /* a file that is streamed, and how much of it is held */
    LogEvent
};

/* One path of the interface. */
struct Resource
{
    Kind kind;
    const char* path;
    const char* objects;  /* what a collection holds: "Face" */
    const char* roots[2]; /* the members one of which a document has at its root */
    bool hasData;         /* the collection's members have a "/Data" below them */
};

struct ResourceMatch
{
    Kind kind;
    const Resource* resource; /* for Kind::Data and Kind::Member that of the collection */
    std::string id;           /* of what lies below the resource, as it stands in the path */

    bool allows(const std::string& method) const;
    const char* methods() const; /* those that are served, as "Allow" lists them */
};

std::optional<ResourceMatch> findResource(const std::string& path);

} // namespace viewlib
