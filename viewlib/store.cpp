/* SPDX-License-Identifier: Apache-2.0 */
#include "store.h"

#include "json.h"
#include "sqlite.h"
#include "text.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numeric>
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

/* What came to the first form of the database, each step once. */
constexpr const char* migrations[] = {
    R"(
    ALTER TABLE objects ADD COLUMN source TEXT NOT NULL DEFAULT '';
    ALTER TABLE objects ADD COLUMN notes TEXT NOT NULL DEFAULT '';
    ALTER TABLE pictures ADD COLUMN width INTEGER NOT NULL DEFAULT 0;
    ALTER TABLE pictures ADD COLUMN height INTEGER NOT NULL DEFAULT 0;
    ALTER TABLE pictures ADD COLUMN size INTEGER NOT NULL DEFAULT 0;
    CREATE INDEX objects_by_post ON objects (post);
    CREATE INDEX objects_by_kind ON objects (kind, id);
    CREATE INDEX objects_by_source ON objects (source);
    CREATE INDEX pictures_by_image ON pictures (image);
)"};

/* What Store::readPicture reads. */
#define SELECT_PICTURES                                                                                                \
    "SELECT p.id, p.object, p.image, p.type, p.format, p.file, p.width, p.height, p.bytes FROM pictures p "

/* What Store::readShown reads. */
#define SELECT_SHOWN                                                                                                   \
    "SELECT o.id, o.post, o.kind, o.object, o.document, o.notes, o.source, t.device, t.path, t.received, "             \
    "length(t.body) FROM objects o JOIN posts t ON t.id = o.post "

const char* const pictureFolder = "pictures";

std::string notesText(const std::vector<std::string>& notes)
{
    if (notes.empty())
    {
        return {};
    }
    const Json array(cJSON_CreateArray());
    for (const std::string& note : notes)
    {
        cJSON_AddItemToArray(array.get(), cJSON_CreateString(note.c_str()));
    }
    return printJson(array.get());
}

std::vector<std::string> parseNotes(const std::string& text)
{
    std::vector<std::string> notes;
    const Json array(parseJson(text));
    const cJSON* note = nullptr;
    cJSON_ArrayForEach(note, array.get())
    {
        notes.emplace_back(cJSON_IsString(note) ? note->valuestring : "");
    }
    return notes;
}

/* "00000012.jpg", as Store::saveFile names them. */
bool isPictureName(const std::string& name)
{
    const std::size_t dot = name.find('.');
    return dot != std::string::npos && dot >= 8 && name.find_first_not_of("0123456789") == dot;
}

std::uint64_t sizeOf(const StoredPost& post, const std::vector<FoundObject>& objects)
{
    std::uint64_t size = post.body.size();
    for (const FoundObject& object : objects)
    {
        for (const Picture& picture : object.pictures)
        {
            size += picture.bytes.size();
        }
    }
    return size;
}

/* The conditions of a filter, with its values bound by bindFilter. */
std::string conditionsOf(const ObjectFilter& filter)
{
    std::string text = "WHERE 1";
    text += filter.kind.empty() ? "" : " AND o.kind = ?";
    text += filter.objectId.empty() ? "" : " AND o.object = ?";
    text += filter.device.empty() ? "" : " AND t.device = ?";
    text += filter.notes ? " AND o.notes <> ''" : "";
    return text;
}

void bindFilter(Statement& row, const ObjectFilter& filter)
{
    for (const std::string* value : {&filter.kind, &filter.objectId, &filter.device})
    {
        if (!value->empty())
        {
            row.bind(*value);
        }
    }
}

/* The pictures of one post as files, gone again unless they are kept. In memory they have no names. */
class PictureFiles
{
  public:
    explicit PictureFiles(const std::string& directory) : m_directory(directory)
    {
    }
    ~PictureFiles()
    {
        for (const std::string& name : m_names)
        {
            if (!m_kept && !name.empty())
            {
                unlink((m_directory + "/" + name).c_str());
            }
        }
    }
    PictureFiles(const PictureFiles&) = delete;
    PictureFiles& operator=(const PictureFiles&) = delete;

    std::size_t count() const
    {
        return m_names.size();
    }
    const std::string& name(std::size_t index) const
    {
        return m_names.at(index);
    }
    void keep()
    {
        m_kept = true;
    }
    /* Named by the row alone. */
    void save(std::int64_t id, const std::string& bytes)
    {
        if (m_directory.empty())
        {
            m_names.emplace_back();
            return;
        }
        char name[64];
        std::snprintf(name, sizeof name, "%s/%08lld%s", pictureFolder, static_cast<long long>(id),
                      imageTypeOf(bytes).extension);
        m_names.emplace_back(name);
        const std::string path = m_directory + "/" + name;
        std::ofstream file(path, std::ios::binary | std::ios::trunc);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        file.close();
        if (!file)
        {
            throw std::runtime_error("storage: cannot write \"" + path + "\"");
        }
    }

  private:
    const std::string& m_directory;
    std::vector<std::string> m_names;
    bool m_kept = false;
};

Registration readRegistration(Statement& row)
{
    Registration registration;
    registration.device = row.bytes();
    registration.since = fromMilliseconds(row.integer());
    registration.lastKeepalive = fromMilliseconds(row.integer());
    return registration;
}

} // namespace

DirectoryLock::~DirectoryLock()
{
    if (m_fd >= 0)
    {
        close(m_fd);
    }
}

void DirectoryLock::take(const std::string& directory)
{
    m_fd = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (m_fd >= 0 && flock(m_fd, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
    {
        throw std::runtime_error("the directory \"" + directory + "\" is in use by another server");
    }
}

Store::~Store() = default;

Store::Store(const std::string& storage) : m_directory(storage == ":memory:" ? std::string() : storage)
{
    if (!m_directory.empty())
    {
        openDirectory();
    }
    open(m_directory.empty() ? storage : m_directory + "/viewlib.db");
    Statement row(m_database.get(), "SELECT (SELECT coalesce(max(id), 0) FROM pictures), "
                                    "(SELECT coalesce(sum(length(body)), 0) FROM posts), "
                                    "(SELECT coalesce(sum(size), 0) FROM pictures)");
    row.step();
    m_nextPicture = row.integer() + 1;
    m_bytes = static_cast<std::uint64_t>(row.integer());
    m_bytes += static_cast<std::uint64_t>(row.integer());
    if (!m_directory.empty())
    {
        removeStrayPictures();
    }
}

void Store::open(const std::string& file)
{
    m_database = openDatabase(file);
    if (sqlite3_exec(m_database.get(), schema, nullptr, nullptr, nullptr) != SQLITE_OK)
    {
        throw std::runtime_error("cannot open \"" + file + "\": " + sqlite3_errmsg(m_database.get()));
    }
    migrate();
}

void Store::migrate()
{
    Statement row(m_database.get(), "PRAGMA user_version");
    row.step();
    const std::int64_t done = row.integer();
    row.run();
    constexpr auto all = static_cast<std::int64_t>(std::size(migrations));
    if (done > all)
    {
        throw std::runtime_error("the database in \"" + m_directory + "\" was made by a later version");
    }
    for (std::int64_t step = done; step < all; ++step)
    {
        Transaction transaction(m_database.get());
        const std::string version = "PRAGMA user_version=" + std::to_string(step + 1);
        if (sqlite3_exec(m_database.get(), migrations[step], nullptr, nullptr, nullptr) != SQLITE_OK ||
            sqlite3_exec(m_database.get(), version.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        {
            throw std::runtime_error(std::string("storage: ") + sqlite3_errmsg(m_database.get()));
        }
        transaction.commit();
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
    m_lock.take(m_directory);
}

/* A picture is written before its row is committed, so the end of the process can leave one without. */
void Store::removeStrayPictures()
{
    Statement row(m_database.get(), "SELECT 1 FROM pictures WHERE id = ? AND file = ?");
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(m_directory) / pictureFolder))
    {
        const std::string name = entry.path().filename().string();
        if (!isPictureName(name))
        {
            continue;
        }
        row.reset().bind(std::strtoll(name.c_str(), nullptr, 10)).bind(std::string(pictureFolder) + "/" + name);
        if (!row.step())
        {
            std::error_code ignored;
            std::filesystem::remove(entry.path(), ignored);
        }
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

/* Files are written outside of the lock, so that several connections do it at once. */
StoredSummary Store::add(const StoredPost& post, const std::vector<FoundObject>& objects)
{
    const auto inSum = [](std::size_t sum, const FoundObject& object) { return sum + object.pictures.size(); };
    const std::size_t pictures = std::accumulate(objects.begin(), objects.end(), std::size_t(0), inSum);
    std::int64_t next = m_nextPicture.fetch_add(static_cast<std::int64_t>(pictures));
    PictureFiles files(m_directory);
    for (const FoundObject& object : objects)
    {
        for (const Picture& picture : object.pictures)
        {
            files.save(next + static_cast<std::int64_t>(files.count()), picture.bytes);
        }
    }

    StoredSummary summary;
    summary.device = post.device;
    const std::lock_guard<std::mutex> lock(m_mutex);
    Transaction transaction(m_database.get());
    Statement(m_database.get(), "INSERT INTO posts (received, device, path, type, body) VALUES (?, ?, ?, ?, ?)")
        .bind(toMilliseconds(post.received))
        .bind(post.device)
        .bind(post.path)
        .bind(post.contentType)
        .bindBlob(post.body)
        .run();
    summary.post = sqlite3_last_insert_rowid(m_database.get());
    std::size_t file = 0;
    for (const FoundObject& object : objects)
    {
        const std::int64_t id = addObject(summary.post, object);
        summary.objects.push_back({id, object.object.kind, object.object.objectId, object.object.notes.size(),
                                   object.pictures.empty() ? std::nullopt : std::optional<std::int64_t>(next)});
        for (const Picture& picture : object.pictures)
        {
            addPicture(next++, id, picture, files.name(file++));
        }
    }
    transaction.commit();
    files.keep();
    m_bytes += sizeOf(post, objects);
    return summary;
}

std::int64_t Store::addObject(std::int64_t post, const FoundObject& found)
{
    Statement(m_database.get(),
              "INSERT INTO objects (post, kind, object, document, source, notes) VALUES (?, ?, ?, ?, ?, ?)")
        .bind(post)
        .bind(found.object.kind)
        .bind(found.object.objectId)
        .bind(found.object.document)
        .bind(found.sourceId)
        .bind(notesText(found.object.notes))
        .run();
    return sqlite3_last_insert_rowid(m_database.get());
}

void Store::addPicture(std::int64_t id, std::int64_t object, const Picture& picture, const std::string& file)
{
    Statement(m_database.get(),
              "INSERT INTO pictures (id, object, image, type, format, file, width, height, size, bytes) "
              "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
        .bind(id)
        .bind(object)
        .bind(picture.imageId)
        .bind(picture.type)
        .bind(picture.format)
        .bind(file)
        .bind(std::int64_t(picture.width))
        .bind(std::int64_t(picture.height))
        .bind(static_cast<std::int64_t>(picture.bytes.size()))
        .bindBlob(file.empty() ? picture.bytes : std::string())
        .run();
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
                  "SELECT id, post, kind, object, document, notes FROM objects WHERE ?1 = '' OR kind = ?1 ORDER BY id");
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
        object.notes = parseNotes(row.bytes());
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
    picture.width = static_cast<int>(row.integer());
    picture.height = static_cast<int>(row.integer());
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

std::vector<std::string> Store::documents(const std::string& kind, std::size_t first, std::size_t most) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), "SELECT document FROM objects WHERE kind = ? ORDER BY id DESC LIMIT ? OFFSET ?");
    row.bind(kind).bind(static_cast<std::int64_t>(most)).bind(static_cast<std::int64_t>(first));
    std::vector<std::string> found;
    while (row.step())
    {
        found.push_back(row.bytes());
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

bool isSceneType(const std::string& type)
{
    return type == "14" || type == "100";
}

std::size_t Store::count(const ObjectFilter& filter) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const std::string from =
        filter.device.empty() ? "FROM objects o " : "FROM objects o JOIN posts t ON t.id = o.post ";
    Statement row(m_database.get(), ("SELECT count(*) " + from + conditionsOf(filter)).c_str());
    bindFilter(row, filter);
    row.step();
    return static_cast<std::size_t>(row.integer());
}

std::vector<ShownObject> Store::list(const ObjectFilter& filter) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const std::string sql = SELECT_SHOWN + conditionsOf(filter) + (filter.before > 0 ? " AND o.id < ?" : "") +
                            " ORDER BY o.id DESC LIMIT ?";
    Statement row(m_database.get(), sql.c_str());
    bindFilter(row, filter);
    if (filter.before > 0)
    {
        row.bind(filter.before);
    }
    row.bind(static_cast<std::int64_t>(filter.limit));
    std::vector<ShownObject> found;
    while (row.step())
    {
        found.push_back(readShown(row));
    }
    return found;
}

std::optional<ShownObject> Store::object(std::int64_t id) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), SELECT_SHOWN "WHERE o.id = ?");
    row.bind(id);
    return row.step() ? std::optional<ShownObject>(readShown(row)) : std::nullopt;
}

std::vector<ShownObject> Store::withSource(const std::string& sourceId, std::size_t most) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), SELECT_SHOWN "WHERE o.source = ? ORDER BY o.id LIMIT ?");
    row.bind(sourceId).bind(static_cast<std::int64_t>(most));
    std::vector<ShownObject> found;
    while (!sourceId.empty() && row.step())
    {
        found.push_back(readShown(row));
    }
    return found;
}

/* With the lock. */
ShownObject Store::readShown(Statement& row) const
{
    ShownObject shown;
    shown.object.id = row.integer();
    shown.object.post = row.integer();
    shown.object.kind = row.bytes();
    shown.object.objectId = row.bytes();
    shown.object.document = row.bytes();
    shown.object.notes = parseNotes(row.bytes());
    shown.sourceId = row.bytes();
    shown.device = row.bytes();
    shown.path = row.bytes();
    shown.received = fromMilliseconds(row.integer());
    shown.bytes = static_cast<std::size_t>(row.integer());
    shown.pictures = shownPicturesOf(shown.object.id);
    return shown;
}

std::vector<Picture> Store::shownPicturesOf(std::int64_t object) const
{
    Statement row(m_database.get(),
                  "SELECT id, image, type, format, width, height FROM pictures WHERE object = ? ORDER BY id");
    row.bind(object);
    std::vector<Picture> found;
    while (row.step())
    {
        Picture picture;
        picture.object = object;
        picture.id = row.integer();
        picture.imageId = row.bytes();
        picture.type = row.bytes();
        picture.format = row.bytes();
        picture.width = static_cast<int>(row.integer());
        picture.height = static_cast<int>(row.integer());
        found.push_back(std::move(picture));
    }
    return found;
}

std::optional<Scene> Store::sceneOf(const std::string& imageId) const
{
    if (imageId.empty())
    {
        return std::nullopt;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    /* Whole pictures go before cut-outs that bear the same identifier. */
    Statement stored(m_database.get(),
                     "SELECT p.id, p.width, p.height, p.type IN ('', '14', '100') AS whole FROM pictures p WHERE "
                     "p.image = ?1 OR p.object IN (SELECT id FROM objects WHERE object = ?1 AND kind = 'ImageData') "
                     "ORDER BY whole DESC, p.id DESC LIMIT 1");
    stored.bind(imageId);
    if (stored.step())
    {
        Scene scene;
        scene.picture = stored.integer();
        scene.width = static_cast<int>(stored.integer());
        scene.height = static_cast<int>(stored.integer());
        return scene;
    }
    Statement told(m_database.get(),
                   "SELECT document FROM objects WHERE object = ? AND kind = 'Image' ORDER BY id DESC LIMIT 1");
    told.bind(imageId);
    if (!told.step())
    {
        return std::nullopt;
    }
    const Json image(parseJson(told.bytes()));
    Scene scene;
    scene.width = countOf(image.get(), "Width");
    scene.height = countOf(image.get(), "Height");
    return scene;
}

std::optional<std::string> Store::body(std::int64_t post, std::size_t most) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), "SELECT substr(body, 1, ?) FROM posts WHERE id = ?");
    row.bind(static_cast<std::int64_t>(most)).bind(post);
    return row.step() ? std::optional<std::string>(row.bytes()) : std::nullopt;
}

std::vector<std::int64_t> Store::postsWith(const std::string& text, std::size_t most) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(),
                  "SELECT DISTINCT post FROM objects WHERE instr(document, ?) > 0 ORDER BY post DESC LIMIT ?");
    row.bind(text).bind(static_cast<std::int64_t>(most));
    std::vector<std::int64_t> found;
    while (row.step())
    {
        found.push_back(row.integer());
    }
    return found;
}

std::optional<Store::Time> Store::oldest() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Statement row(m_database.get(), "SELECT received FROM posts ORDER BY id LIMIT 1");
    return row.step() ? std::optional<Time>(fromMilliseconds(row.integer())) : std::nullopt;
}

void Store::removeOldest()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Transaction transaction(m_database.get());
    Statement oldest(m_database.get(), "SELECT id, length(body) FROM posts ORDER BY id LIMIT 1");
    if (!oldest.step())
    {
        return;
    }
    const std::int64_t post = oldest.integer();
    std::uint64_t freed = static_cast<std::uint64_t>(oldest.integer());
    std::vector<std::string> files;
    Statement row(m_database.get(),
                  "SELECT file, size FROM pictures WHERE object IN (SELECT id FROM objects WHERE post = ?)");
    row.bind(post);
    while (row.step())
    {
        files.push_back(row.bytes());
        freed += static_cast<std::uint64_t>(row.integer());
    }
    oldest.run();
    for (const char* sql : {"DELETE FROM pictures WHERE object IN (SELECT id FROM objects WHERE post = ?)",
                            "DELETE FROM objects WHERE post = ?", "DELETE FROM posts WHERE id = ?"})
    {
        Statement(m_database.get(), sql).bind(post).run();
    }
    transaction.commit();
    m_bytes -= freed;
    for (const std::string& file : files)
    {
        if (!file.empty())
        {
            unlink((m_directory + "/" + file).c_str());
        }
    }
}

} // namespace viewlib
