/* SPDX-License-Identifier: Apache-2.0 */
#include "rules.h"

#include "json.h"
#include "text.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace viewlib
{

namespace
{

enum class Need
{
    None,     /* not looked at */
    Optional, /* its form counts when it is there and not empty */
    Required
};

struct KindRule
{
    const char* kind;
    const char* idKey;
    std::size_t idLength;
    Need infoKind;
    Need sourceId;
    Need deviceId;
};

constexpr KindRule kindRules[] = {
    {"Image", "ImageID", 41, Need::Required, Need::None, Need::Required},
    {"Face", "FaceID", 48, Need::Required, Need::Required, Need::Required},
    {"Person", "PersonID", 48, Need::Required, Need::Required, Need::Required},
    {"MotorVehicle", "MotorVehicleID", 48, Need::Required, Need::Required, Need::Required},
    {"NonMotorVehicle", "NonMotorVehicleID", 48, Need::Required, Need::Required, Need::Required},
    {"Thing", "ThingID", 48, Need::Required, Need::Required, Need::Required},
    {"Scene", "SceneID", 48, Need::Required, Need::Required, Need::Required},
    {"VideoSlice", "VideoID", 41, Need::Required, Need::None, Need::Required},
    {"File", "FileID", 41, Need::Required, Need::None, Need::None},
    {"IllegalRecord", "IllegalRecordID", 48, Need::None, Need::Optional, Need::Required},
    {"NonMotorIllegalRecord", "IllegalRecordID", 48, Need::None, Need::Optional, Need::Required},
    {"AccessRecord", "AccessRecordID", 48, Need::None, Need::Optional, Need::Required},
    {"GPSData", "GPSID", 48, Need::None, Need::None, Need::Required},
    {"WifiDevice", "WifiDeviceDataID", 41, Need::None, Need::None, Need::Required},
    {"WifiUser", "WifiUserDataID", 48, Need::None, Need::None, Need::Required},
    {"Imei", "ImeiID", 41, Need::None, Need::None, Need::None},
    {"RFIDDevice", "RFIDDeviceDataID", 41, Need::None, Need::None, Need::Required},
    {"RFIDInfo", "RFIDInfoDataID", 48, Need::None, Need::None, Need::Required},
    {"DispositionNotification", "NotificationID", 33, Need::None, Need::None, Need::None},
};

constexpr std::size_t deviceLength = 20;
constexpr std::size_t sourceLength = 41;
constexpr std::size_t longestShown = 64;

/* A value as a sentence shows it. */
std::string shown(const cJSON* value)
{
    std::string text = printJson(value);
    if (text.size() > longestShown)
    {
        text.resize(longestShown);
        return cutUtf8(std::move(text)) + "...";
    }
    return text;
}

bool isEmpty(const cJSON* value)
{
    const char* text = cJSON_GetStringValue(value);
    return value == nullptr || cJSON_IsNull(value) || (text != nullptr && *text == '\0');
}

/* The faults of one object. */
class Check
{
  public:
    Check(const cJSON* object, std::string name) : m_object(object), m_name(std::move(name))
    {
    }

    void digits(const char* key, std::size_t length, Need need)
    {
        const std::string rule = std::to_string(length) + " digits";
        if (const cJSON* value = wanted(key, need, rule))
        {
            const char* text = cJSON_GetStringValue(value);
            require(text != nullptr && std::strlen(text) == length && std::strspn(text, "0123456789") == length, key,
                    value, rule);
        }
    }
    void infoKind(Need need)
    {
        const char* const rule = "0 (other), 1 (automatic) or 2 (manual)";
        if (const cJSON* value = wanted("InfoKind", need, rule))
        {
            const char* text = cJSON_GetStringValue(value);
            const bool good = text != nullptr
                                  ? std::strlen(text) == 1 && std::strchr("012", *text) != nullptr
                                  : cJSON_IsNumber(value) && (value->valuedouble == 0.0 || value->valuedouble == 1.0 ||
                                                              value->valuedouble == 2.0);
            require(good, "InfoKind", value, rule);
        }
    }
    void times()
    {
        for (const char* key : timeMembers())
        {
            const cJSON* value = cJSON_GetObjectItemCaseSensitive(m_object, key);
            if (!isEmpty(value))
            {
                const char* text = cJSON_GetStringValue(value);
                require(text != nullptr && isTime(text), key, value, "a time as YYYYMMDDhhmmss");
            }
        }
    }
    void numbers(std::initializer_list<const char*> keys)
    {
        for (const char* key : keys)
        {
            const cJSON* value = cJSON_GetObjectItemCaseSensitive(m_object, key);
            if (value != nullptr)
            {
                require(cJSON_IsNumber(value), key, value, "a number");
            }
        }
    }
    std::vector<std::string> take()
    {
        return std::move(m_faults);
    }

  private:
    /* The value, when there is one to look at. */
    const cJSON* wanted(const char* key, Need need, const std::string& rule)
    {
        const cJSON* value = need == Need::None ? nullptr : cJSON_GetObjectItemCaseSensitive(m_object, key);
        if (isEmpty(value))
        {
            if (need == Need::Required)
            {
                m_faults.push_back(m_name + ": \"" + key + "\" is " + (value == nullptr ? "missing" : "empty") +
                                   ", expected " + rule);
            }
            return nullptr;
        }
        return value;
    }
    void require(bool good, const char* key, const cJSON* value, const std::string& rule)
    {
        if (!good)
        {
            m_faults.push_back(m_name + ": \"" + key + "\" is " + shown(value) + ", expected " + rule);
        }
    }

    const cJSON* m_object;
    const std::string m_name;
    std::vector<std::string> m_faults;
};

int part(const std::string& text, std::size_t from, std::size_t length)
{
    int value = 0;
    for (std::size_t i = from; i < from + length; ++i)
    {
        value = value * 10 + (text[i] - '0');
    }
    return value;
}

int daysOf(int month, int year)
{
    static constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return days[month - 1] + (month == 2 && leap ? 1 : 0);
}

} // namespace

std::string nameOf(const std::string& kind, const std::string& objectId, std::size_t number)
{
    return objectId.empty() ? kind + " number " + std::to_string(number) : kind + " \"" + objectId + "\"";
}

const std::vector<const char*>& timeMembers()
{
    static const std::vector<const char*> members = {
        "ShotTime",   "LocationMarkTime", "FaceAppearTime", "FaceDisAppearTime",   "PersonAppearTime", "MarkTime",
        "AppearTime", "DisappearTime",    "PassTime",       "PersonDisAppearTime", "BeginTime",        "EndTime",
        "EntryTime",  "CurrentTime",      "StartTime",      "TriggerTime",         "AccessTime",       "PunchTime"};
    return members;
}

bool isTime(const std::string& text)
{
    if (text.size() != 14 || text.find_first_not_of("0123456789") != std::string::npos)
    {
        return false;
    }
    const int year = part(text, 0, 4);
    const int month = part(text, 4, 2);
    const int day = part(text, 6, 2);
    return year >= 1970 && month >= 1 && month <= 12 && day >= 1 && day <= daysOf(month, year) &&
           part(text, 8, 2) <= 23 && part(text, 10, 2) <= 59 && part(text, 12, 2) <= 59;
}

std::vector<std::string> memberFaults(const std::string& kind, const std::string& name, const cJSON* object)
{
    const auto* rule = std::find_if(std::begin(kindRules), std::end(kindRules),
                                    [&](const KindRule& each) { return kind == each.kind; });
    if (rule == std::end(kindRules))
    {
        return {};
    }
    Check check(object, name);
    check.digits(rule->idKey, rule->idLength, Need::Required);
    check.infoKind(rule->infoKind);
    check.digits("SourceID", sourceLength, rule->sourceId);
    check.digits("DeviceID", deviceLength, rule->deviceId);
    check.digits("TollgateID", deviceLength, rule->sourceId == Need::None ? Need::None : Need::Optional);
    check.times();
    check.numbers({"LeftTopX", "LeftTopY", "RightBtmX", "RightBtmY"});
    return check.take();
}

std::vector<std::string> subImageFaults(const std::string& name, std::size_t number, const cJSON* subImage)
{
    Check check(subImage, name + ", sub-image " + std::to_string(number));
    check.digits("ImageID", sourceLength, Need::Optional);
    check.digits("DeviceID", deviceLength, Need::Optional);
    check.times();
    return check.take();
}

} // namespace viewlib
