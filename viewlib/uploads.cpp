/* SPDX-License-Identifier: Apache-2.0 */
#include "uploads.h"

#include "text.h"

#include <openssl/evp.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <new>
#include <stdexcept>

namespace viewlib
{

namespace
{

const char* const folder = "uploads";
constexpr std::size_t maxName = 128;

class Md5
{
  public:
    Md5() : m_context(EVP_MD_CTX_new())
    {
        require(m_context != nullptr && EVP_DigestInit_ex(m_context.get(), EVP_md5(), nullptr) == 1);
    }
    void add(const char* data, std::size_t size)
    {
        require(EVP_DigestUpdate(m_context.get(), data, size) == 1);
    }
    /* Of what was added so far; more can be added. */
    std::string hex() const
    {
        unsigned char bytes[EVP_MAX_MD_SIZE];
        unsigned length = 0;
        const Context copy(EVP_MD_CTX_new());
        require(copy != nullptr && EVP_MD_CTX_copy_ex(copy.get(), m_context.get()) == 1 &&
                EVP_DigestFinal_ex(copy.get(), bytes, &length) == 1);
        return toHex(bytes, length);
    }

  private:
    struct Free
    {
        void operator()(EVP_MD_CTX* context) const
        {
            EVP_MD_CTX_free(context);
        }
    };
    using Context = std::unique_ptr<EVP_MD_CTX, Free>;
    static void require(bool done)
    {
        if (!done)
        {
            throw std::runtime_error("MD5 is not to be had");
        }
    }
    Context m_context;
};

} // namespace

/* What is held under one name. */
struct HeldFile
{
    std::mutex mutex;
    std::string path;  /* empty: in memory */
    std::string bytes; /* in memory */
    std::uint64_t length = 0;
    std::uint64_t turn = 0; /* of the upload that may write */
    std::chrono::system_clock::time_point changed;
    std::function<std::chrono::system_clock::time_point()> clock;
    unsigned writers = 0;
    std::optional<Md5> hash; /* of all that is held, kept up as it grows; none: not known */
};

namespace
{

Md5 hashOf(const HeldFile& held)
{
    Md5 hash;
    if (held.path.empty())
    {
        hash.add(held.bytes.data(), held.bytes.size());
        return hash;
    }
    std::ifstream file(held.path, std::ios::binary);
    std::vector<char> block(std::size_t(1) << 16);
    for (std::uint64_t left = held.length; left != 0;)
    {
        const auto step = static_cast<std::size_t>(std::min<std::uint64_t>(left, block.size()));
        if (!file.read(block.data(), static_cast<std::streamsize>(step)))
        {
            throw std::runtime_error("storage: cannot read \"" + held.path + "\"");
        }
        hash.add(block.data(), step);
        left -= step;
    }
    return hash;
}

/* With the file's lock. */
Upload describe(const std::string& name, HeldFile& held)
{
    if (!held.hash)
    {
        held.hash = hashOf(held);
    }
    Upload upload;
    upload.name = name;
    upload.length = held.length;
    upload.md5 = held.hash->hex();
    upload.changed = held.changed;
    return upload;
}

} // namespace

UploadWriter::UploadWriter(std::shared_ptr<HeldFile> file, std::uint64_t position) : m_file(std::move(file))
{
    const std::lock_guard<std::mutex> lock(m_file->mutex);
    ++m_file->writers;
    if (position > m_file->length)
    {
        fail(Outcome::BeyondEnd, "position " + std::to_string(position) + " lies beyond the " +
                                     std::to_string(m_file->length) + " bytes that are held");
        return;
    }
    begin(position);
}

UploadWriter::~UploadWriter()
{
    if (m_fd >= 0)
    {
        close(m_fd);
    }
    const std::lock_guard<std::mutex> lock(m_file->mutex);
    --m_file->writers;
}

void UploadWriter::begin(std::uint64_t position)
{
    m_turn = ++m_file->turn;
    if (m_file->path.empty())
    {
        m_file->bytes.resize(static_cast<std::size_t>(position));
    }
    else
    {
        m_fd = open(m_file->path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0644);
        if (m_fd < 0 || ftruncate(m_fd, static_cast<off_t>(position)) != 0)
        {
            fail(Outcome::Failed, std::strerror(errno));
            return;
        }
    }
    if (position == 0)
    {
        m_file->hash.emplace();
    }
    else if (position != m_file->length)
    {
        m_file->hash.reset();
    }
    m_file->length = position;
    m_file->changed = m_file->clock();
}

void UploadWriter::fail(Outcome outcome, const std::string& reason)
{
    m_outcome = outcome;
    m_reason = reason;
}

void UploadWriter::write(const char* data, std::size_t size)
{
    const std::lock_guard<std::mutex> lock(m_file->mutex);
    if (m_outcome == Outcome::Good && m_turn != m_file->turn)
    {
        fail(Outcome::TakenOver, "another upload of this name has begun");
    }
    if (m_outcome != Outcome::Good)
    {
        return;
    }
    const std::uint64_t before = m_file->length;
    if (m_fd < 0)
    {
        m_file->bytes.append(data, size);
        m_file->length += size;
    }
    else
    {
        writeFile(data, size);
    }
    m_file->changed = m_file->clock();
    if (m_file->hash)
    {
        m_file->hash->add(data, static_cast<std::size_t>(m_file->length - before));
    }
}

void UploadWriter::writeFile(const char* data, std::size_t size)
{
    for (std::size_t done = 0; done < size;)
    {
        const ssize_t step = pwrite(m_fd, data + done, size - done, static_cast<off_t>(m_file->length));
        if (step < 0 && errno == EINTR)
        {
            continue;
        }
        if (step <= 0)
        {
            fail(Outcome::Failed, std::strerror(errno));
            return;
        }
        done += static_cast<std::size_t>(step);
        m_file->length += static_cast<std::uint64_t>(step);
    }
}

static Uploads::Time changeOf(const std::filesystem::directory_entry& entry)
{
    struct stat state;
    if (stat(entry.path().c_str(), &state) != 0)
    {
        return {};
    }
    return std::chrono::system_clock::from_time_t(state.st_mtime);
}

Uploads::Uploads(const std::string& storage, std::function<Time()> clock) : m_clock(std::move(clock))
{
    if (storage == ":memory:")
    {
        return;
    }
    m_directory = storage;
    const std::filesystem::path directory = std::filesystem::path(m_directory) / folder;
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    if (error)
    {
        throw std::runtime_error("cannot make the directory \"" + directory.string() + "\": " + error.message());
    }
    for (const auto& entry : std::filesystem::directory_iterator(directory))
    {
        const std::string name = entry.path().filename().string();
        if (isName(name) && std::filesystem::is_regular_file(entry.symlink_status()))
        {
            auto held = std::make_shared<HeldFile>();
            held->path = m_directory + "/" + fileOf(name);
            held->length = entry.file_size();
            held->changed = changeOf(entry);
            held->clock = m_clock;
            m_files.emplace(name, std::move(held));
        }
    }
}

Uploads::~Uploads() = default;

bool Uploads::isName(std::string_view name)
{
    const auto allowed = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '_' ||
               c == '-';
    };
    return !name.empty() && name.size() <= maxName && name.front() != '.' &&
           std::all_of(name.begin(), name.end(), allowed);
}

std::string Uploads::fileOf(const std::string& name) const
{
    return m_directory.empty() ? std::string() : std::string(folder) + "/" + name;
}

std::shared_ptr<HeldFile> Uploads::find(const std::string& name) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_files.find(name);
    return found == m_files.end() ? nullptr : found->second;
}

std::unique_ptr<UploadWriter> Uploads::open(const std::string& name, std::uint64_t position)
{
    const std::lock_guard<std::mutex> lock(m_mutex); /* nothing is removed before it is written */
    const auto found = m_files.find(name);
    std::shared_ptr<HeldFile> held = found == m_files.end() ? nullptr : found->second;
    if (held == nullptr)
    {
        held = std::make_shared<HeldFile>();
        held->path = m_directory.empty() ? std::string() : m_directory + "/" + fileOf(name);
        held->clock = m_clock;
        if (position == 0) /* otherwise nothing begins, and nothing is held */
        {
            held = m_files.emplace(name, std::move(held)).first->second;
        }
    }
    return std::make_unique<UploadWriter>(std::move(held), position);
}

std::optional<Upload> Uploads::state(const std::string& name) const
{
    const std::shared_ptr<HeldFile> held = find(name);
    if (held == nullptr)
    {
        return std::nullopt;
    }
    const std::lock_guard<std::mutex> lock(held->mutex);
    return describe(name, *held);
}

std::size_t Uploads::count() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_files.size();
}

std::vector<Upload> Uploads::all() const
{
    return describeAll(true);
}

std::vector<Upload> Uploads::overview() const
{
    return describeAll(false);
}

std::vector<Upload> Uploads::describeAll(bool bytes) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::vector<Upload> found;
    for (const auto& [name, held] : m_files)
    {
        const std::lock_guard<std::mutex> fileLock(held->mutex);
        Upload upload = describe(name, *held);
        upload.file = fileOf(name);
        upload.bytes = bytes ? held->bytes : std::string();
        found.push_back(std::move(upload));
    }
    return found;
}

std::uint64_t Uploads::bytes() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::uint64_t sum = 0;
    for (const auto& [name, held] : m_files)
    {
        const std::lock_guard<std::mutex> fileLock(held->mutex);
        sum += held->length;
    }
    return sum;
}

/* With the lock. */
Uploads::Files::const_iterator Uploads::findOldest() const
{
    auto oldest = m_files.end();
    Time changed;
    for (auto each = m_files.begin(); each != m_files.end(); ++each)
    {
        const std::lock_guard<std::mutex> fileLock(each->second->mutex);
        if (each->second->writers == 0 && (oldest == m_files.end() || each->second->changed < changed))
        {
            oldest = each;
            changed = each->second->changed;
        }
    }
    return oldest;
}

std::optional<Uploads::Time> Uploads::oldest() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = findOldest();
    if (found == m_files.end())
    {
        return std::nullopt;
    }
    const std::lock_guard<std::mutex> fileLock(found->second->mutex);
    return found->second->changed;
}

void Uploads::removeOldest()
{
    const std::lock_guard<std::mutex> lock(m_mutex); /* no writer begins meanwhile */
    const auto found = findOldest();
    if (found != m_files.end())
    {
        if (!found->second->path.empty())
        {
            unlink(found->second->path.c_str());
        }
        m_files.erase(found);
    }
}

} // namespace viewlib
