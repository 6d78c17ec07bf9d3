/* SPDX-License-Identifier: Apache-2.0 */
#include "store.h"

#include "sqlite.h"
#include "text.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace viewlib
{

namespace
{

const char* const schema = R"(
    CREATE TABLE IF NOT EXISTS registrations (
        device TEXT PRIMARY KEY, since INTEGER NOT NULL, keepalive INTEGER NOT NULL);
    CREATE TABLE IF NOT EXISTS posts (
        id INTEGER PRIMARY KEY, received INTEGER NOT NULL, device TEXT NOT NULL, path TEXT NOT NULL,
        type TEXT NOT NULL, body BLOB NOT NULL);
    CREATE TABLE IF NOT EXISTS objects (
        id INTEGER PRIMARY KEY, post INTEGER NOT NULL REFERENCES posts (id), kind TEXT NOT NULL,
        object TEXT NOT NULL, document TEXT NOT NULL);
    CREATE INDEX IF NOT EXISTS objects_by_id ON objects (object);
    CREATE TABLE IF NOT EXISTS pictures (
        id INTEGER PRIMARY KEY, object INTEGER NOT NULL REFERENCES objects (id), image TEXT NOT NULL,
        type TEXT NOT NULL, format TEXT NOT NULL, file TEXT NOT NULL, bytes BLOB);
    CREATE INDEX IF NOT EXISTS pictures_by_object ON pictures (object);
)";

/* What Store::readPicture reads. */
#define SELECT_PICTURES "SELECT p.id, p.object, p.image, p.type, p.format, p.file, p.bytes FROM pictures p "

const char* const pictureFolder = "pictures";

Registration readRegistration(Statement& row)
{
    Registration registration;
    registration.device = row.bytes();
    registration.since = fromMilliseconds(row.integer());
    registration.lastKeepalive = fromMilliseconds(row.integer());
    return registration;
}

} // namespace

void Store::Close::operator()(sqlite3* database) const
{
    sqlite3_close(database);
}

Store::~Store() = default;

Store::Store(const std::string& storage) : m_directory(storage == ":memory:" ? std::string() : storage)
{
    if (!m_directory.empty())
    {
        openDirectory();
    }
    const std::string file = m_directory.empty() ? storage : m_directory + "/viewlib.db";
    sqlite3* database = nullptr;
    const int result = sqlite3_open_v2(file.c_str(), &database,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX, nullptr);
    m_database.reset(database);
    const bool ready = result == SQLITE_OK && sqlite3_busy_timeout(database, 5000) == SQLITE_OK &&
                       sqlite3_exec(database, "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;", nullptr, nullptr,
                                    nullptr) == SQLITE_OK &&
                       sqlite3_exec(database, schema, nullptr, nullptr, nullptr) == SQLITE_OK;
    if (!ready)
    {
        throw std::runtime_error("cannot open \"" + file + "\": " + sqlite3_errmsg(database));
    }
}

void Store::openDirectory()
{
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(m_directory) / pictureFolder, error);
    if (error)
    {
        throw std::runtime_error("cannot make the directory \"" + m_directory + "\": " + error.message());
    }
}

void Store::addRegistration(const std::string& device, Time now)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement(m_database.get(), "INSERT OR REPLACE INTO registrations VALUES (?, ?, ?)")
        .bind(device)
        .bind(toMilliseconds(now))
        .bind(toMilliseconds(now))
        .run();
}

bool Store::removeRegistration(const std::string& device)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement(m_database.get(), "DELETE FROM registrations WHERE device = ?").bind(device).run();
    return sqlite3_changes(m_database.get()) != 0;
}

void Store::keepAlive(const std::string& device, Time now)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement(m_database.get(), "UPDATE registrations SET keepalive = ? WHERE device = ?")
        .bind(toMilliseconds(now))
        .bind(device)
        .run();
}

void Store::forgetRegistrations()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement(m_database.get(), "DELETE FROM registrations").run();
}

/* A sign of life at the beginning of all time stands for one that no longer counts. */
bool Store::expireRegistration(const std::string& device)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement(m_database.get(), "UPDATE registrations SET keepalive = 0 WHERE device = ?").bind(device).run();
    return sqlite3_changes(m_database.get()) != 0;
}

std::optional<Registration> Store::registration(const std::string& device) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), "SELECT device, since, keepalive FROM registrations WHERE device = ?");
    row.bind(device);
    return row.step() ? std::optional<Registration>(readRegistration(row)) : std::nullopt;
}

std::vector<Registration> Store::registrations() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), "SELECT device, since, keepalive FROM registrations ORDER BY device");
    std::vector<Registration> found;
    while (row.step())
    {
        found.push_back(readRegistration(row));
    }
    return found;
}

void Store::add(const StoredPost& post, const std::vector<FoundObject>& objects)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Transaction transaction(m_database.get());
    Statement(m_database.get(), "INSERT INTO posts (received, device, path, type, body) VALUES (?, ?, ?, ?, ?)")
        .bind(toMilliseconds(post.received))
        .bind(post.device)
        .bind(post.path)
        .bind(post.contentType)
        .bindBlob(post.body)
        .run();
    const std::int64_t id = sqlite3_last_insert_rowid(m_database.get());
    for (const FoundObject& object : objects)
    {
        addObject(id, object);
    }
    transaction.commit();
}

void Store::addObject(std::int64_t post, const FoundObject& found)
{
    Statement(m_database.get(), "INSERT INTO objects (post, kind, object, document) VALUES (?, ?, ?, ?)")
        .bind(post)
        .bind(found.object.kind)
        .bind(found.object.objectId)
        .bind(found.object.document)
        .run();
    const std::int64_t id = sqlite3_last_insert_rowid(m_database.get());
    for (const Picture& picture : found.pictures)
    {
        addPicture(id, picture);
    }
}

void Store::addPicture(std::int64_t object, const Picture& picture)
{
    const bool inMemory = m_directory.empty();
    Statement(m_database.get(),
              "INSERT INTO pictures (object, image, type, format, file, bytes) VALUES (?, ?, ?, ?, '', ?)")
        .bind(object)
        .bind(picture.imageId)
        .bind(picture.type)
        .bind(picture.format)
        .bindBlob(inMemory ? picture.bytes : std::string())
        .run();
    if (!inMemory)
    {
        const std::int64_t id = sqlite3_last_insert_rowid(m_database.get());
        Statement(m_database.get(), "UPDATE pictures SET file = ? WHERE id = ?")
            .bind(saveFile(id, picture.bytes))
            .bind(id)
            .run();
    }
}

/* Named by the row alone. A file left over by a post that was rolled back is overwritten by the next picture. */
std::string Store::saveFile(std::int64_t id, const std::string& bytes) const
{
    char name[64];
    std::snprintf(name, sizeof name, "%s/%08lld%s", pictureFolder, static_cast<long long>(id),
                  imageTypeOf(bytes).extension);
    const std::string path = m_directory + "/" + name;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file)
    {
        throw std::runtime_error("storage: cannot write \"" + path + "\"");
    }
    return name;
}

std::string Store::loadFile(const std::string& name) const
{
    std::ifstream file(m_directory + "/" + name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

StoreCounts Store::counts() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), "SELECT (SELECT count(*) FROM posts), (SELECT count(*) FROM objects), "
                                    "(SELECT count(*) FROM pictures)");
    row.step();
    StoreCounts counts;
    counts.posts = static_cast<std::size_t>(row.integer());
    counts.objects = static_cast<std::size_t>(row.integer());
    counts.pictures = static_cast<std::size_t>(row.integer());
    return counts;
}

std::map<std::string, std::size_t> Store::postsByDevice() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), "SELECT device, count(*) FROM posts GROUP BY device");
    std::map<std::string, std::size_t> counts;
    while (row.step())
    {
        const std::string device = row.bytes();
        counts[device] = static_cast<std::size_t>(row.integer());
    }
    return counts;
}

std::vector<StoredPost> Store::posts(const std::string& path) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), "SELECT id, received, device, path, type, body FROM posts ORDER BY id");
    std::vector<StoredPost> found;
    while (row.step())
    {
        StoredPost post;
        post.id = row.integer();
        post.received = fromMilliseconds(row.integer());
        post.device = row.bytes();
        post.path = row.bytes();
        if (pathFits(path, post.path))
        {
            post.contentType = row.bytes();
            post.body = row.bytes();
            found.push_back(std::move(post));
        }
    }
    return found;
}

std::vector<StoredObject> Store::objects(const std::string& kind) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(),
                  "SELECT id, post, kind, object, document FROM objects WHERE ?1 = '' OR kind = ?1 ORDER BY id");
    row.bind(kind);
    std::vector<StoredObject> found;
    while (row.step())
    {
        StoredObject object;
        object.id = row.integer();
        object.post = row.integer();
        object.kind = row.bytes();
        object.objectId = row.bytes();
        object.document = row.bytes();
        found.push_back(std::move(object));
    }
    return found;
}

std::vector<Picture> Store::pictures(const std::string& objectId) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(),
                  SELECT_PICTURES "JOIN objects o ON o.id = p.object WHERE ?1 = '' OR o.object = ?1 ORDER BY p.id");
    row.bind(objectId);
    std::vector<Picture> found;
    while (row.step())
    {
        found.push_back(readPicture(row));
    }
    return found;
}

Picture Store::readPicture(Statement& row) const
{
    Picture picture;
    picture.id = row.integer();
    picture.object = row.integer();
    picture.imageId = row.bytes();
    picture.type = row.bytes();
    picture.format = row.bytes();
    picture.file = row.bytes();
    picture.bytes = picture.file.empty() ? row.bytes() : loadFile(picture.file);
    return picture;
}

std::size_t Store::count(const std::string& kind) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), "SELECT count(*) FROM objects WHERE kind = ?");
    row.bind(kind).step();
    return static_cast<std::size_t>(row.integer());
}

std::vector<ListedObject> Store::newest(const std::string& kind, std::size_t most) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), "SELECT o.id, o.object, t.device, t.received, length(t.body) FROM objects o "
                                    "JOIN posts t ON t.id = o.post WHERE o.kind = ? ORDER BY o.id DESC LIMIT ?");
    row.bind(kind).bind(static_cast<std::int64_t>(most));
    std::vector<ListedObject> found;
    while (row.step())
    {
        ListedObject object;
        object.id = row.integer();
        object.objectId = row.bytes();
        object.device = row.bytes();
        object.received = fromMilliseconds(row.integer());
        object.bytes = static_cast<std::size_t>(row.integer());
        object.pictures = picturesOf(object.id);
        found.push_back(std::move(object));
    }
    return found;
}

std::vector<std::int64_t> Store::picturesOf(std::int64_t object) const
{
    Statement row(m_database.get(), "SELECT id FROM pictures WHERE object = ? ORDER BY id");
    row.bind(object);
    std::vector<std::int64_t> found;
    while (row.step())
    {
        found.push_back(row.integer());
    }
    return found;
}

std::optional<std::string> Store::documentWith(const std::string& kind, const std::string& objectId) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), "SELECT t.body FROM objects o JOIN posts t ON t.id = o.post "
                                    "WHERE o.object = ? AND o.kind = ? ORDER BY o.id DESC LIMIT 1");
    row.bind(objectId).bind(kind);
    return row.step() ? std::optional<std::string>(row.bytes()) : std::nullopt;
}

std::optional<Picture> Store::picture(std::int64_t id) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), SELECT_PICTURES "WHERE p.id = ?");
    row.bind(id);
    return row.step() ? std::optional<Picture>(readPicture(row)) : std::nullopt;
}

std::optional<Picture> Store::dataOf(const std::string& kind, const std::string& objectId) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(),
                  SELECT_PICTURES "JOIN objects o ON o.id = p.object WHERE o.object = ?1 AND p.type = '' "
                                  "AND (o.kind = ?2 OR o.kind = ?2 || 'Data') ORDER BY p.id DESC LIMIT 1");
    row.bind(objectId).bind(kind);
    return row.step() ? std::optional<Picture>(readPicture(row)) : std::nullopt;
}

} // namespace viewlib
