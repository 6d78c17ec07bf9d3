/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Time for making documents, beside other JSON writers making the same text, and for the helpers beside OpenSSL's. The
 * repetitions of all are run in random order; a ratio is that of the shortest ones.
 */
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <utility>

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
void expectSame(const std::string& name, const std::string& writer, const std::string& text, const std::string& other)
{
    if (text.empty() || text != other)
    {
        fail("the documents by the library and by " + writer + " differ: " + name + "\n" + text.substr(0, 2000) + "\n" +
             other.substr(0, 2000));
    }
}

void expectSameText(const std::string& name, const Document& document)
{
    const std::string text = taken(document.library());
    CjsonOut cjson;
    document.cjson(cjson);
    expectSame(name, "cJSON", text, taken(cjson.finish()));
    RapidOut rapid;
    document.rapid(rapid);
    expectSame(name, "RapidJSON", text, rapid.finish());
    NlohmannOut nlohmann;
    document.nlohmann(nlohmann);
    expectSame(name, "nlohmann::json", text, nlohmann.finish());
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

constexpr unsigned rotated(unsigned value, unsigned bits)
{
    return value << bits | value >> (32 - bits);
}

struct Md5Step
{
    unsigned constant;
    unsigned rotation;
    unsigned word;
};

/* The steps as their definition has them. */
std::array<Md5Step, 64> md5Steps()
{
    static constexpr unsigned kRotations[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};
    static constexpr unsigned kWords[4][2] = {{1, 0}, {5, 1}, {3, 5}, {7, 0}};
    std::array<Md5Step, 64> steps{};
    for (unsigned step = 0; step < 64; ++step)
    {
        const unsigned round = step / 16;
        steps[step] = {static_cast<unsigned>(std::fabs(std::sin(step + 1.0)) * 4294967296.0),
                       kRotations[round][step % 4], (kWords[round][0] * step + kWords[round][1]) % 16};
    }
    return steps;
}

unsigned md5Mixed(unsigned round, unsigned b, unsigned c, unsigned d)
{
    switch (round)
    {
    case 0:
        return (b & c) | (~b & d);
    case 1:
        return (b & d) | (c & ~d);
    case 2:
        return b ^ c ^ d;
    default:
        return c ^ (b | ~d);
    }
}

/* MD5 a step at a time, as one writes it first; of whole blocks. */
std::array<unsigned, 4> plainMd5(const u8* bytes, size_t size)
{
    static const std::array<Md5Step, 64> kSteps = md5Steps();
    std::array<unsigned, 4> state = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    for (; size >= 64; bytes += 64, size -= 64)
    {
        unsigned words[16];
        std::memcpy(words, bytes, sizeof(words));
        auto [a, b, c, d] = state;
        for (unsigned index = 0; index < 64; ++index)
        {
            const Md5Step& step = kSteps[index];
            const unsigned sum = a + md5Mixed(index / 16, b, c, d) + step.constant + words[step.word];
            a = std::exchange(d, std::exchange(c, std::exchange(b, b + rotated(sum, step.rotation))));
        }
        state = {state[0] + a, state[1] + b, state[2] + c, state[3] + d};
    }
    return state;
}

/* The digest's text, to see that the plain loop is MD5. Behind 1 MiB stand a bit, zeros and the number of bits. */
std::string plainMd5Text()
{
    std::string padded(reinterpret_cast<const char*>(helperBytes()), kHelperBytes);
    padded.resize(kHelperBytes + 64);
    padded[kHelperBytes] = '\x80';
    const std::uint64_t bits = kHelperBytes * 8;
    std::memcpy(&padded[kHelperBytes + 56], &bits, sizeof(bits));
    std::string text;
    for (const unsigned word : plainMd5(reinterpret_cast<const u8*>(padded.data()), padded.size()))
    {
        for (unsigned shift = 0; shift < 32; shift += 8)
        {
            char pair[3];
            std::snprintf(pair, sizeof(pair), "%02x", word >> shift & 0xff);
            text += pair;
        }
    }
    return text;
}

void measureMd5()
{
    char digest[33];
    PSMD5(helperBytes(), kHelperBytes, digest, sizeof(digest));
    expectSame("MD5", "a plain loop", digest, plainMd5Text());
    measure("MD5/library", [] {
        TPubSecMd5 state;
        char text[33];
        PubSecMd5Init(&state);
        PubSecMd5Update(&state, helperBytes(), kHelperBytes);
        PubSecMd5FinalText(&state, text);
        benchmark::DoNotOptimize(text[0]);
    });
    measure("MD5/OpenSSL", [] {
        unsigned char bytes[EVP_MAX_MD_SIZE];
        EVP_Digest(helperBytes(), kHelperBytes, bytes, nullptr, EVP_md5(), nullptr);
        benchmark::DoNotOptimize(bytes[0]);
    });
    measure("MD5/plain", [] { benchmark::DoNotOptimize(plainMd5(helperBytes(), kHelperBytes)); });
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
    report.add("MD5 of 1 MiB", "a plain loop", times.ratio("MD5/library", "MD5/plain"), "", noLimit());
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
