/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Many devices that post faces to a server for a while, as fast as it answers. Afterwards what the server keeps is
 * compared with what it has acknowledged. load.sh starts the servers.
 */
#include <curl/curl.h>
#include <openssl/evp.h>
#include <sqlite3.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace
{

using Clock = std::chrono::steady_clock;

constexpr std::size_t kPictureSize = 100 * 1024;
constexpr std::size_t kStampOffset = 96 * 1024; /* a multiple of 3: its base64 stands by itself */
constexpr std::size_t kFaceIdSize = 48;
static_assert(kStampOffset % 3 == 0 && kFaceIdSize % 3 == 0, "the stamp must fill whole groups of base64");

struct Settings
{
    std::string name = "server";
    std::uint16_t port = 0;
    int seconds = 60;
    unsigned devices = 200;
    unsigned connections = 16;
    std::string picture; /* a JPEG smaller than the pictures that are sent */
    std::string user;    /* "name:password" to register with; empty: the server knows no devices */
    std::string data;    /* the server's directory, to compare; empty: nothing is compared */
    long pid = 0;        /* whose memory is watched; 0: nobody's */
};

std::string base64(const std::string& bytes)
{
    std::string text(4 * ((bytes.size() + 2) / 3) + 1, '\0');
    const int size =
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()),
                        reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
    text.resize(static_cast<std::size_t>(size));
    return text;
}

std::string md5(const std::string& bytes)
{
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned size = 0;
    EVP_Digest(bytes.data(), bytes.size(), digest, &size, EVP_md5(), nullptr);
    return std::string(reinterpret_cast<char*>(digest), size);
}

std::string readFile(const std::string& name)
{
    std::ifstream file(name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

/* The picture that all are made from: a JPEG, and bytes behind its end that do not compress. */
std::string basePicture(const std::string& jpeg)
{
    std::string picture = readFile(jpeg);
    if (picture.empty() || picture.size() > kStampOffset)
    {
        throw std::runtime_error("no picture of a fitting size in \"" + jpeg + "\"");
    }
    for (std::uint64_t state = 88172645463325252ULL; picture.size() < kPictureSize;)
    {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        picture += static_cast<char>(state);
    }
    return picture;
}

/* Each face has a picture of its own: its identifier stands in it. */
std::string pictureOf(std::string base, const std::string& faceId)
{
    return base.replace(kStampOffset, kFaceIdSize, faceId);
}

std::string deviceId(unsigned device)
{
    char text[32];
    std::snprintf(text, sizeof text, "340200000011900%05u", device);
    return text;
}

std::string sourceId(unsigned device, unsigned serial)
{
    char text[64];
    std::snprintf(text, sizeof text, "%s02202601010000%02u%05u", deviceId(device).c_str(), serial / 100000 % 60,
                  serial % 100000);
    return text;
}

std::string faceId(unsigned device, unsigned serial)
{
    return sourceId(device, serial) + "0600001";
}

/* A request in which only identifiers change, all of a fixed length: it is made once, then written over. */
class Request
{
  public:
    explicit Request(const std::string& picture)
    {
        body(R"({"FaceListObject":{"FaceObject":[{"FaceID":")");
        part(m_faces, kFaceIdSize);
        body(R"(","InfoKind":1,"SourceID":")");
        part(m_sources, 41);
        body(R"(","DeviceID":")");
        part(m_devices, 20);
        body(R"(","ShotTime":"20260101000000","LeftTopX":10,"LeftTopY":10,"RightBtmX":90,"RightBtmY":110,)"
             R"("IsDriver":2,"IsForeigner":2,"IsSuspectedTerrorist":2,"IsCriminalInvolved":2,"IsDetainees":2,)"
             R"("IsVictim":2,"IsSuspiciousPerson":2,"SubImageList":{"SubImageInfoObject":[{"ImageID":")");
        part(m_sources, 41);
        body(R"(","EventSort":4,"DeviceID":")");
        part(m_devices, 20);
        body(R"(","StoragePath":"","Type":"11","FileFormat":"Jpeg","ShotTime":"20260101000000","Width":480,)"
             R"("Height":600,"Data":")");
        const std::size_t data = m_text.size();
        body(base64(picture));
        m_stamp = data + kStampOffset / 3 * 4;
        body(R"("}]}}]}})");
        const std::string head = "POST /VIID/Faces HTTP/1.1\r\nHost: 127.0.0.1\r\nUser-Identify: ";
        const std::string rest = "\r\nContent-Type: application/VIID+JSON;charset=UTF-8\r\nContent-Length: " +
                                 std::to_string(m_text.size()) + "\r\n\r\n";
        const std::size_t shift = head.size() + 20 + rest.size();
        for (std::vector<std::size_t>* places : {&m_faces, &m_sources, &m_devices})
        {
            std::for_each(places->begin(), places->end(), [shift](std::size_t& place) { place += shift; });
        }
        m_stamp += shift;
        m_devices.push_back(head.size());
        m_text = head + std::string(20, '0') + rest + m_text;
    }

    const std::string& of(unsigned device, unsigned serial)
    {
        const std::string face = faceId(device, serial);
        put(m_faces, face);
        put(m_sources, sourceId(device, serial));
        put(m_devices, deviceId(device));
        m_text.replace(m_stamp, kFaceIdSize / 3 * 4, base64(face));
        return m_text;
    }

  private:
    void body(const std::string& text)
    {
        m_text += text;
    }
    void part(std::vector<std::size_t>& places, std::size_t size)
    {
        places.push_back(m_text.size());
        m_text.append(size, '0');
    }
    void put(const std::vector<std::size_t>& places, const std::string& value)
    {
        for (const std::size_t place : places)
        {
            m_text.replace(place, value.size(), value);
        }
    }

    std::string m_text;
    std::vector<std::size_t> m_faces, m_sources, m_devices;
    std::size_t m_stamp = 0;
};

/* One connection for all that a thread sends. Throws when it breaks. */
class Line
{
  public:
    explicit Line(std::uint16_t port) : m_fd(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in server = {};
        server.sin_family = AF_INET;
        server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        server.sin_port = htons(port);
        const int on = 1;
        setsockopt(m_fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        const timeval patience = {30, 0};
        setsockopt(m_fd, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        if (connect(m_fd, reinterpret_cast<sockaddr*>(&server), sizeof server) != 0)
        {
            throw std::runtime_error("cannot connect");
        }
    }
    ~Line()
    {
        close(m_fd);
    }
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    /* Status and body of the answer. */
    std::pair<int, std::string> exchange(const std::string& request)
    {
        for (std::size_t sent = 0; sent < request.size();)
        {
            const ssize_t step = send(m_fd, request.data() + sent, request.size() - sent, MSG_NOSIGNAL);
            if (step <= 0)
            {
                throw std::runtime_error("the connection broke while sending");
            }
            sent += static_cast<std::size_t>(step);
        }
        std::size_t end = 0;
        while ((end = m_input.find("\r\n\r\n")) == std::string::npos)
        {
            receive();
        }
        const std::string head = m_input.substr(0, end);
        m_input.erase(0, end + 4);
        const char* const field = strcasestr(head.c_str(), "\r\nContent-Length:");
        const std::size_t length = field == nullptr ? 0 : std::strtoul(field + 17, nullptr, 10);
        while (m_input.size() < length)
        {
            receive();
        }
        const std::string body = m_input.substr(0, length);
        m_input.erase(0, length);
        return {head.size() > 9 ? std::atoi(head.c_str() + 9) : 0, body};
    }

  private:
    void receive()
    {
        char block[4096];
        const ssize_t size = recv(m_fd, block, sizeof block, 0);
        if (size <= 0)
        {
            throw std::runtime_error("the connection broke before the answer");
        }
        m_input.append(block, static_cast<std::size_t>(size));
    }

    const int m_fd;
    std::string m_input;
};

size_t ignore(char*, size_t size, size_t count, void*)
{
    return size * count;
}

void registerDevices(const Settings& settings)
{
    const std::unique_ptr<CURL, void (*)(CURL*)> handle(curl_easy_init(), curl_easy_cleanup);
    const std::string url = "http://127.0.0.1:" + std::to_string(settings.port) + "/VIID/System/Register";
    for (unsigned device = 0; device < settings.devices; ++device)
    {
        const std::string body = R"({"RegisterObject":{"DeviceID":")" + deviceId(device) + "\"}}";
        curl_slist* headers = curl_slist_append(nullptr, ("User-Identify: " + deviceId(device)).c_str());
        headers = curl_slist_append(headers, "Content-Type: application/VIID+JSON;charset=UTF-8");
        curl_easy_setopt(handle.get(), CURLOPT_URL, url.c_str());
        curl_easy_setopt(handle.get(), CURLOPT_HTTPHEADER, headers);
        curl_easy_setopt(handle.get(), CURLOPT_HTTPAUTH, CURLAUTH_DIGEST);
        curl_easy_setopt(handle.get(), CURLOPT_USERPWD, settings.user.c_str());
        curl_easy_setopt(handle.get(), CURLOPT_COPYPOSTFIELDS, body.c_str());
        curl_easy_setopt(handle.get(), CURLOPT_WRITEFUNCTION, ignore);
        const CURLcode code = curl_easy_perform(handle.get());
        long status = 0;
        curl_easy_getinfo(handle.get(), CURLINFO_RESPONSE_CODE, &status);
        curl_slist_free_all(headers);
        if (code != CURLE_OK || status != 200)
        {
            throw std::runtime_error("device " + deviceId(device) + " cannot register: " + curl_easy_strerror(code) +
                                     ", status " + std::to_string(status));
        }
    }
}

/* What one connection has seen. */
struct Tally
{
    std::vector<std::pair<unsigned, unsigned>> acknowledged; /* device and serial */
    std::vector<float> milliseconds;
    std::string failure;
};

void post(const Settings& settings, unsigned connection, Clock::time_point end, const std::string& picture,
          Tally& tally)
{
    try
    {
        Line line(settings.port);
        Request request(picture);
        for (unsigned serial = 0; Clock::now() < end; ++serial)
        {
            /* Each connection speaks for devices of its own. */
            const unsigned share = (settings.devices - connection + settings.connections - 1) / settings.connections;
            const unsigned device = connection + serial % share * settings.connections;
            const std::string& text = request.of(device, serial);
            const Clock::time_point begin = Clock::now();
            const auto [status, body] = line.exchange(text);
            const std::chrono::duration<float, std::milli> time = Clock::now() - begin;
            const bool kept = settings.user.empty() || body.find("\"StatusCode\":0") != std::string::npos;
            if (status != 200 || !kept)
            {
                throw std::runtime_error("status " + std::to_string(status) + ": " + body.substr(0, 300));
            }
            tally.milliseconds.push_back(time.count());
            tally.acknowledged.emplace_back(device, serial);
        }
    }
    catch (const std::exception& error)
    {
        tally.failure = error.what();
    }
}

/* In MiB; 0 when it is not to be had. */
double residentMemory(long pid)
{
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);)
    {
        if (line.compare(0, 6, "VmRSS:") == 0)
        {
            return std::strtod(line.c_str() + 6, nullptr) / 1024;
        }
    }
    return 0;
}

/* Every acknowledged picture has to be there once, byte for byte, and no other. Returns how many are not. */
std::size_t compare(const Settings& settings, const std::vector<Tally>& tallies, const std::string& picture)
{
    sqlite3* opened = nullptr;
    sqlite3_stmt* rows = nullptr;
    const int result = sqlite3_open_v2((settings.data + "/viewlib.db").c_str(), &opened, SQLITE_OPEN_READONLY, nullptr);
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> database(opened, sqlite3_close);
    const char* const query = "SELECT o.object, p.file FROM objects o JOIN pictures p ON p.object = o.id "
                              "WHERE o.kind = 'Face'";
    if (result != SQLITE_OK || sqlite3_prepare_v2(opened, query, -1, &rows, nullptr) != SQLITE_OK)
    {
        throw std::runtime_error(std::string("the server's database: ") + sqlite3_errmsg(opened));
    }
    const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> closing(rows, sqlite3_finalize);
    std::map<std::string, std::string> held;
    std::size_t wrong = 0;
    while (sqlite3_step(rows) == SQLITE_ROW)
    {
        const auto* object = reinterpret_cast<const char*>(sqlite3_column_text(rows, 0));
        const auto* file = reinterpret_cast<const char*>(sqlite3_column_text(rows, 1));
        wrong += held.emplace(object, file).second ? 0U : 1U;
    }
    std::size_t acknowledged = 0;
    for (const Tally& tally : tallies)
    {
        for (const auto& [device, serial] : tally.acknowledged)
        {
            const std::string id = faceId(device, serial);
            const auto found = held.find(id);
            const bool same = found != held.end() &&
                              md5(readFile(settings.data + "/" + found->second)) == md5(pictureOf(picture, id));
            wrong += same ? 0U : 1U;
            ++acknowledged;
        }
    }
    std::printf("  %-10s %zu acknowledged, %zu faces held, %zu lost or different\n", "", acknowledged, held.size(),
                wrong);
    return wrong + (held.size() > acknowledged ? held.size() - acknowledged : 0);
}

/* Watches the server's memory meanwhile; false when it grows. */
bool watch(const Settings& settings, Clock::time_point begin, Clock::time_point end)
{
    const int first = std::max(1, settings.seconds / 6); /* 10 s into a minute: all buffers have been used by then */
    std::this_thread::sleep_until(begin + std::chrono::seconds(first));
    const double early = residentMemory(settings.pid);
    double most = early;
    while (Clock::now() < end - std::chrono::milliseconds(500))
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        most = std::max(most, residentMemory(settings.pid));
    }
    const double late = residentMemory(settings.pid);
    std::printf("  %-10s resident memory %.0f MiB after %d s, %.0f MiB at the end, %.0f MiB at most\n", "", early,
                first, late, most);
    return late > 0 && late < early * 1.25 + 16; /* what an allocator may keep; a leak of one request would be 1 GB */
}

void printRate(const Settings& settings, std::vector<Tally>& tallies, double seconds)
{
    std::vector<float> times;
    for (const Tally& tally : tallies)
    {
        times.insert(times.end(), tally.milliseconds.begin(), tally.milliseconds.end());
    }
    std::sort(times.begin(), times.end());
    const auto at = [&times](double share) {
        return times.empty() ? 0.0F : times[static_cast<std::size_t>(share * static_cast<double>(times.size() - 1))];
    };
    const double rate = static_cast<double>(times.size()) / seconds;
    std::printf("  %-10s %zu posts in %.1f s: %.0f a second, %.0f MB/s of pictures, half within %.1f ms, 99 %% within "
                "%.1f ms\n",
                settings.name.c_str(), times.size(), seconds, rate, rate * kPictureSize / 1e6, double(at(0.5)),
                double(at(0.99)));
    std::printf("rate\t%s\t%.1f\n", settings.name.c_str(), rate);
}

int run(const Settings& settings)
{
    const std::string picture = basePicture(settings.picture);
    if (!settings.user.empty())
    {
        registerDevices(settings);
    }
    std::vector<Tally> tallies(settings.connections);
    std::vector<std::thread> threads;
    const Clock::time_point begin = Clock::now();
    const Clock::time_point end = begin + std::chrono::seconds(settings.seconds);
    for (unsigned i = 0; i < settings.connections; ++i)
    {
        threads.emplace_back([&, i] { post(settings, i, end, picture, tallies[i]); });
    }
    const bool flat = settings.pid == 0 || watch(settings, begin, end);
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    printRate(settings, tallies, std::chrono::duration<double>(Clock::now() - begin).count());
    bool good = flat;
    for (const Tally& tally : tallies)
    {
        if (!tally.failure.empty())
        {
            std::printf("  %-10s FAILED: %s\n", "", tally.failure.c_str());
            good = false;
        }
    }
    const bool whole = settings.data.empty() || compare(settings, tallies, picture) == 0;
    if (!flat)
    {
        std::printf("  %-10s FAILED: the memory grows\n", "");
    }
    return good && whole ? 0 : 1;
}

int freePort()
{
    const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    const bool known = bind(fd, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                       getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    close(fd);
    std::printf("%u\n", unsigned(ntohs(address.sin_port)));
    return known ? 0 : 1;
}

Settings parse(int count, char** arguments)
{
    Settings settings;
    for (int i = 1; i + 1 < count; i += 2)
    {
        const std::string name = arguments[i];
        const std::string value = arguments[i + 1];
        const auto number = [&value] { return std::strtoul(value.c_str(), nullptr, 10); };
        const std::map<std::string, std::string*> texts = {{"--name", &settings.name},
                                                           {"--picture", &settings.picture},
                                                           {"--user", &settings.user},
                                                           {"--data", &settings.data}};
        if (texts.count(name) != 0)
        {
            *texts.at(name) = value;
        }
        else if (name == "--port")
        {
            settings.port = static_cast<std::uint16_t>(number());
        }
        else if (name == "--seconds")
        {
            settings.seconds = static_cast<int>(number());
        }
        else if (name == "--pid")
        {
            settings.pid = static_cast<long>(number());
        }
        else
        {
            throw std::runtime_error("unknown argument " + name);
        }
    }
    return settings;
}

} // namespace

int main(int count, char** arguments)
{
    try
    {
        curl_global_init(CURL_GLOBAL_DEFAULT);
        return count == 2 && arguments[1] == std::string("--free-port") ? freePort() : run(parse(count, arguments));
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "bench_load: %s\n", error.what());
        return 1;
    }
}
