/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Posts beside a bare libcurl program that sends the same requests to the same server. The two take turns, a few
 * requests each, and change who begins; a ratio is the median of the turns' ratios.
 */
#include <atomic>
#include <cstring>
#include <functional>
#include <memory>
#include <thread>

#include <cjson/cJSON.h>

#include "bare_curl.h"
#include "clocks.h"
#include "objects/documents.h"
#include "records.h"
#include "report.h"
#include "session.h"
#include "writers.h"

namespace
{

using namespace bench;

using Request = std::function<bool()>;

struct Cost
{
    double wall = 0;
    double processor = 0;
};

Cost operator/(const Cost& left, const Cost& right)
{
    return {left.wall / right.wall, left.processor / right.processor};
}

Cost costOf(const Request& request, int times)
{
    const long long wall = wallNanoseconds();
    const long long processor = threadNanoseconds();
    for (int index = 0; index < times; ++index)
    {
        if (!request())
        {
            fail("a post failed");
        }
    }
    return {static_cast<double>(wallNanoseconds() - wall) / times,
            static_cast<double>(threadNanoseconds() - processor) / times};
}

/* What each turn gives, and of both sides what it costs. */
struct Comparison
{
    Cost ratio;
    Cost library;
    Cost bare;
};

struct Samples
{
    std::vector<double> wall;
    std::vector<double> processor;

    void add(const Cost& cost)
    {
        wall.push_back(cost.wall);
        processor.push_back(cost.processor);
    }

    Cost middle() const
    {
        return {median(wall), median(processor)};
    }
};

Comparison compared(const Request& library, const Request& bare, int turns, int perTurn)
{
    Samples ratios;
    Samples libraryCosts;
    Samples bareCosts;
    for (int turn = -1; turn < turns; ++turn)
    {
        const bool libraryFirst = turn % 2 == 0;
        const Cost first = costOf(libraryFirst ? library : bare, perTurn);
        const Cost second = costOf(libraryFirst ? bare : library, perTurn);
        if (turn >= 0) /* the first one only warms up */
        {
            const Cost& ofLibrary = libraryFirst ? first : second;
            const Cost& ofBare = libraryFirst ? second : first;
            ratios.add(ofLibrary / ofBare);
            libraryCosts.add(ofLibrary);
            bareCosts.add(ofBare);
        }
    }
    return {ratios.middle(), libraryCosts.middle(), bareCosts.middle()};
}

std::string microseconds(double library, double bare)
{
    char text[64];
    std::snprintf(text, sizeof(text), "%.0f and %.0f us", library / 1000, bare / 1000);
    return text;
}

void reportPost(Report& report, const std::string& what, const Comparison& result, double farOff)
{
    report.add(what + ", processor", "bare libcurl", result.ratio.processor, "", atMost(1.03, farOff),
               microseconds(result.library.processor, result.bare.processor));
    report.add(what + ", elapsed", "bare libcurl", result.ratio.wall, "", atMost(1.03, farOff),
               microseconds(result.library.wall, result.bare.wall));
}

/* Rows for comparison: what another program comes to, or the library beside something else. */
void reportWithoutLimit(Report& report, const std::string& what, const std::string& beside, const Comparison& result)
{
    report.add("  " + what + ", processor", beside, result.ratio.processor, "", noLimit(),
               microseconds(result.library.processor, result.bare.processor));
    report.add("  " + what + ", elapsed", beside, result.ratio.wall, "", noLimit(),
               microseconds(result.library.wall, result.bare.wall));
}

/* What a host would do without the library. */
constexpr const char* kByHand = "libcurl, cJSON by hand";

/* A document that is released with this. */
class Text
{
  public:
    explicit Text(char* text) : m_text(text), m_size(std::strlen(text))
    {
    }

    ~Text()
    {
        cJSON_free(m_text);
    }

    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;

    const char* data() const
    {
        return m_text;
    }

    size_t size() const
    {
        return m_size;
    }

  private:
    char* m_text;
    size_t m_size;
};

/* ------------------------------------------------------------------------------------------------- one at a time */

struct FacePost
{
    FacePost(const SinkServer& server, unsigned members)
        : record(face(members)), body(_PubSecImageFaceJSON(&record, 1)), url(server.url("/VIID/Faces"))
    {
    }

    bool library() const
    {
        return PubSecPostImageFace(0, &record, 1) == PUBSEC_OK;
    }

    bool bare() const
    {
        return barePost(url, body.data(), body.size()) == 200;
    }

    /* The least that cJSON and libcurl take together. */
    bool sparing() const
    {
        SparingCjsonOut out;
        char text[4096];
        writeList(out, "FaceListObject", "FaceObject", &record, 1);
        return out.printInto(text, sizeof(text)) && barePost(url, text, std::strlen(text)) == 200;
    }

    TPubSecFaceObjInfo record;
    Text body;
    std::string url;
};

void measureFace(Report& report, const FacePost& post, bool isShort)
{
    const Comparison result =
        compared([&post] { return post.library(); }, [&post] { return post.bare(); }, isShort ? 30 : 150, 20);
    reportPost(report, "face post, " + std::to_string(post.body.size()) + " bytes", result, 2.06);
}

void measureFaceCjson(Report& report, const FacePost& post, bool isShort)
{
    const Comparison result =
        compared([&post] { return post.sparing(); }, [&post] { return post.bare(); }, isShort ? 30 : 150, 20);
    reportWithoutLimit(report, "libcurl and cJSON alone", "bare libcurl", result);
}

void measureFaceByHand(Report& report, const FacePost& post, bool isShort)
{
    const Request byHand = [&post] {
        CjsonOut out;
        writeList(out, "FaceListObject", "FaceObject", &post.record, 1);
        const Text text(out.finish());
        return barePost(post.url, text.data(), text.size()) == 200;
    };
    reportWithoutLimit(report, "face post, 60 members", kByHand,
                       compared([&post] { return post.library(); }, byHand, isShort ? 20 : 100, 20));
}

struct ImagePost
{
    explicit ImagePost(const SinkServer& server)
        : picture(1'200'000, 8, 150'000), body(_PubSecImageGatherJSON(&picture.record())),
          url(server.url("/VIID/Images"))
    {
    }

    bool library() const
    {
        char status[260];
        return PubSecPostImage(0, &picture.record(), status) == PUBSEC_OK;
    }

    bool bare() const
    {
        return barePost(url, body.data(), body.size()) == 200;
    }

    bool byHand() const
    {
        CjsonOut out;
        writePicture(out, picture.record());
        const Text text(out.finish());
        return barePost(url, text.data(), text.size()) == 200;
    }

    /* The least that cJSON and libcurl take together. */
    bool sparing() const
    {
        SparingCjsonOut out;
        writePicture(out, picture.record());
        const size_t size = body.size() + 4096;
        const std::unique_ptr<char[]> text(new char[size]);
        return out.printInto(text.get(), static_cast<int>(size)) &&
               barePost(url, text.get(), std::strlen(text.get())) == 200;
    }

    /* The least that any document takes. */
    bool copying() const
    {
        const std::unique_ptr<char[]> copy(new char[body.size()]);
        std::memcpy(copy.get(), body.data(), body.size());
        return barePost(url, copy.get(), body.size()) == 200;
    }

    Picture picture;
    Text body;
    std::string url;
};

void measureImage(Report& report, const SinkServer& server, bool isShort)
{
    const ImagePost post(server);
    const Request library = [&post] { return post.library(); };
    const Request bare = [&post] { return post.bare(); };
    const int turns = isShort ? 20 : 80;
    const std::string what = "image post, 2.4 MB of pictures";
    reportPost(report, what, compared(library, bare, turns, 4), 4);
    reportWithoutLimit(report, what, kByHand,
                       compared(
                           library, [&post] { return post.byHand(); }, turns, 4));
    reportWithoutLimit(report, "libcurl and cJSON alone", "bare libcurl",
                       compared([&post] { return post.sparing(); }, bare, turns, 4));
    reportWithoutLimit(report, "libcurl sending a fresh copy of it", "bare libcurl",
                       compared([&post] { return post.copying(); }, bare, turns, 4));
}

/* -------------------------------------------------------------------------------------------------- many at once */

/* Requests a second of eight threads. */
double rateOf(const Request& request, int perThread)
{
    constexpr int kThreads = 8;
    std::atomic<bool> isGood{true};
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    const long long begin = wallNanoseconds();
    for (int index = 0; index < kThreads; ++index)
    {
        threads.emplace_back([&request, &isGood, perThread] {
            for (int count = 0; count < perThread; ++count)
            {
                isGood = request() && isGood;
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    if (!isGood)
    {
        fail("a post of eight threads failed");
    }
    return kThreads * perThread * 1e9 / static_cast<double>(wallNanoseconds() - begin);
}

void reportRates(Report& report, const std::string& what, const Request& request, const Request& bare, bool isShort,
                 Limit limit)
{
    const int perThread = 40;
    std::vector<double> ratios;
    std::vector<double> rates;
    for (int turn = 0; turn < (isShort ? 8 : 31); ++turn)
    {
        const bool bareFirst = turn % 2 != 0;
        const double first = rateOf(bareFirst ? bare : request, perThread);
        const double second = rateOf(bareFirst ? request : bare, perThread);
        ratios.push_back(bareFirst ? second / first : first / second);
        rates.push_back(bareFirst ? second : first);
    }
    char remark[32];
    std::snprintf(remark, sizeof(remark), "%.0f posts/s", median(rates));
    report.add(what, "bare libcurl", median(ratios), "", limit, remark);
}

void measureThreads(Report& report, const FacePost& post, bool isShort)
{
    const Request bare = [&post] { return post.bare(); };
    reportRates(
        report, "face posts of 8 threads, rate", [&post] { return post.library(); }, bare, isShort,
        atLeast(0.97, 0.48));
    reportRates(
        report, "  libcurl and cJSON alone, 8 threads, rate", [&post] { return post.sparing(); }, bare, isShort,
        noLimit());
}

} // namespace

int main(int argc, char** argv)
{
    const Options options = parseOptions(argc, argv);
    const SinkServer server;
    initBareCurl();
    startRegistered(server);
    Report report(options);
    {
        const FacePost post(server, 20);
        measureFace(report, post, options.isShort);
        measureFaceCjson(report, post, options.isShort);
        measureFaceByHand(report, FacePost(server, kObjectMembers), options.isShort);
        measureImage(report, server, options.isShort);
        measureThreads(report, post, options.isShort);
    }
    stopStack();
    return report.status();
}
