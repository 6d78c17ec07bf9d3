/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Time for making documents, beside other JSON writers making the same text, and for the helpers beside OpenSSL's. The
 * repetitions of all are run in random order; a ratio is that of the shortest ones.
 */
#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>

#include <benchmark/benchmark.h>
#include <openssl/evp.h>

#include "objects/documents.h"
#include "records.h"
#include "report.h"
#include "util/md5.h"
#include "writers.h"

namespace
{

using namespace bench;

/* Keeps the shortest processor time of each benchmark, and prints nothing. */
class Collector : public benchmark::ConsoleReporter
{
  public:
    Collector() : ConsoleReporter(OO_None)
    {
    }

    bool ReportContext(const Context&) override
    {
        return true;
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs)
        {
            if (run.run_type == Run::RT_Iteration && run.iterations != 0)
            {
                const double each = run.cpu_accumulated_time / static_cast<double>(run.iterations);
                const std::string name = run.run_name.function_name;
                const auto place = m_shortest.try_emplace(name, each).first;
                place->second = std::min(place->second, each);
            }
        }
    }

    double seconds(const std::string& name) const
    {
        const auto found = m_shortest.find(name);
        return found != m_shortest.end() ? found->second : (fail("was not measured: " + name), 0.0);
    }

    double ratio(const std::string& name, const std::string& beside) const
    {
        return seconds(name) / seconds(beside);
    }

  private:
    std::map<std::string, double> m_shortest;
};

void measure(const std::string& name, const std::function<void()>& run)
{
    benchmark::RegisterBenchmark(name.c_str(), [run](benchmark::State& state) {
        for (auto _ : state)
        {
            run();
        }
    });
}

/* A document of the library's and the functions that write the same with Out. */
struct Document
{
    std::function<char*()> library;
    std::function<void(CjsonOut&)> cjson;
    std::function<void(RapidOut&)> rapid;
    std::function<void(NlohmannOut&)> nlohmann;
};

std::string taken(char* text)
{
    const std::string copy = text != nullptr ? text : "";
    cJSON_free(text);
    return copy;
}

/* What is compared must be the same text, or nothing is compared. */
void expectSameText(const std::string& name, const Document& document)
{
    const std::string text = taken(document.library());
    CjsonOut out;
    document.cjson(out);
    const std::string byHand = taken(out.finish());
    if (text.empty() || text != byHand)
    {
        fail("the documents by the library and by hand differ: " + name + "\n" + text.substr(0, 2000) + "\n" +
             byHand.substr(0, 2000));
    }
}

void measureDocument(const std::string& name, const Document& document)
{
    expectSameText(name, document);
    measure(name + "/library", [document] { cJSON_free(document.library()); });
    measure(name + "/cJSON", [document] {
        CjsonOut out;
        document.cjson(out);
        cJSON_free(out.finish());
    });
    measure(name + "/RapidJSON", [document] {
        RapidOut out;
        document.rapid(out);
        benchmark::DoNotOptimize(out.finish());
    });
    measure(name + "/nlohmann", [document] {
        NlohmannOut out;
        document.nlohmann(out);
        benchmark::DoNotOptimize(out.finish());
    });
}

template <typename Record>
Document listDocument(char* (*build)(const Record*, u32), const char* list, const char* object,
                      const std::vector<Record>& records)
{
    const auto write = [list, object, &records](auto& out) {
        writeList(out, list, object, records.data(), records.size());
    };
    return {[build, &records] { return build(records.data(), static_cast<u32>(records.size())); }, write, write, write};
}

Document pictureDocument(const Picture& picture)
{
    const auto write = [&picture](auto& out) { writePicture(out, picture.record()); };
    return {[&picture] { return _PubSecImageGatherJSON(&picture.record()); }, write, write, write};
}

/* ------------------------------------------------------------------------------------------------ helpers */

constexpr size_t kHelperBytes = size_t{1} << 20;

const u8* helperBytes()
{
    static const std::string bytes = pictureText(kHelperBytes);
    return reinterpret_cast<const u8*>(bytes.data());
}

void measureMd5()
{
    measure("MD5/library", [] {
        TPubSecMd5 state;
        char text[33];
        PubSecMd5Init(&state);
        PubSecMd5Update(&state, helperBytes(), kHelperBytes);
        PubSecMd5FinalText(&state, text);
        benchmark::DoNotOptimize(text[0]);
    });
    measure("MD5/OpenSSL", [] {
        unsigned char digest[EVP_MAX_MD_SIZE];
        EVP_Digest(helperBytes(), kHelperBytes, digest, nullptr, EVP_md5(), nullptr);
        benchmark::DoNotOptimize(digest[0]);
    });
}

/* Base64 a character at a time, as one writes it first. */
void plainBase64(std::string& out, const u8* bytes, size_t size)
{
    static constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    unsigned bits = 0;
    int held = 0;
    for (size_t index = 0; index < size; ++index)
    {
        bits = bits << 8 | bytes[index];
        for (held += 8; held >= 6; held -= 6)
        {
            out.push_back(kAlphabet[bits >> (held - 6) & 63]);
        }
    }
    if (held > 0)
    {
        out.push_back(kAlphabet[bits << (6 - held) & 63]);
    }
    out.append((4 - out.size() % 4) % 4, '=');
}

void measureBase64()
{
    static std::vector<char> text(PUBSEC_BASE64_SIZE(kHelperBytes) + 64);
    measure("base64/library", [] {
        PubSecStackBase64Encode(helperBytes(), kHelperBytes, text.data(), static_cast<u32>(text.size()));
        benchmark::DoNotOptimize(text[0]);
    });
    measure("base64/OpenSSL", [] {
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()), helperBytes(), kHelperBytes);
        benchmark::DoNotOptimize(text[0]);
    });
    measure("base64/plain", [] {
        std::string out;
        out.reserve(text.size());
        plainBase64(out, helperBytes(), kHelperBytes);
        benchmark::DoNotOptimize(out.data());
    });
}

/* ------------------------------------------------------------------------------------------------ the program */

struct Kinds
{
    std::vector<TPubSecFaceObjInfo> faces = bench::faces(8);
    std::vector<TPubSecPersonnelObjInfo> persons = bench::persons(8);
    std::vector<TPubSecMotorVehicleObjInfo> vehicles = bench::vehicles(8);
    Picture picture{10'000'000};
    FacesWithPictures faces16{16, 1000};
    FacesWithPictures faces256{256, 1000};
};

void registerAll(const Kinds& kinds)
{
    measureDocument("face", listDocument(_PubSecImageFaceJSON, "FaceListObject", "FaceObject", kinds.faces));
    measureDocument("person", listDocument(_PubSecImagePersonJSON, "PersonListObject", "PersonObject", kinds.persons));
    measureDocument("vehicle", listDocument(_PubSecImageMotorVehicleJSON, "MotorVehicleListObject",
                                            "MotorVehicleObject", kinds.vehicles));
    measureDocument("picture", pictureDocument(kinds.picture));
    measureDocument("16 faces",
                    listDocument(_PubSecImageFaceJSON, "FaceListObject", "FaceObject", kinds.faces16.records()));
    measureDocument("256 faces",
                    listDocument(_PubSecImageFaceJSON, "FaceListObject", "FaceObject", kinds.faces256.records()));
    measureMd5();
    measureBase64();
}

void reportDocuments(Report& report, const Collector& times)
{
    for (const std::string kind : {"face", "person", "vehicle"})
    {
        report.add(kind + " document, 8 objects of 60 members", "cJSON by hand",
                   times.ratio(kind + "/library", kind + "/cJSON"), "", atMost(0.85, 1.0));
    }
    report.add("image document, 10 MB of picture", "cJSON by hand", times.ratio("picture/library", "picture/cJSON"), "",
               atMost(0.90, 1.0));
    report.add("a face of 256 with 2 sub-images each", "a face of 16",
               times.ratio("256 faces/library", "16 faces/library") / 16, "", atMost(1.1, 2.2));
    for (const std::string kind : {"face", "person", "vehicle", "picture"})
    {
        for (const std::string writer : {"RapidJSON", "nlohmann"})
        {
            report.add(kind + " document, the same", writer, times.ratio(kind + "/library", kind + "/" + writer), "",
                       noLimit());
        }
    }
}

void reportHelpers(Report& report, const Collector& times)
{
    report.add("MD5 of 1 MiB", "OpenSSL", times.ratio("MD5/library", "MD5/OpenSSL"), "", noLimit());
    report.add("base64 of 1 MiB", "OpenSSL", times.ratio("base64/library", "base64/OpenSSL"), "", noLimit());
    report.add("base64 of 1 MiB", "a plain loop", times.ratio("base64/library", "base64/plain"), "", noLimit());
}

void runAll(benchmark::BenchmarkReporter& reporter, bool isShort)
{
    std::vector<std::string> words = {"documents", "--benchmark_enable_random_interleaving=true",
                                      isShort ? "--benchmark_repetitions=5" : "--benchmark_repetitions=15",
                                      isShort ? "--benchmark_min_time=0.02" : "--benchmark_min_time=0.05"};
    std::vector<char*> arguments;
    for (std::string& word : words)
    {
        arguments.push_back(word.data());
    }
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    benchmark::RunSpecifiedBenchmarks(&reporter);
}

} // namespace

int main(int argc, char** argv)
{
    const Options options = parseOptions(argc, argv);
    const auto kinds = std::make_unique<Kinds>();
    registerAll(*kinds);
    Collector times;
    runAll(times, options.isShort);
    Report report(options);
    reportDocuments(report, times);
    reportHelpers(report, times);
    return report.status();
}
