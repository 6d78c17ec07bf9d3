/* SPDX-License-Identifier: Apache-2.0 */
/* What is met in the field, ready to be laid down. Each rule is written as the control API takes it; its count is what
 * is proposed. */
#include "fault_json.h"
#include "json.h"
#include "viewlib/fault.h"

#include <algorithm>
#include <stdexcept>

namespace viewlib
{

namespace
{

struct Source
{
    const char* name;
    const char* title;
    const char* titleZh;
    const char* rule;
};

#define REGISTER R"("Resource":"/VIID/System/Register","Method":"POST",)"
#define KEEPALIVE R"("Resource":"/VIID/System/Keepalive","Method":"POST",)"
#define TIME R"("Resource":"/VIID/System/Time","Method":"GET",)"
#define FACES R"("Resource":"/VIID/Faces","Method":"POST",)"
#define ALL R"("Resource":"/VIID/*",)"
#define ONCE R"("Count":1,)"

/* clang-format off */
constexpr Source sources[] = {
    /* Session */
    {"stale-nonce", "Nonce answered as stale", "Nonce 视为过期", "{" REGISTER ONCE R"("Answer":{"StaleNonce":true}})"},
    {"next-nonce", "Authentication-Info with the next nonce", "返回 Authentication-Info nextnonce",
     "{" REGISTER R"("Answer":{"NextNonce":true}})"},
    {"expired-session", "Registration expires: 401", "注册过期：401", "{" ALL ONCE R"("Answer":{"ExpireSession":true}})"},
    {"not-registered-200", "\"Not registered\" under 200", "200 中返回“未注册”",
     "{" ALL ONCE R"("Answer":{"Status":200,"StatusCode":4,"StatusString":"not registered"}})"},
    {"keepalive-10", "Keepalive answered with code \"10\"", "心跳返回状态码“10”",
     "{" KEEPALIVE ONCE R"("Answer":{"Status":200,"StatusCode":"10","StatusString":"Fail"}})"},
    {"fixed-lifetime", "Keepalives do not extend the registration", "心跳不延长注册",
     "{" KEEPALIVE R"("Answer":{"Status":200,"AfterAuth":true}})"},
    {"challenge-anywhere", "Digest asked for on every resource", "所有资源均要求摘要认证",
     "{" ALL R"("Answer":{"AskCredentials":true}})"},

    /* Challenges */
    {"challenge-no-algorithm", "Challenge without algorithm, with Set-Cookie and no body", "质询无 algorithm，带 Set-Cookie，空正文",
     "{" REGISTER R"("Answer":{"Challenge":{"Algorithm":false,"EmptyBody":true,"Cookie":"JSESSIONID=0A1B2C3D4E5F; Path=/; HttpOnly"}}})"},
    {"challenge-no-opaque", "Challenge without opaque", "质询无 opaque", "{" REGISTER R"("Answer":{"Challenge":{"Opaque":false}}})"},
    {"challenge-quoted-algorithm", "Challenge with the algorithm quoted", "质询 algorithm 带引号",
     "{" REGISTER R"("Answer":{"Challenge":{"QuotedAlgorithm":true}}})"},
    {"challenge-cnonce", "Challenge with an extra cnonce", "质询多带 cnonce", "{" REGISTER R"("Answer":{"Challenge":{"Cnonce":true}}})"},
    {"challenge-realm-id", "Realm of 20 digits", "realm 为 20 位编码",
     "{" REGISTER R"("Answer":{"Challenge":{"Realm":"34020000005030000001"}}})"},
    {"challenge-realm-space", "Realm with a space", "realm 含空格",
     "{" REGISTER R"("Answer":{"Challenge":{"Realm":"View Library"}}})"},
    {"challenge-opaque-plus", "Opaque with a +", "opaque 含 +",
     "{" REGISTER R"("Answer":{"Challenge":{"OpaqueText":"FQhe/qaU925kfnzjCev0ciny7QMkPqMAFRtzCUYo5tdS+g=="}}})"},
    {"challenge-sha256-md5", "Two challenges: SHA-256, then MD5", "两个质询：先 SHA-256 后 MD5",
     "{" REGISTER R"("Answer":{"Challenge":{"Algorithms":["sha-256","md5"]}}})"},

    /* Refusals of credentials */
    {"refuse-401-bare", "401 without a challenge", "401 不带质询", "{" REGISTER ONCE R"("Answer":{"Status":401,"AfterAuth":true}})"},
    {"refuse-403", "403 to credentials", "凭据返回 403", "{" REGISTER ONCE R"("Answer":{"Status":403,"AfterAuth":true}})"},
    {"refuse-400-empty", "400 with an empty body to credentials", "凭据返回 400 空正文",
     "{" REGISTER ONCE R"("Answer":{"Status":400,"Body":"","ContentType":"","AfterAuth":true}})"},

    /* Envelopes */
    {"envelope-object", "Status in an object where a list belongs", "单个状态对象代替列表", "{" FACES R"("Answer":{"Envelope":"object"}})"},
    {"envelope-list", "Status in a list where an object belongs", "状态列表代替单个对象", "{" KEEPALIVE R"("Answer":{"Envelope":"list"}})"},
    {"envelope-bare-array", "Array without the list object", "数组无列表对象", "{" FACES R"("Answer":{"Envelope":"bare-array"}})"},
    {"envelope-bare-status", "Bare status", "裸状态", "{" FACES R"("Answer":{"Envelope":"bare-status"}})"},
    {"envelope-both", "Both envelopes in one body", "两种信封并存", "{" FACES R"("Answer":{"Envelope":"both"}})"},
    {"envelope-object-for-array", "Object where an array belongs", "对象代替数组", "{" FACES R"("Answer":{"Envelope":"object-for-array"}})"},
    {"envelope-empty-array", "Empty array of statuses", "空状态数组", "{" FACES R"("Answer":{"Envelope":"empty-array"}})"},
    {"envelope-null-array", "null where the array belongs", "null 代替数组", "{" FACES R"("Answer":{"Envelope":"null-array"}})"},
    {"envelope-null-list", "null where the list object belongs", "null 代替列表对象", "{" FACES R"("Answer":{"Envelope":"null-list"}})"},
    {"envelope-null", "null as the whole body", "正文为 null", "{" FACES R"("Answer":{"Envelope":"null"}})"},
    {"text-under-200", "Plain text under 200", "200 返回纯文本",
     "{" FACES ONCE R"("Answer":{"Status":200,"Body":"success","ContentType":"text/plain"}})"},
    {"html-under-200", "HTML under 200", "200 返回 HTML",
     "{" FACES ONCE R"("Answer":{"Status":200,"Body":"<html><body><h1>It works!</h1></body></html>","ContentType":"text/html"}})"},
    {"empty-200", "Empty 200", "200 空正文", "{" FACES ONCE R"("Answer":{"Status":200,"Body":"","ContentType":""}})"},

    /* Statuses */
    {"failure-under-200", "Failure status under 200", "200 中返回失败状态",
     "{" FACES ONCE R"("Answer":{"Status":200,"StatusCode":1,"StatusString":"Fail"}})"},
    {"ok-under-404", "Status 0 under 404", "404 中返回状态 0",
     "{" FACES ONCE R"("Answer":{"Status":404,"StatusCode":0,"StatusString":"OK"}})"},
    {"code-as-text", "StatusCode as a text", "StatusCode 为文本", "{" FACES R"("Answer":{"StatusCodeAsText":true}})"},
    {"code-2", "StatusCode 2: busy", "状态码 2：设备忙", "{" FACES ONCE R"("Answer":{"Status":200,"StatusCode":2,"StatusString":"Device Busy"}})"},
    {"code-3", "StatusCode 3: device fault", "状态码 3：设备错误", "{" FACES ONCE R"("Answer":{"Status":200,"StatusCode":3,"StatusString":"Device Error"}})"},
    {"code-4", "StatusCode 4: invalid operation", "状态码 4：无效操作", "{" FACES ONCE R"("Answer":{"Status":200,"StatusCode":4,"StatusString":"Invalid Operation"}})"},
    {"code-5", "StatusCode 5: XML format", "状态码 5：XML 格式无效", "{" FACES ONCE R"("Answer":{"Status":200,"StatusCode":5,"StatusString":"Invalid XML Format"}})"},
    {"code-6", "StatusCode 6: XML content", "状态码 6：XML 内容无效", "{" FACES ONCE R"("Answer":{"Status":200,"StatusCode":6,"StatusString":"Invalid XML Content"}})"},
    {"code-7", "StatusCode 7: JSON format", "状态码 7：JSON 格式无效", "{" FACES ONCE R"("Answer":{"Status":200,"StatusCode":7,"StatusString":"Invalid JSON Format"}})"},
    {"code-8", "StatusCode 8: JSON content", "状态码 8：JSON 内容无效", "{" FACES ONCE R"("Answer":{"Status":200,"StatusCode":8,"StatusString":"Invalid JSON Content"}})"},
    {"code-9", "StatusCode 9: restarting", "状态码 9：系统重启中", "{" FACES ONCE R"("Answer":{"Status":200,"StatusCode":9,"StatusString":"Reboot"}})"},
    {"code-minus-1", "StatusCode -1", "状态码 -1", "{" FACES ONCE R"("Answer":{"Status":200,"StatusCode":-1,"StatusString":"Fail"}})"},
    {"code-10", "StatusCode 10", "状态码 10", "{" FACES ONCE R"("Answer":{"Status":200,"StatusCode":10,"StatusString":"Fail"}})"},
    {"code-400", "StatusCode \"400\"", "状态码“400”", "{" FACES ONCE R"("Answer":{"Status":200,"StatusCode":"400","StatusString":"Fail"}})"},
    {"code-404", "StatusCode \"404\"", "状态码“404”", "{" FACES ONCE R"("Answer":{"Status":200,"StatusCode":"404","StatusString":"Fail"}})"},
    {"code-409", "StatusCode \"409\": already there", "状态码“409”：已存在", "{" FACES ONCE R"("Answer":{"Status":200,"StatusCode":"409","StatusString":"Fail"}})"},
    {"code-500", "StatusCode \"500\"", "状态码“500”", "{" FACES ONCE R"("Answer":{"Status":200,"StatusCode":"500","StatusString":"Fail"}})"},
    {"id-empty", "Empty Id", "Id 为空", "{" FACES R"("Answer":{"Id":"empty"}})"},
    {"id-null", "Id null", "Id 为 null", "{" FACES R"("Answer":{"Id":"null"}})"},
    {"id-upper-case", "Id spelled \"ID\"", "Id 写作“ID”", "{" FACES R"("Answer":{"Id":"upper-case"}})"},

    /* HTTP */
    {"unavailable", "503", "503", "{" FACES ONCE R"("Answer":{"Status":503}})"},
    {"redirect", "Redirect 302 to the same place", "302 重定向到原地址",
     "{" REGISTER ONCE R"("Answer":{"Status":302,"Headers":[["Location","{origin}{target}"]]}})"},
    {"redirect-307", "Redirect 307 to the same place", "307 重定向到原地址",
     "{" REGISTER ONCE R"("Answer":{"Status":307,"Headers":[["Location","{origin}{target}"]]}})"},
    {"media-utf8", "Media type with charset=utf8", "媒体类型 charset=utf8",
     "{" ALL R"("Answer":{"ContentType":"application/VIID+JSON;charset=utf8"}})"},
    {"media-lower-case", "Media type in lower case", "媒体类型小写",
     "{" ALL R"("Answer":{"ContentType":"application/viid+json;charset=utf-8"}})"},
    {"media-json", "Media type application/json", "媒体类型 application/json", "{" ALL R"("Answer":{"ContentType":"application/json"}})"},
    {"media-text", "Media type text/plain", "媒体类型 text/plain", "{" ALL R"("Answer":{"ContentType":"text/plain"}})"},
    {"chunked", "Answer in chunks", "分块应答", "{" ALL R"("Answer":{"Framing":"chunked"}})"},
    {"close-delimited", "Answer that the connection's end ends", "以关闭连接结束应答", "{" ALL R"("Answer":{"Framing":"close"}})"},
    {"close-at-once", "Connection: close, and closed at once", "Connection: close 并立即关闭",
     "{" ALL R"("Answer":{"Headers":[["Connection","close"]]}})"},
    {"gzip", "Answer packed with gzip", "gzip 压缩应答", "{" ALL R"("Answer":{"Gzip":true}})"},
    {"garbage", "Bytes that are no HTTP", "非 HTTP 数据", "{" FACES ONCE R"("Answer":{"Raw":"\u0001\u0002garbage, not HTTP\r\n\r\n"}})"},
    {"trailing-garbage", "Garbage after the answer", "应答后跟垃圾数据", "{" FACES ONCE R"("Answer":{"Trailing":"garbage\r\n"}})"},
    {"extra-continue", "A 100 Continue that nobody asked for", "多余的 100 Continue", "{" FACES R"("Answer":{"ContinueFirst":true}})"},
    {"early-answer", "413 before the body is read, then closed", "读正文前返回 413 并关闭",
     "{" FACES ONCE R"("Answer":{"Status":413,"BeforeBody":true,"Headers":[["Connection","close"]]}})"},

    /* Time and speed */
    {"delay", "Answer 5 s late", "应答延迟 5 秒", "{" ALL ONCE R"("Answer":{"DelayMs":5000}})"},
    {"delay-body", "Body 5 s after the headers", "头部后 5 秒才发正文", "{" ALL ONCE R"("Answer":{"DelayBeforeBodyMs":5000}})"},
    {"throttled-answer", "Answer at 100 bytes a second", "应答限速 100 字节/秒", "{" ALL ONCE R"("Answer":{"BytesPerSecond":100}})"},
    {"throttled-reading", "Request read at 50,000 bytes a second", "请求读取限速 50000 字节/秒",
     "{" FACES ONCE R"("Answer":{"RequestBytesPerSecond":50000}})"},
    {"stalled-reading", "Request not read", "不读取请求", "{" FACES ONCE R"("Answer":{"StallAfterRequestBytes":0}})"},

    /* Broken connections */
    {"cut-request", "Closed in the middle of the request", "请求中途断开", "{" FACES ONCE R"("Answer":{"CutAfterRequestBytes":1}})"},
    {"cut", "Closed without an answer", "无应答断开", "{" FACES ONCE R"("Answer":{"Cut":"before-status"}})"},
    {"cut-mid-body", "Closed in the middle of the answer", "应答中途断开", "{" FACES ONCE R"("Answer":{"Cut":"mid-body"}})"},
    {"reset", "Reset without an answer", "无应答复位", "{" FACES ONCE R"("Answer":{"Cut":"reset"}})"},

    /* The clock */
    {"time-epoch-ms", "LocalTime as milliseconds since 1970", "LocalTime 为毫秒时间戳", "{" TIME R"("Answer":{"Time":{"LocalTime":"epoch-ms"}}})"},
    {"time-epoch-s", "LocalTime as seconds since 1970", "LocalTime 为秒时间戳", "{" TIME R"("Answer":{"Time":{"LocalTime":"epoch-s"}}})"},
    {"time-rfc3339", "LocalTime as RFC 3339", "LocalTime 为 RFC 3339", "{" TIME R"("Answer":{"Time":{"LocalTime":"rfc3339"}}})"},
    {"time-mode-0", "TimeMode \"0\"", "TimeMode 为“0”", "{" TIME R"("Answer":{"Time":{"TimeMode":"0"}}})"},
    {"time-mode-1", "TimeMode \"1\"", "TimeMode 为“1”", "{" TIME R"("Answer":{"Time":{"TimeMode":"1"}}})"},
    {"time-mode-number", "TimeMode 1, a number", "TimeMode 为数字 1", "{" TIME R"("Answer":{"Time":{"TimeMode":1}}})"},
    {"time-mode-empty", "Empty TimeMode", "TimeMode 为空", "{" TIME R"("Answer":{"Time":{"TimeMode":""}}})"},
    {"time-zone-utc8", "TimeZone UTC+8", "TimeZone 为 UTC+8", "{" TIME R"("Answer":{"Time":{"TimeZone":"UTC+8","UtcOffsetMinutes":480}}})"},
    {"time-zone-shanghai", "TimeZone Asia/Shanghai", "TimeZone 为 Asia/Shanghai",
     "{" TIME R"("Answer":{"Time":{"TimeZone":"Asia/Shanghai","UtcOffsetMinutes":480}}})"},
    {"time-zone-etc", "TimeZone Etc/GMT-8", "TimeZone 为 Etc/GMT-8", "{" TIME R"("Answer":{"Time":{"TimeZone":"Etc/GMT-8","UtcOffsetMinutes":480}}})"},
    {"time-zone-null", "TimeZone null", "TimeZone 为 null", "{" TIME R"("Answer":{"Time":{"TimeZone":null}}})"},
    {"wrong-clock", "Clock an hour behind", "时钟慢一小时", "{" TIME R"("Answer":{"Time":{"OffsetMs":-3600000}}})"},
};
/* clang-format on */

/* What a rule proposes for its count is kept here, unlike in a rule that is laid down. */
FaultRule readRule(const Source& source)
{
    const Json tree = parseJson(source.rule);
    FaultRule rule = ruleFromJson(tree.get());
    rule.preset = source.name;
    return rule;
}

std::vector<Preset> readAll()
{
    std::vector<Preset> all;
    std::transform(std::begin(sources), std::end(sources), std::back_inserter(all), [](const Source& source) {
        return Preset{source.name, source.title, source.titleZh, readRule(source)};
    });
    return all;
}

} // namespace

const std::vector<Preset>& presets()
{
    static const std::vector<Preset> all = readAll();
    return all;
}

FaultRule preset(const std::string& name)
{
    const auto found =
        std::find_if(presets().begin(), presets().end(), [&](const Preset& each) { return each.name == name; });
    if (found == presets().end())
    {
        throw std::invalid_argument("there is no preset \"" + name + "\"");
    }
    return found->rule;
}

} // namespace viewlib
