/* SPDX-License-Identifier: Apache-2.0 */
/* What posts take from the heap, and the upload of a file beside libcurl's. */
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <functional>

#include <cjson/cJSON.h>

#include "bare_curl.h"
#include "clocks.h"
#include "heap_meter.h"
#include "members.h"
#include "objects/documents.h"
#include "records.h"
#include "report.h"
#include "session.h"
#include "writers.h"

namespace
{

using namespace bench;

/* ------------------------------------------------------------------------------------------------- allocations */

/* Members of a printed document: what stands before a colon. Its texts hold neither quotes nor colons. */
size_t membersOfText(const char* text)
{
    size_t members = 0;
    for (const char* at = std::strstr(text, "\":"); at != nullptr; at = std::strstr(at + 1, "\":"))
    {
        ++members;
    }
    return members;
}

size_t allocationsOf(const std::function<char*()>& build, size_t* members)
{
    heap::begin();
    char* const text = build();
    const size_t count = heap::allocations();
    *members = membersOfText(text);
    cJSON_free(text);
    return count;
}

/* Of which the printed text is one. */
void reportAllocations(Report& report)
{
    const std::vector<TPubSecFaceObjInfo> records = faces(8);
    size_t members = 0;
    const size_t library = allocationsOf([&records] { return _PubSecImageFaceJSON(records.data(), 8); }, &members);
    const size_t byHand = allocationsOf(
        [&records] {
            CjsonOut out;
            writeList(out, "FaceListObject", "FaceObject", records.data(), records.size());
            return out.finish();
        },
        &members);
    const double each = static_cast<double>(members);
    char remark[96];
    std::snprintf(remark, sizeof(remark), "%zu for %zu members, 8 array elements and the document; by hand %.2f",
                  library - 1, members, static_cast<double>(byHand) / each);
    report.add("allocations per member, 8 faces of 60", "", static_cast<double>(library - 1) / each, "", atMost(1, 2),
               remark);
    std::snprintf(remark, sizeof(remark), "the tree's nodes: members, array elements, the document");
    report.add("  allocations per node of the document", "", static_cast<double>(library - 1) / (each + 9), "",
               noLimit(), remark);
}

/* -------------------------------------------------------------------------------------------------------- peaks */

void reportPeak(Report& report)
{
    const Picture picture(10'000'000);
    char* const text = _PubSecImageGatherJSON(&picture.record());
    const double size = static_cast<double>(std::strlen(text));
    cJSON_free(text);
    char status[260];
    heap::begin();
    if (PubSecPostImage(0, &picture.record(), status) != PUBSEC_OK)
    {
        fail("the picture is not posted");
    }
    const double peak = static_cast<double>(heap::peakBytes());
    char remark[64];
    std::snprintf(remark, sizeof(remark), "%.0f KiB beside the document, libcurl's included", (peak - size) / 1024);
    report.add("peak heap of posting 10 MB", "its document", peak / size, "", atMost(1.10, 1.2), remark);
}

/* ------------------------------------------------------------------------------------------------------- upload */

/* A file of zeros; it takes no room on the disk. Gone with the object. */
class BigFile
{
  public:
    explicit BigFile(off_t size)
    {
        char path[] = "/tmp/pubsec-bench-XXXXXX";
        const int file = mkstemp(path);
        m_path = path;
        if (file < 0 || ftruncate(file, size) != 0)
        {
            fail("no file to upload");
        }
        close(file);
    }

    ~BigFile()
    {
        unlink(m_path.c_str());
    }

    BigFile(const BigFile&) = delete;
    BigFile& operator=(const BigFile&) = delete;

    const std::string& path() const
    {
        return m_path;
    }

  private:
    std::string m_path;
};

double secondsOf(const std::function<bool()>& upload)
{
    const long long begin = wallNanoseconds();
    if (!upload())
    {
        fail("an upload failed");
    }
    return static_cast<double>(wallNanoseconds() - begin) / 1e9;
}

void reportUpload(Report& report, const SinkServer& server, bool isShort)
{
    const off_t mebibytes = isShort ? 64 : 256;
    const BigFile file(mebibytes << 20);
    const std::string url = server.url("/upload");
    const auto library = [&] { return PubSecCurlUpLoadFile(url.c_str(), file.path().c_str(), 0) == PUBSEC_OK; };
    const auto bare = [&] { return bareUpload(url, file.path()) == 200; };
    std::vector<double> ratios;
    double seconds = 0;
    size_t peak = 0;
    for (int turn = 0; turn < (isShort ? 2 : 4); ++turn)
    {
        const bool libraryFirst = turn % 2 == 0;
        const double bareBefore = libraryFirst ? 0 : secondsOf(bare);
        heap::begin();
        seconds = secondsOf(library);
        peak = std::max(peak, heap::peakBytes());
        ratios.push_back((libraryFirst ? secondsOf(bare) : bareBefore) / seconds);
    }
    const std::string what = "file upload, " + std::to_string(mebibytes) + " MiB";
    char remark[32];
    std::snprintf(remark, sizeof(remark), "%.0f MiB/s", static_cast<double>(mebibytes) / seconds);
    report.add(what + ", rate", "bare libcurl, same delays", median(ratios), "", atLeast(0.97, 0.48), remark);
    report.add(what + ", heap growth", "", static_cast<double>(peak) / (1 << 20), "MiB", atMost(1, 1),
               "libcurl's buffers included");
}

} // namespace

int main(int argc, char** argv)
{
    const Options options = parseOptions(argc, argv);
    const SinkServer server;
    initBareCurl();
    startRegistered(server);
    Report report(options);
    reportAllocations(report);
    reportPeak(report);
    reportUpload(report, server, options.isShort);
    stopStack();
    return report.status();
}
