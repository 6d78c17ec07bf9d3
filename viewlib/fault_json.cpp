/* SPDX-License-Identifier: Apache-2.0 */
#include "fault_json.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

namespace viewlib
{

namespace
{

constexpr double largestNumber = 9007199254740992.0; /* 2^53: beyond it JSON's numbers are not exact */
constexpr double longestDelay = 3600.0 * 1000;
constexpr double longestOffset = 366.0 * 24 * 3600 * 1000;
constexpr double largestCount = 1000000;
constexpr std::size_t longestName = 64;

[[noreturn]] void refuse(const std::string& where, const cJSON* value, const std::string& expected)
{
    std::string text = printJson(value);
    constexpr std::size_t longest = 64;
    if (text.size() > longest)
    {
        text = text.substr(0, longest) + "...";
    }
    throw std::invalid_argument("\"" + where + "\" is " + text + ": expected " + expected);
}

std::string wholeNumbers(double least, double most)
{
    return "a whole number from " + std::to_string(static_cast<long long>(least)) + " to " +
           std::to_string(static_cast<long long>(most));
}

double wholeNumber(const std::string& where, const cJSON* value, double least, double most)
{
    if (!cJSON_IsNumber(value) || value->valuedouble < least || value->valuedouble > most ||
        value->valuedouble != std::floor(value->valuedouble))
    {
        refuse(where, value, wholeNumbers(least, most));
    }
    return value->valuedouble;
}

bool isTokenText(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        static const std::string_view others = "!#$%&'*+-.^_`|~";
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
               others.find(c) != std::string_view::npos;
    });
}

/* Whether it can stand in a line of a header. */
bool isLine(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) >= ' ' && c != '\x7F'; });
}

std::string textOrRefuse(const std::string& where, const cJSON* value)
{
    if (!cJSON_IsString(value))
    {
        refuse(where, value, "a text");
    }
    return value->valuestring;
}

std::string lineOrRefuse(const std::string& where, const cJSON* value)
{
    std::string text = textOrRefuse(where, value);
    if (!isLine(text))
    {
        refuse(where, value, "a text without control characters");
    }
    return text;
}

/* A member of an object of type T: how it is read from JSON, and how it is shown where it is not the usual value. */
template <typename T> struct Member
{
    const char* name;
    std::function<void(const std::string& where, const cJSON* value, T& object)> read;
    std::function<cJSON*(const T& object)> show; /* null: the usual value */
};

template <typename T>
void readMembers(const std::string& where, const cJSON* tree, const std::vector<Member<T>>& members, T& object)
{
    if (!cJSON_IsObject(tree))
    {
        refuse(where, tree, "an object");
    }
    const std::string prefix = where.empty() ? where : where + ".";
    const cJSON* value = nullptr;
    cJSON_ArrayForEach(value, tree)
    {
        const auto member = std::find_if(members.begin(), members.end(), [&](const Member<T>& each) {
            return std::string_view(each.name) == value->string;
        });
        if (member == members.end())
        {
            throw std::invalid_argument("there is no member \"" + prefix + value->string + "\"");
        }
        member->read(prefix + value->string, value, object);
    }
}

template <typename T> Json showMembers(const std::vector<Member<T>>& members, const T& object)
{
    Json tree(cJSON_CreateObject());
    for (const Member<T>& member : members)
    {
        if (cJSON* value = member.show(object))
        {
            cJSON_AddItemToObject(tree.get(), member.name, value);
        }
    }
    return tree;
}

template <typename T> Member<T> flag(const char* name, bool T::*field)
{
    return {name,
            [field](const std::string& where, const cJSON* value, T& object) {
                if (!cJSON_IsBool(value))
                {
                    refuse(where, value, "true or false");
                }
                object.*field = cJSON_IsTrue(value) != 0;
            },
            [field](const T& object) {
                return object.*field == T().*field ? nullptr : cJSON_CreateBool(object.*field ? 1 : 0);
            }};
}

template <typename T>
Member<T> milliseconds(const char* name, std::chrono::milliseconds T::*field, double least, double most)
{
    return {name,
            [field, least, most](const std::string& where, const cJSON* value, T& object) {
                object.*field =
                    std::chrono::milliseconds(static_cast<long long>(wholeNumber(where, value, least, most)));
            },
            [field](const T& object) {
                return (object.*field).count() == 0 ? nullptr
                                                    : cJSON_CreateNumber(static_cast<double>((object.*field).count()));
            }};
}

template <typename T> Member<T> delay(const char* name, std::chrono::milliseconds T::*field)
{
    return milliseconds(name, field, 0, longestDelay);
}

template <typename T> Member<T> bytesPerSecond(const char* name, std::uint64_t T::*field)
{
    return {name,
            [field](const std::string& where, const cJSON* value, T& object) {
                object.*field = static_cast<std::uint64_t>(wholeNumber(where, value, 0, largestNumber));
            },
            [field](const T& object) {
                return object.*field == 0 ? nullptr : cJSON_CreateNumber(static_cast<double>(object.*field));
            }};
}

template <typename T, typename Number>
Member<T> place(const char* name, std::optional<Number> T::*field, double least = 0, double most = largestNumber)
{
    return {name,
            [field, least, most](const std::string& where, const cJSON* value, T& object) {
                object.*field = static_cast<Number>(wholeNumber(where, value, least, most));
            },
            [field](const T& object) {
                return object.*field ? cJSON_CreateNumber(static_cast<double>(*(object.*field))) : nullptr;
            }};
}

template <typename T> Member<T> text(const char* name, std::string T::*field)
{
    return {name,
            [field](const std::string& where, const cJSON* value, T& object) {
                object.*field = textOrRefuse(where, value);
            },
            [field](const T& object) {
                return object.*field == T().*field ? nullptr : cJSON_CreateString((object.*field).c_str());
            }};
}

template <typename T> Member<T> line(const char* name, std::string T::*field)
{
    Member<T> member = text(name, field);
    member.read = [field](const std::string& where, const cJSON* value, T& object) {
        object.*field = lineOrRefuse(where, value);
    };
    return member;
}

template <typename T> Member<T> optionalText(const char* name, std::optional<std::string> T::*field, bool oneLine)
{
    return {
        name,
        [field, oneLine](const std::string& where, const cJSON* value, T& object) {
            object.*field = oneLine ? lineOrRefuse(where, value) : textOrRefuse(where, value);
        },
        [field](const T& object) { return object.*field ? cJSON_CreateString((object.*field)->c_str()) : nullptr; }};
}

/* A number, a text or null that is sent as it stands. */
template <typename T> Member<T> scalar(const char* name, std::optional<std::string> T::*field)
{
    return {name,
            [field](const std::string& where, const cJSON* value, T& object) {
                if (!cJSON_IsNumber(value) && !cJSON_IsString(value) && !cJSON_IsNull(value))
                {
                    refuse(where, value, "a number, a text or null");
                }
                object.*field = printJson(value);
            },
            [field](const T& object) { return object.*field ? parseJson(*(object.*field)).release() : nullptr; }};
}

template <typename Enum> using Words = std::vector<std::pair<const char*, Enum>>;

template <typename Enum> Enum fromWord(const std::string& where, const cJSON* value, const Words<Enum>& words)
{
    std::string all;
    for (const auto& [word, meaning] : words)
    {
        if (cJSON_IsString(value) && std::string_view(word) == value->valuestring)
        {
            return meaning;
        }
        all += (all.empty() ? "\"" : ", \"") + std::string(word) + "\"";
    }
    refuse(where, value, "one of " + all);
}

template <typename Enum> const char* toWord(Enum meaning, const Words<Enum>& words)
{
    return std::find_if(words.begin(), words.end(), [&](const auto& word) { return word.second == meaning; })->first;
}

template <typename T, typename Enum> Member<T> choice(const char* name, Enum T::*field, Words<Enum> words)
{
    return {name,
            [field, words](const std::string& where, const cJSON* value, T& object) {
                object.*field = fromWord(where, value, words);
            },
            [field, words](const T& object) {
                return object.*field == T().*field ? nullptr : cJSON_CreateString(toWord(object.*field, words));
            }};
}

/* An object below this one, made when it is there. */
template <typename T, typename Part>
Member<T> part(const char* name, std::optional<Part> T::*field, std::vector<Member<Part>> members)
{
    return {name,
            [field, members](const std::string& where, const cJSON* value, T& object) {
                Part below = (object.*field).value_or(Part());
                readMembers(where, value, members, below);
                object.*field = std::move(below);
            },
            [field, members](const T& object) {
                return object.*field ? showMembers(members, *(object.*field)).release() : nullptr;
            }};
}

Member<TimeShape> utcOffset()
{
    constexpr double longest = 14 * 60;
    return {"UtcOffsetMinutes",
            [](const std::string& where, const cJSON* value, TimeShape& shape) {
                shape.utcOffset = std::chrono::minutes(static_cast<long>(wholeNumber(where, value, -longest, longest)));
            },
            [](const TimeShape& shape) {
                return shape.utcOffset ? cJSON_CreateNumber(static_cast<double>(shape.utcOffset->count())) : nullptr;
            }};
}

std::vector<Member<TimeShape>> timeMembers()
{
    return {choice("LocalTime", &TimeShape::form,
                   Words<TimeForm>{{"digits", TimeForm::Digits},
                                   {"epoch-ms", TimeForm::EpochMilliseconds},
                                   {"epoch-s", TimeForm::EpochSeconds},
                                   {"rfc3339", TimeForm::Rfc3339}}),
            scalar("TimeMode", &TimeShape::mode), scalar("TimeZone", &TimeShape::zone), utcOffset(),
            milliseconds("OffsetMs", &TimeShape::offset, -longestOffset, longestOffset)};
}

Member<ChallengeShape> algorithms()
{
    static const Words<Algorithm> words = {{"md5", Algorithm::Md5}, {"sha-256", Algorithm::Sha256}};
    return {"Algorithms",
            [](const std::string& where, const cJSON* value, ChallengeShape& shape) {
                if (!cJSON_IsArray(value) || value->child == nullptr)
                {
                    refuse(where, value, R"(an array of "md5" and "sha-256")");
                }
                shape.algorithms.clear();
                const cJSON* element = nullptr;
                cJSON_ArrayForEach(element, value)
                {
                    shape.algorithms.push_back(fromWord(where, element, words));
                }
            },
            [](const ChallengeShape& shape) -> cJSON* {
                if (shape.algorithms.empty())
                {
                    return nullptr;
                }
                cJSON* array = cJSON_CreateArray();
                for (const Algorithm algorithm : shape.algorithms)
                {
                    cJSON_AddItemToArray(array, cJSON_CreateString(toWord(algorithm, words)));
                }
                return array;
            }};
}

std::vector<Member<ChallengeShape>> challengeMembers()
{
    return {algorithms(),
            flag("Algorithm", &ChallengeShape::algorithm),
            flag("QuotedAlgorithm", &ChallengeShape::quotedAlgorithm),
            flag("Opaque", &ChallengeShape::opaque),
            optionalText("OpaqueText", &ChallengeShape::opaqueText, true),
            flag("Cnonce", &ChallengeShape::cnonce),
            optionalText("Realm", &ChallengeShape::realm, true),
            flag("EmptyBody", &ChallengeShape::emptyBody),
            line("Cookie", &ChallengeShape::cookie)};
}

/* 0 or what a final answer may have. */
Member<Answer> status()
{
    return {"Status",
            [](const std::string& where, const cJSON* value, Answer& answer) {
                const double code = cJSON_IsNumber(value) ? value->valuedouble : -1;
                if (code != 0 && (code < 200 || code > 599 || code != std::floor(code)))
                {
                    refuse(where, value, "0 or a whole number from 200 to 599");
                }
                answer.status = static_cast<unsigned>(code);
            },
            [](const Answer& answer) { return answer.status == 0 ? nullptr : cJSON_CreateNumber(answer.status); }};
}

Member<Answer> headers()
{
    return {"Headers",
            [](const std::string& where, const cJSON* value, Answer& answer) {
                const char* const expected = R"(an array of ["name","value"])";
                if (!cJSON_IsArray(value))
                {
                    refuse(where, value, expected);
                }
                answer.headers.clear();
                const cJSON* pair = nullptr;
                cJSON_ArrayForEach(pair, value)
                {
                    const char* name = cJSON_GetStringValue(cJSON_GetArrayItem(pair, 0));
                    const char* text = cJSON_GetStringValue(cJSON_GetArrayItem(pair, 1));
                    if (!cJSON_IsArray(pair) || cJSON_GetArraySize(pair) != 2 || name == nullptr || text == nullptr ||
                        !isTokenText(name) || !isLine(text))
                    {
                        refuse(where, pair, expected);
                    }
                    answer.with(name, text);
                }
            },
            [](const Answer& answer) -> cJSON* {
                if (answer.headers.empty())
                {
                    return nullptr;
                }
                cJSON* array = cJSON_CreateArray();
                for (const Header& header : answer.headers)
                {
                    const char* pair[] = {header.name.c_str(), header.value.c_str()};
                    cJSON_AddItemToArray(array, cJSON_CreateStringArray(pair, 2));
                }
                return array;
            }};
}

const std::vector<Member<Answer>>& answerMembers()
{
    static const std::vector<Member<Answer>> members = {
        status(),
        optionalText("Body", &Answer::body, false),
        line("ContentType", &Answer::contentType),
        headers(),
        delay("DelayBeforeReadingMs", &Answer::delayBeforeReading),
        delay("DelayMs", &Answer::delay),
        delay("DelayBeforeBodyMs", &Answer::delayBeforeBody),
        bytesPerSecond("BytesPerSecond", &Answer::bytesPerSecond),
        bytesPerSecond("RequestBytesPerSecond", &Answer::requestBytesPerSecond),
        place("CutAfterRequestBytes", &Answer::cutAfterRequestBytes),
        place("StallAfterRequestBytes", &Answer::stallAfterRequestBytes),
        choice(
            "Framing", &Answer::framing,
            Words<Framing>{{"length", Framing::Length}, {"chunked", Framing::Chunked}, {"close", Framing::UntilClose}}),
        choice("Cut", &Answer::cut,
               Words<Cut>{{"none", Cut::None},
                          {"before-status", Cut::BeforeStatus},
                          {"mid-body", Cut::MidBody},
                          {"reset", Cut::Reset}}),
        place("CutAfter", &Answer::cutAfter),
        optionalText("Raw", &Answer::raw, false),
        text("Trailing", &Answer::trailing),
        flag("ContinueFirst", &Answer::continueFirst),
        flag("BeforeBody", &Answer::beforeBody),
        flag("Gzip", &Answer::gzip),
        choice("Envelope", &Answer::envelope,
               Words<Envelope>{{"usual", Envelope::Usual},
                               {"object", Envelope::Object},
                               {"list", Envelope::List},
                               {"bare-array", Envelope::BareArray},
                               {"bare-status", Envelope::BareStatus},
                               {"both", Envelope::Both},
                               {"object-for-array", Envelope::ObjectForArray},
                               {"empty-array", Envelope::EmptyArray},
                               {"null-array", Envelope::NullArray},
                               {"null-list", Envelope::NullList},
                               {"null", Envelope::Null}}),
        scalar("StatusCode", &Answer::statusCode),
        flag("StatusCodeAsText", &Answer::statusCodeAsText),
        optionalText("StatusString", &Answer::statusText, false),
        choice("Id", &Answer::statusId,
               Words<StatusId>{{"usual", StatusId::Usual},
                               {"empty", StatusId::Empty},
                               {"null", StatusId::Null},
                               {"upper-case", StatusId::UpperCase}}),
        part("Time", &Answer::time, timeMembers()),
        part("Challenge", &Answer::challenge, challengeMembers()),
        flag("StaleNonce", &Answer::staleNonce),
        flag("ExpireSession", &Answer::expireSession),
        flag("NextNonce", &Answer::nextNonce),
        flag("AskCredentials", &Answer::askCredentials),
        flag("SkipAuth", &Answer::skipAuth),
        flag("AfterAuth", &Answer::afterAuth),
        flag("TakeEffect", &Answer::takeEffect),
    };
    return members;
}

/* "/VIID/Faces", "/VIID" with anything behind it, or "*". */
bool isResource(const std::string& value)
{
    const bool rooted = !value.empty() && value.front() == '/';
    return value == "*" || (rooted && isLine(value) && value.find('*') >= value.size() - 1);
}

bool isDevice(const std::string& value)
{
    return !value.empty() && value.size() <= longestName && isLine(value);
}

template <typename Test>
Member<FaultRule> name(const char* key, std::string FaultRule::*field, Test test, const char* expected)
{
    Member<FaultRule> member = line(key, field);
    member.read = [field, test, expected](const std::string& where, const cJSON* value, FaultRule& rule) {
        rule.*field = textOrRefuse(where, value);
        if (!test(rule.*field))
        {
            refuse(where, value, expected);
        }
    };
    member.show = [field](const FaultRule& rule) { return cJSON_CreateString((rule.*field).c_str()); };
    return member;
}

Member<FaultRule> share()
{
    return {"Share",
            [](const std::string& where, const cJSON* value, FaultRule& rule) {
                if (!cJSON_IsNumber(value) || !(value->valuedouble > 0 && value->valuedouble <= 1))
                {
                    refuse(where, value, "a number above 0 and at most 1");
                }
                rule.share = value->valuedouble;
            },
            [](const FaultRule& rule) { return rule.share ? cJSON_CreateNumber(*rule.share) : nullptr; }};
}

Member<FaultRule> answer()
{
    return {"Answer",
            [](const std::string& where, const cJSON* value, FaultRule& rule) {
                readMembers(where, value, answerMembers(), rule.answer);
            },
            [](const FaultRule& rule) { return showMembers(answerMembers(), rule.answer).release(); }};
}

const std::vector<Member<FaultRule>>& ruleMembers()
{
    static const std::vector<Member<FaultRule>> members = {
        name("Device", &FaultRule::device, isDevice, "\"*\" or 1 to 64 characters without control characters"),
        name("Resource", &FaultRule::resource, isResource, "\"*\", a path, or the beginning of one followed by \"*\""),
        name("Method", &FaultRule::method, isTokenText, "\"*\" or a method such as \"POST\""),
        place("Count", &FaultRule::count, 1, largestCount),
        share(),
        text("Preset", &FaultRule::preset),
        answer(),
    };
    return members;
}

std::string trimmed(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? std::string() : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

template <typename Number> bool parseWhole(std::string_view digits, Number& number)
{
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return parsed.ec == std::errc() && parsed.ptr == digits.data() + digits.size();
}

/* "x3" or "25%" */
void readAmount(const std::string& amount, FaultRule& rule)
{
    std::uint64_t number = 0;
    const bool counted = amount.front() == 'x' && parseWhole(std::string_view(amount).substr(1), number);
    if (counted && number >= 1 && number <= static_cast<std::uint64_t>(largestCount))
    {
        rule.count = number;
        return;
    }
    const bool percent =
        amount.back() == '%' && parseWhole(std::string_view(amount).substr(0, amount.size() - 1), number);
    if (percent && number >= 1 && number <= 100)
    {
        rule.share = static_cast<double>(number) / 100;
        return;
    }
    throw std::invalid_argument("\"" + amount +
                                "\" is neither xN (the next N requests, 1 to 1000000) nor N% (a share of "
                                "them, 1 to 100)");
}

} // namespace

FaultRule ruleFromJson(const cJSON* tree)
{
    const cJSON* presetName = cJSON_GetObjectItemCaseSensitive(tree, "Preset");
    if (presetName == nullptr && cJSON_GetObjectItemCaseSensitive(tree, "Answer") == nullptr)
    {
        throw std::invalid_argument(R"(a rule needs "Preset" or "Answer")");
    }
    const char* const name = cJSON_GetStringValue(presetName);
    FaultRule rule = name != nullptr ? preset(name) : FaultRule();
    rule.count.reset(); /* a preset's is what it proposes */
    rule.share.reset();
    readMembers("", tree, ruleMembers(), rule);
    if (rule.count && rule.share)
    {
        throw std::invalid_argument(R"(a rule has "Count" or "Share", not both)");
    }
    return rule;
}

Json ruleToJson(const FaultRule& rule)
{
    return showMembers(ruleMembers(), rule);
}

FaultRule ruleFromText(const std::string& text)
{
    const std::size_t equals = text.rfind('=');
    if (equals == std::string::npos)
    {
        throw std::invalid_argument("expected RESOURCE[@DEVICE][ xN| N%]=PRESET");
    }
    FaultRule rule = preset(trimmed(text.substr(equals + 1)));
    rule.count.reset();
    const std::string left = trimmed(text.substr(0, equals));
    const std::size_t blank = left.find(' ');
    if (blank != std::string::npos)
    {
        readAmount(trimmed(left.substr(blank)), rule);
    }
    const std::string where = left.substr(0, blank);
    const std::size_t at = where.find('@');
    rule.resource = where.substr(0, at);
    rule.device = at == std::string::npos ? "*" : where.substr(at + 1);
    if (!isResource(rule.resource))
    {
        throw std::invalid_argument("\"" + rule.resource +
                                    "\" is no resource: expected *, a path, or the beginning of one "
                                    "followed by *");
    }
    if (!isDevice(rule.device))
    {
        throw std::invalid_argument("\"" + rule.device + "\" is no device: expected * or its DeviceID");
    }
    return rule;
}

} // namespace viewlib
