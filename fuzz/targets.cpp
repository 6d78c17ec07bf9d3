/* SPDX-License-Identifier: Apache-2.0 */
#include "fuzz/targets.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

#include <cjson/cJSON.h>

#include "core/core.h"
#include "core/http.h"
#include "core/json_tree.h"
#include "objects/documents.h"
#include "post/transfer_state.h"
#include "session/session.h"
#include "tests/torture/records.h"
#ifdef FUZZ_VIEWLIB
#include "viewlib/base64.h"
#include "viewlib/digest.h"
#include "viewlib/documents.h"
#include "viewlib/json.h"
#endif

/* Formats each line, since the readers log what they read, and shows none. */
extern "C" void TlxPrintf(s32, s32, const char* format, ...)
{
    char line[512];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof(line), format, arguments);
    va_end(arguments);
}

namespace fuzz
{

namespace
{

void demand(bool holds, const char* promise)
{
    if (!holds)
    {
        std::fprintf(stderr, "fuzz: broken promise: %s\n", promise);
        std::abort();
    }
}

/* A field that a reader may fill: exactly as large as it is promised, so that a byte more is seen. */
template <size_t Size> struct Field
{
    std::unique_ptr<char[]> bytes{new char[Size]};

    Field()
    {
        std::memset(bytes.get(), 0, Size);
    }
    bool ends() const
    {
        return std::memchr(bytes.get(), '\0', Size) != nullptr;
    }
};

void status(const std::string& input)
{
    Field<260> out;
    const u32 read = _PubSecParseSerData(input.c_str(), out.bytes.get());
    demand(read <= 1, "1 or 0");
    demand(std::strlen(out.bytes.get()) <= 256, "at most 256 characters");
}

void keepalive(const std::string& input)
{
    Field<4> out;
    const u32 read = _PubSecKeepAliveParseJson(input.c_str(), out.bytes.get());
    demand(read <= 1, "1 or 0");
    demand(out.ends(), "a code that ends");
}

template <size_t Size> bool ends(const char (&field)[Size])
{
    return std::memchr(field, '\0', Size) != nullptr;
}

void time(const std::string& input)
{
    const auto out = std::make_unique<TPubSecSystemTime>();
    demand(_PubSecSystemTimeParseJson(input.c_str(), out.get()) <= 1, "1 or 0");
    demand(ends(out->achVIIDServerID) && ends(out->achTimeMode) && ends(out->achLocalTime) && ends(out->achTimeZone),
           "texts that end");
}

void transfer(const std::string& input)
{
    const auto out = std::make_unique<TPubSecTransDataInf>();
    demand(_PubSecParseTransDataResp(input.c_str(), out.get()) <= 1, "1 or 0");
    demand(ends(out->achFileHash), "a hash that ends");
}

void location(const std::string& input)
{
    Field<64> ip;
    u32 port = 0;
    demand(PubSecStackGetLocation(input.c_str(), ip.bytes.get(), &port) <= 1, "1 or 0");
    demand(ip.ends(), "an address that ends");
    const auto shown = std::make_unique<char[]>(input.size() + 1);
    PubSecStripUserInfo(input.c_str(), shown.get(), static_cast<u32>(input.size() + 1));
    demand(std::strlen(shown.get()) <= input.size(), "no more than there was");
}

void address(const std::string& input)
{
    const s32 kind = _PubSecCheckIpAddr(input.c_str());
    demand(kind >= PUBSEC_ADDR_NONE && kind <= PUBSEC_ADDR_IPV6, "0, 1 or 2");
}

/* The input's bytes, and behind its end numbers that follow from it: records are large. */
class Bytes
{
  public:
    explicit Bytes(const std::string& input) : m_input(input)
    {
        for (const char byte : input)
        {
            m_state = m_state * 31 + static_cast<unsigned char>(byte);
        }
    }

    unsigned char next()
    {
        if (m_at < m_input.size())
        {
            return static_cast<unsigned char>(m_input[m_at++]);
        }
        m_state ^= m_state << 13;
        m_state ^= m_state >> 7;
        m_state ^= m_state << 17;
        return static_cast<unsigned char>(m_state);
    }

    torture::Source source()
    {
        return {[this](void* bytes, size_t size) {
                    for (size_t at = 0; at < size; ++at)
                    {
                        static_cast<unsigned char*>(bytes)[at] = next();
                    }
                },
                [this] { return static_cast<s32>(next() % 4) - 1; }, [this] { return next() % 8 == 0; }};
    }

  private:
    const std::string& m_input;
    size_t m_at = 0;
    uint64_t m_state = 88172645463325252u;
};

/* A document is JSON, or there is none. */
void check(char* document)
{
    if (document != nullptr)
    {
        cJSON* const tree = cJSON_Parse(document);
        demand(tree != nullptr, "a document that can be parsed");
        cJSON_Delete(tree);
    }
    cJSON_free(document);
}

void objectDocuments(const torture::Records& from)
{
    check(_PubSecImageGatherJSON(from.pictures));
    check(_PubSecImageSingleJson(&from.pictures[0].ptImageInfo));
    check(_PubSecImageFaceJSON(from.faces, 2));
    check(_PubSecImagePersonJSON(from.persons, 2));
    check(_PubSecImageMotorVehicleJSON(from.motorVehicles, 2));
    check(_PubSecImageNonMotorVehicleJSON(from.nonMotorVehicles, 2));
    check(_PubSecImageThingJSON(from.things, 2));
    check(_PubSecImageSceneJSON(from.scenes, 2));
    check(_PubSecImageGatherJSONEX(from.pictures));
}

void recordDocuments(const torture::Records& from)
{
    check(_PubSecVideoSliceGatherJSON(&from.sliceObject));
    check(_PubSecFileGatherJSON(&from.sliceObject));
    check(_PubSecVideoDataJSON(from.text));
    check(_PubSecIllegalRecordJson(from.violations));
    check(_PubSecIllegalRecordJsonEx(2, from.violations));
    check(_PubSecNonMotorIllegalRecordJson(2, from.nonMotorViolations));
    check(_PubSecAccRecInfoJson(from.access));
    check(_PubSecAccRecInfoListJson(from.access));
    check(_PubSecGPSInfoJson(&from.gps));
    check(_PubSecWifiDeviceJSON(&from.wifi));
    check(_PubSecRFIDJSON(&from.rfid));
    check(_PubSecLogInfoJson(&from.log));
    check(PubSecDispositionNotificationStructToString(&from.notificationList));
}

/* A host's tree owns its texts: it is printed when the records are gone. */
void hostTree(std::unique_ptr<torture::Records> from)
{
    cJSON* const tree = cJSON_CreateObject();
    PubSecFaceObjectStructToJsonObject(tree, 0, 2, from->faces);
    PubSecPersonObjectStructToJsonObject(tree, 1, 1, from->persons);
    PubSecMotorVehicleObjectStructToJsonObject(tree, 0, 2, from->motorVehicles);
    PubSecNonMotorVehicleObjectStructToJsonObject(tree, 1, 1, from->nonMotorVehicles);
    from.reset();
    check(cJSON_PrintUnformatted(tree));
    cJSON_Delete(tree);
}

void records(const std::string& input)
{
    Bytes bytes(input);
    auto from = std::make_unique<torture::Records>(bytes.source());
    objectDocuments(*from);
    recordDocuments(*from);
    hostTree(std::move(from));
}

/* Members as the input says, made by the library and by cJSON alone. */
class TwoTrees
{
  public:
    explicit TwoTrees(const std::string& input)
    {
        size_t at = 0;
        while (at < input.size() && m_texts.size() < 3)
        {
            const auto kind = static_cast<unsigned char>(input[at++]);
            const std::string part = input.substr(at, kind % 64);
            at += part.size();
            if (kind < 128)
            {
                addNumber(part, kind % 2 == 0);
            }
            else
            {
                addText(part, kind >= 192);
            }
        }
    }

    ~TwoTrees()
    {
        cJSON_Delete(m_cjson);
    }

    TwoTrees(const TwoTrees&) = delete;
    TwoTrees& operator=(const TwoTrees&) = delete;

    void comparePrinted()
    {
        expectSame(PubSecJsonPrint(m_library));
    }

    /* A host's tree owns its texts: it is printed when ours are gone. */
    void compareOwned()
    {
        demand(PubSecJsonOwnAfter(m_library, nullptr), "a tree that owns its texts");
        m_texts.clear();
        expectSame(cJSON_PrintUnformatted(m_library));
        cJSON_Delete(m_library);
    }

  private:
    void addNumber(const std::string& bytes, bool isWhole)
    {
        double value = 0;
        int64_t whole = 0;
        std::memcpy(&value, bytes.data(), std::min(bytes.size(), sizeof(value)));
        std::memcpy(&whole, bytes.data(), std::min(bytes.size(), sizeof(whole)));
        value = isWhole ? static_cast<double>(whole) : value;
        PubSecJsonAddNumber(m_library, "n", value);
        cJSON_AddNumberToObject(m_cjson, "n", value);
    }

    void addText(std::string text, bool isLong)
    {
        while (isLong && !text.empty() && text.size() < 4000)
        {
            text.insert(0, text.size(), 'a');
            text += text;
        }
        m_texts.push_back(std::make_unique<std::string>(std::move(text)));
        PubSecJsonAddText(m_library, "t", m_texts.back()->c_str());
        cJSON_AddStringToObject(m_cjson, "t", m_texts.back()->c_str());
    }

    void expectSame(char* text)
    {
        char* const expected = cJSON_PrintUnformatted(m_cjson);
        demand(text != nullptr && std::strcmp(text, expected) == 0, "the text that cJSON prints");
        cJSON_free(text);
        cJSON_free(expected);
    }

    cJSON* m_library = cJSON_CreateObject();
    cJSON* m_cjson = cJSON_CreateObject();
    std::vector<std::unique_ptr<std::string>> m_texts; /* stay where they are until both trees are printed */
};

void tree(const std::string& input)
{
    TwoTrees(input).comparePrinted();
    TwoTrees(input).compareOwned();
}

#ifdef FUZZ_VIEWLIB
/* The development server's readers: of credentials, of base64 and of documents. */
void viewlibReaders(const std::string& input)
{
    viewlib::digest::parse(input);
    viewlib::decodeBase64(input, false);
    viewlib::decodeBase64(input, true);
    const viewlib::Json tree = viewlib::parseJson(input);
    if (tree)
    {
        viewlib::Strict strict;
        strict.lineBreaks = false;
        strict.documents = true;
        viewlib::findObjects(tree.get(), strict, {});
        const viewlib::Json again = viewlib::parseJson(input);
        viewlib::findLogEvents(again.get());
    }
    viewlib::dataObject("Face", "1", input, false);
}
#endif

} // namespace

const Target kTargets[] = {
    {"status", status},          {"keepalive", keepalive}, {"time", time},       {"transfer", transfer},
    {"location", location},      {"address", address},     {"records", records}, {"tree", tree},
#ifdef FUZZ_VIEWLIB
    {"viewlib", viewlibReaders},
#endif
};
const size_t kTargetCount = std::size(kTargets);

const Target* targetNamed(const std::string& name)
{
    _SetPubSecStaLogLvl(3);
    for (const Target& target : kTargets)
    {
        if (name == target.name)
        {
            return &target;
        }
    }
    return nullptr;
}

} // namespace fuzz
