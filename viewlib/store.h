/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "documents.h"
#include "viewlib/stored.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

struct sqlite3;

namespace viewlib
{

class Statement;

/* An object as a list of them shows it. */
struct ListedObject
{
    std::int64_t id = 0;
    std::string objectId;
    std::string device;
    std::chrono::system_clock::time_point received;
    std::size_t bytes = 0; /* of the document or data that it came in */
    std::vector<std::int64_t> pictures;
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

    /* All of a post or nothing of it. */
    void add(const StoredPost& post, const std::vector<FoundObject>& objects);
    StoreCounts counts() const;
    std::map<std::string, std::size_t> postsByDevice() const;
    std::vector<StoredPost> posts(const std::string& path) const;
    std::vector<StoredObject> objects(const std::string& kind) const;
    std::vector<Picture> pictures(const std::string& objectId) const;

    std::size_t count(const std::string& kind) const;
    std::vector<ListedObject> newest(const std::string& kind, std::size_t most) const;
    /* The whole document that the object came in last. */
    std::optional<std::string> documentWith(const std::string& kind, const std::string& objectId) const;
    std::optional<Picture> picture(std::int64_t id) const;
    /* The data of an object, from its own document or posted after it, whichever came last. */
    std::optional<Picture> dataOf(const std::string& kind, const std::string& objectId) const;

  private:
    void openDirectory();
    void addObject(std::int64_t post, const FoundObject& found);
    void addPicture(std::int64_t object, const Picture& picture);
    std::string saveFile(std::int64_t id, const std::string& bytes) const;
    std::string loadFile(const std::string& file) const;
    Picture readPicture(Statement& row) const;
    std::vector<std::int64_t> picturesOf(std::int64_t object) const;

    struct Close
    {
        void operator()(sqlite3* database) const;
    };
    std::string m_directory; /* empty: in memory */
    mutable std::mutex m_mutex;
    std::unique_ptr<sqlite3, Close> m_database;
};

} // namespace viewlib
