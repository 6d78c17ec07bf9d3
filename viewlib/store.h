/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "documents.h"
#include "sqlite.h"
#include "viewlib/stored.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace viewlib
{

/* An object as the control API lists it. */
struct ShownObject
{
    StoredObject object;
    std::string device;
    std::string path;
    std::chrono::system_clock::time_point received;
    std::size_t bytes = 0; /* of the document or data that it came in */
    std::string sourceId;
    std::vector<Picture> pictures; /* without their bytes */
};

struct ObjectFilter
{
    std::string kind;
    std::string device;
    std::string objectId;    /* these three: "" is any */
    bool notes = false;      /* only those that have some */
    std::int64_t before = 0; /* only those with a smaller number; 0: all */
    std::size_t limit = 50;
};

/* A picture that objects can be seen in. */
struct Scene
{
    std::int64_t picture = 0; /* 0: it is known of, but its bytes were not stored */
    int width = 0;
    int height = 0;
};

/* Of a sub-image: a scene or a general picture. */
bool isSceneType(const std::string& type);

/* A data directory belongs to one server at a time. */
class DirectoryLock
{
  public:
    DirectoryLock() = default;
    ~DirectoryLock();
    DirectoryLock(const DirectoryLock&) = delete;
    DirectoryLock& operator=(const DirectoryLock&) = delete;
    void take(const std::string& directory); /* throws std::runtime_error */

  private:
    int m_fd = -1;
};

/* What the server remembers: registrations, documents, objects and pictures. Members throw std::runtime_error. */
class Store
{
  public:
    using Time = std::chrono::system_clock::time_point;

    /* ":memory:", or a directory that is made when it is not there; pictures are files in it. */
    explicit Store(const std::string& storage);
    ~Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    void addRegistration(const std::string& device, Time now);
    bool removeRegistration(const std::string& device); /* false: there was none */
    void keepAlive(const std::string& device, Time now);
    void forgetRegistrations();
    bool expireRegistration(const std::string& device); /* false: there is none */
    std::optional<Registration> registration(const std::string& device) const;
    std::vector<Registration> registrations() const;

    /* All of a post or nothing of it; it outlives the end of the process once this returns. */
    StoredSummary add(const StoredPost& post, const std::vector<FoundObject>& objects);
    StoreCounts counts() const;
    std::map<std::string, std::size_t> postsByDevice() const;
    std::vector<StoredPost> posts(const std::string& path) const;
    std::vector<StoredObject> objects(const std::string& kind) const;
    std::vector<Picture> pictures(const std::string& objectId) const;

    std::size_t count(const std::string& kind) const;
    /* JSON of the objects of a kind, the newest first, from the first-th (from 0) on. */
    std::vector<std::string> documents(const std::string& kind, std::size_t first, std::size_t most) const;
    /* The whole document that the object came in last. */
    std::optional<std::string> documentWith(const std::string& kind, const std::string& objectId) const;
    std::optional<Picture> picture(std::int64_t id) const;
    /* The data of an object, from its own document or posted after it, whichever came last. */
    std::optional<Picture> dataOf(const std::string& kind, const std::string& objectId) const;

    /* For the control API, the newest first. */
    std::size_t count(const ObjectFilter& filter) const;
    std::vector<ShownObject> list(const ObjectFilter& filter) const;
    std::optional<ShownObject> object(std::int64_t id) const;
    std::vector<ShownObject> withSource(const std::string& sourceId, std::size_t most) const; /* in their order */
    /* The stored picture with that ImageID, the last one; what is told of its size when only that is there. */
    std::optional<Scene> sceneOf(const std::string& imageId) const;
    std::optional<std::string> body(std::int64_t post, std::size_t most) const;
    /* The posts in whose objects a text stands, the newest ones. */
    std::vector<std::int64_t> postsWith(const std::string& text, std::size_t most) const;

    /* Of documents and pictures. */
    std::uint64_t bytes() const
    {
        return m_bytes;
    }
    std::optional<Time> oldest() const; /* when the first post that is still there came */
    void removeOldest();                /* the first post with its objects and pictures */

  private:
    void open(const std::string& file);
    void migrate();
    void removeStrayPictures();
    void openDirectory();
    std::int64_t addObject(std::int64_t post, const FoundObject& found);
    void addPicture(std::int64_t id, std::int64_t object, const Picture& picture, const std::string& file);
    ShownObject readShown(Statement& row) const;
    std::vector<Picture> shownPicturesOf(std::int64_t object) const;
    std::string loadFile(const std::string& file) const;
    Picture readPicture(Statement& row) const;

    std::string m_directory; /* empty: in memory */
    DirectoryLock m_lock;
    std::atomic<std::int64_t> m_nextPicture{1};
    std::atomic<std::uint64_t> m_bytes{0};
    mutable std::mutex m_mutex;
    Database m_database;
};

} // namespace viewlib
