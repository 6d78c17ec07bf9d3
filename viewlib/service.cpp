/* SPDX-License-Identifier: Apache-2.0 */
#include "service.h"

#include "json.h"
#include "notes.h"
#include "reading.h"
#include "sqlite.h"
#include "text.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace viewlib
{

namespace
{

bool isSession(Kind kind)
{
    return kind == Kind::Register || kind == Kind::UnRegister || kind == Kind::Keepalive || kind == Kind::Time;
}

Json statusObject(const Exchange& exchange, const Status& status, const std::string& time)
{
    Json object(cJSON_CreateObject());
    cJSON_AddStringToObject(object.get(), "RequestURL", exchange.target.c_str());
    cJSON_AddNumberToObject(object.get(), "StatusCode", static_cast<int>(status.code));
    cJSON_AddStringToObject(object.get(), "StatusString", status.text.c_str());
    cJSON_AddStringToObject(object.get(), "Id", status.id.c_str());
    cJSON_AddStringToObject(object.get(), "LocalTime", time.c_str());
    return object;
}

bool hasRoot(const cJSON* tree, const Resource& resource)
{
    for (const char* root : resource.roots)
    {
        if (root != nullptr && cJSON_IsObject(cJSON_GetObjectItemCaseSensitive(tree, root)))
        {
            return true;
        }
    }
    return false;
}

bool isDocumentType(const std::string& contentType)
{
    const std::string type = contentType.substr(0, contentType.find(';'));
    return sameNoCase(type, "application/VIID+JSON") || sameNoCase(type, "application/json");
}

/* Where an upload begins: "position=N" in its query, or at 0. Nothing when that is no number. */
std::optional<std::uint64_t> positionOf(const std::string& query)
{
    static constexpr std::string_view key = "position=";
    std::uint64_t position = 0;
    for (std::size_t from = 0; from < query.size();)
    {
        const std::size_t end = std::min(query.find('&', from), query.size());
        const std::string_view part = std::string_view(query).substr(from, end - from);
        if (part.substr(0, key.size()) == key)
        {
            const auto parsed = std::from_chars(part.data() + key.size(), part.data() + part.size(), position);
            if (parsed.ec != std::errc() || parsed.ptr != part.data() + part.size())
            {
                return std::nullopt;
            }
        }
        from = end + 1;
    }
    return position;
}

/* One status for each object that the collection holds; objects that came along with them have none of their own. */
std::vector<Status> statusesOf(const Findings& findings, const Resource& resource)
{
    std::vector<Status> statuses;
    for (const FoundObject& found : findings.objects)
    {
        if (found.object.kind == resource.objects)
        {
            statuses.push_back({StatusCode::Ok, "OK", found.object.objectId});
        }
    }
    return statuses.empty() ? std::vector<Status>{Status{}} : statuses;
}

} // namespace

Service::Service(const Config& config, Store& store, Uploads& uploads)
    : m_config(config), m_store(store), m_uploads(uploads), m_verifier(config), m_clockOffset(config.clockOffset)
{
}

std::chrono::system_clock::time_point Service::now() const
{
    return m_config.clock ? m_config.clock() : std::chrono::system_clock::now();
}

std::chrono::system_clock::time_point Service::shownTime() const
{
    return now() + m_clockOffset.load();
}

bool Service::online(const Registration& registration) const
{
    const std::optional<std::chrono::system_clock::time_point> end = expiry(registration);
    return !end || now() <= *end;
}

std::optional<std::chrono::system_clock::time_point> Service::expiry(const Registration& registration) const
{
    const bool expired = toMilliseconds(registration.lastKeepalive) == 0; /* by Store::expireRegistration */
    return expired || m_config.registrationLifetime.count() != 0
               ? std::optional(registration.lastKeepalive + m_config.registrationLifetime)
               : std::nullopt;
}

bool Service::expire(const std::string& device)
{
    return m_store.expireRegistration(device);
}

Answer Service::envelope(const Exchange& exchange, unsigned http, const std::vector<Status>& statuses) const
{
    const std::string time = localTime(shownTime());
    const std::optional<ResourceMatch> match = findResource(exchange.path);
    Json root(cJSON_CreateObject());
    if (match && isSession(match->kind))
    {
        cJSON_AddItemToObject(root.get(), "ResponseStatusObject",
                              statusObject(exchange, statuses.front(), time).release());
    }
    else
    {
        cJSON* list = cJSON_AddObjectToObject(root.get(), "ResponseStatusListObject");
        cJSON* array = cJSON_AddArrayToObject(list, "ResponseStatusObject");
        for (const Status& status : statuses)
        {
            cJSON_AddItemToArray(array, statusObject(exchange, status, time).release());
        }
    }
    return Answer(http, printJson(root.get()));
}

Answer Service::fault(const Exchange& exchange, unsigned http, StatusCode code, const std::string& text) const
{
    return envelope(exchange, http, {{code, text, {}}});
}

std::optional<Answer> Service::refuse(const Exchange& exchange, Checks checks, const Answer* spoilt)
{
    const std::optional<ResourceMatch> match = findResource(exchange.path);
    if (!match)
    {
        return fault(exchange, 404, StatusCode::InvalidOperation, "there is no resource " + exchange.path);
    }
    if (!match->allows(exchange.method))
    {
        return fault(exchange, 405, StatusCode::InvalidOperation, exchange.method + " is not served here")
            .with("Allow", match->methods());
    }
    if (match->kind == Kind::Upload) /* its requests name no device */
    {
        return refuseUpload(exchange, match->id);
    }
    if (exchange.oversized)
    {
        return fault(exchange, 413, StatusCode::InvalidOperation,
                     "the body is larger than " + std::to_string(m_config.maxBody) + " bytes");
    }
    const bool reading = exchange.method == "GET" && match->kind != Kind::Time;
    const bool open = reading ? !m_config.strict.reading : match->kind == Kind::LogEvent;
    if (checks == Checks::FormOnly || open)
    {
        return std::nullopt;
    }
    const bool digest = match->kind == Kind::Register || match->kind == Kind::UnRegister;
    if (digest)
    {
        return refuseCredentials(exchange, spoilt);
    }
    std::optional<Answer> refusal =
        spoilt != nullptr && spoilt->askCredentials ? refuseCredentials(exchange, spoilt) : std::nullopt;
    return refusal ? refusal : refuseStranger(exchange);
}

std::optional<Answer> Service::refuseGood(const Exchange& exchange, const Answer& spoilt)
{
    if (spoilt.staleNonce && exchange.hasHeader("Authorization"))
    {
        return challenge(exchange, digest::Verdict::StaleNonce, &spoilt);
    }
    if (spoilt.expireSession && m_store.expireRegistration(exchange.device()))
    {
        return fault(exchange, 401, StatusCode::InvalidOperation,
                     "the registration of device \"" + exchange.device() + "\" has expired");
    }
    return std::nullopt;
}

std::optional<Answer> Service::refuseCredentials(const Exchange& exchange, const Answer* spoilt)
{
    if (m_config.user.empty())
    {
        return std::nullopt;
    }
    const digest::Verdict verdict =
        m_verifier.verify(exchange.header("Authorization"), exchange.method, exchange.target, now());
    if (verdict == digest::Verdict::Accepted)
    {
        return std::nullopt;
    }
    return challenge(exchange, verdict, spoilt);
}

Answer Service::challenge(const Exchange& exchange, digest::Verdict verdict, const Answer* spoilt)
{
    const ChallengeShape shape = spoilt != nullptr && spoilt->challenge ? *spoilt->challenge : ChallengeShape();
    Answer answer = fault(exchange, 401, StatusCode::InvalidOperation, digest::describe(verdict));
    for (std::string& value : m_verifier.challenges(verdict == digest::Verdict::StaleNonce, now(), shape))
    {
        answer.with("WWW-Authenticate", std::move(value));
    }
    if (!shape.cookie.empty())
    {
        answer.with("Set-Cookie", shape.cookie);
    }
    if (shape.emptyBody)
    {
        answer.body = "";
        answer.contentType.clear();
    }
    return answer;
}

std::optional<Answer> Service::refuseStranger(const Exchange& exchange) const
{
    if (!m_config.strict.registration)
    {
        return std::nullopt;
    }
    const std::string device = exchange.device();
    const std::optional<Registration> registration = m_store.registration(device);
    if (registration && online(*registration))
    {
        return std::nullopt;
    }
    return fault(exchange, 401, StatusCode::InvalidOperation,
                 registration ? "the registration of device \"" + device + "\" has expired"
                              : "device \"" + device + "\" is not registered");
}

Answer Service::perform(Exchange& exchange, const UploadWriter* upload)
{
    const std::optional<ResourceMatch> match = findResource(exchange.path);
    switch (match->kind) /* refuse() has seen to it that there is one */
    {
    case Kind::Register:
        return registerDevice(exchange);
    case Kind::UnRegister:
        return unregisterDevice(exchange);
    case Kind::Keepalive:
        return keepAlive(exchange);
    case Kind::Time:
        return tellTime();
    case Kind::Upload:
        return exchange.method == "GET" ? tellTransferState(exchange, match->id)
                                        : endUpload(exchange, match->id, upload);
    case Kind::Collection:
    case Kind::Data:
    case Kind::Member:
    case Kind::Picture:
    case Kind::LogEvent:
        break;
    }
    return exchange.method == "GET" ? show(exchange, *match) : store(exchange, *match);
}

Answer Service::show(const Exchange& exchange, const ResourceMatch& match) const
{
    const bool isList = match.kind == Kind::Collection || match.kind == Kind::LogEvent;
    const PageQuery query = isList ? parsePage(exchange.query) : PageQuery{};
    if (!query.fault.empty())
    {
        return fault(exchange, 400, StatusCode::InvalidOperation, query.fault);
    }
    std::optional<Answer> found = showStored(m_store, match, query.page);
    return found ? *std::move(found)
                 : fault(exchange, 404, StatusCode::InvalidOperation, "nothing is stored under " + exchange.path);
}

Answer Service::store(Exchange& exchange, const ResourceMatch& match)
{
    switch (match.kind)
    {
    case Kind::Collection:
        return storeDocument(exchange, *match.resource);
    case Kind::Data:
        return storeData(exchange, match);
    default:
        return storeLogEvent(exchange);
    }
}

Service::Identity Service::identify(const Exchange& exchange, const char* root) const
{
    const Json tree = parseJson(exchange.body);
    if (!tree)
    {
        return {{}, fault(exchange, 400, StatusCode::JsonFormat, "the body is not JSON")};
    }
    std::string device = textOf(cJSON_GetObjectItemCaseSensitive(tree.get(), root), "DeviceID");
    if (device.empty())
    {
        return {
            {},
            fault(exchange, 400, StatusCode::JsonContent, std::string("there is no \"DeviceID\" in \"") + root + "\"")};
    }
    const std::string header = exchange.device();
    if (m_config.strict.identity && !header.empty() && header != device)
    {
        return {{},
                fault(exchange, 400, StatusCode::JsonContent,
                      "\"DeviceID\" is \"" + device + "\", but User-Identify says \"" + header + "\"")};
    }
    return {std::move(device), std::nullopt};
}

Answer Service::registerDevice(const Exchange& exchange)
{
    Identity identity = identify(exchange, "RegisterObject");
    if (identity.fault)
    {
        return *std::move(identity.fault);
    }
    m_store.addRegistration(identity.device, now());
    return envelope(exchange, 200, {{StatusCode::Ok, "OK", identity.device}});
}

Answer Service::unregisterDevice(const Exchange& exchange)
{
    Identity identity = identify(exchange, "UnRegisterObject");
    if (identity.fault)
    {
        return *std::move(identity.fault);
    }
    if (!m_store.removeRegistration(identity.device))
    {
        return fault(exchange, 404, StatusCode::InvalidOperation,
                     "device \"" + identity.device + "\" is not registered");
    }
    return envelope(exchange, 200, {{StatusCode::Ok, "OK", identity.device}});
}

Answer Service::keepAlive(const Exchange& exchange)
{
    Identity identity = identify(exchange, "KeepaliveObject");
    if (identity.fault)
    {
        return *std::move(identity.fault);
    }
    m_store.keepAlive(identity.device, now());
    return envelope(exchange, 200, {{StatusCode::Ok, "OK", identity.device}});
}

Answer Service::tellTime() const
{
    const std::chrono::system_clock::time_point time = shownTime();
    Json root(cJSON_CreateObject());
    cJSON* object = cJSON_AddObjectToObject(root.get(), "SystemTimeObject");
    cJSON_AddStringToObject(object, "VIIDServerID", m_config.serverId.c_str());
    cJSON_AddStringToObject(object, "TimeMode", "1");
    cJSON_AddStringToObject(object, "LocalTime", localTime(time).c_str());
    cJSON_AddStringToObject(object, "TimeZone", timeZone(time).c_str());
    return Answer(200, printJson(root.get()));
}

StoredPost Service::postOf(const Exchange& exchange) const
{
    StoredPost post;
    post.received = exchange.received;
    post.device = exchange.device();
    post.path = exchange.path;
    post.contentType = exchange.header("Content-Type");
    post.body = exchange.body;
    return post;
}

/* On disk, or as good as there, once this returns. */
void Service::keep(Exchange& exchange, const std::vector<FoundObject>& objects)
{
    const StoredSummary summary = m_store.add(postOf(exchange), objects);
    exchange.post = summary.post;
    if (onStored)
    {
        onStored(summary);
    }
}

Answer Service::storeDocument(Exchange& exchange, const Resource& resource)
{
    const std::string type = exchange.header("Content-Type");
    if (m_config.strict.mediaType && !isDocumentType(type))
    {
        return fault(exchange, 415, StatusCode::InvalidOperation, "\"" + type + "\" is not application/VIID+JSON");
    }
    const Json tree = parseJson(exchange.body);
    if (!tree)
    {
        return fault(exchange, 400, StatusCode::JsonFormat, "the body is not JSON");
    }
    if (!hasRoot(tree.get(), resource))
    {
        return fault(exchange, 400, StatusCode::JsonContent,
                     std::string("the document has no \"") + resource.roots[0] + "\"");
    }
    Findings findings = findObjects(tree.get(), m_config.strict, shownTime());
    if (!findings.fault.empty())
    {
        return fault(exchange, 400, StatusCode::JsonContent, findings.fault);
    }
    noteSources(findings, m_store);
    if (!isDocumentType(type) && !findings.objects.empty())
    {
        note(findings.objects.front(), "media-type", "\"" + type + "\" is not application/VIID+JSON");
    }
    keep(exchange, findings.objects);
    return envelope(exchange, 200, statusesOf(findings, resource));
}

Answer Service::storeData(Exchange& exchange, const ResourceMatch& match)
{
    keep(exchange, {dataObject(match.resource->objects, match.id, exchange.body, !m_config.strict.lineBreaks)});
    return envelope(exchange, 200, {{StatusCode::Ok, "OK", match.id}});
}

Answer Service::storeLogEvent(Exchange& exchange)
{
    const Json tree = parseJson(exchange.body);
    if (!tree)
    {
        return fault(exchange, 400, StatusCode::JsonFormat, "the body is not JSON");
    }
    const Findings findings = findLogEvents(tree.get());
    if (!findings.fault.empty())
    {
        return fault(exchange, 400, StatusCode::JsonContent, findings.fault);
    }
    keep(exchange, findings.objects);
    return envelope(exchange, 200, {Status{}});
}

std::optional<Answer> Service::refuseUpload(const Exchange& exchange, const std::string& name) const
{
    if (!Uploads::isName(name))
    {
        return fault(exchange, 400, StatusCode::InvalidOperation,
                     "a name has 1 to 128 letters, digits, '.', '_' and '-', and begins with no '.'");
    }
    if (!positionOf(exchange.query))
    {
        return fault(exchange, 400, StatusCode::InvalidOperation, "\"position\" is not a number");
    }
    return std::nullopt;
}

bool Service::isUpload(const Exchange& exchange) const
{
    const std::optional<ResourceMatch> match = findResource(exchange.path);
    return match && match->kind == Kind::Upload && exchange.method == "POST" && !refuseUpload(exchange, match->id);
}

std::unique_ptr<UploadWriter> Service::openUpload(const Exchange& exchange)
{
    return m_uploads.open(findResource(exchange.path)->id, *positionOf(exchange.query));
}

Answer Service::endUpload(const Exchange& exchange, const std::string& name, const UploadWriter* upload) const
{
    switch (upload == nullptr ? UploadWriter::Outcome::Failed : upload->outcome())
    {
    case UploadWriter::Outcome::Good:
        if (const std::optional<Upload> held = m_uploads.state(name); held && onUploaded)
        {
            onUploaded(*held);
        }
        return envelope(exchange, 200, {{StatusCode::Ok, "OK", name}});
    case UploadWriter::Outcome::BeyondEnd:
    case UploadWriter::Outcome::TakenOver:
        return fault(exchange, 409, StatusCode::InvalidOperation, upload->reason());
    case UploadWriter::Outcome::Failed:
        break;
    }
    return fault(exchange, 500, StatusCode::OtherFault, "storage: " + (upload ? upload->reason() : std::string()));
}

Answer Service::tellTransferState(const Exchange& exchange, const std::string& name) const
{
    const std::optional<Upload> upload = m_uploads.state(name);
    if (!upload)
    {
        return fault(exchange, 404, StatusCode::InvalidOperation, "nothing is held of \"" + name + "\"");
    }
    Json root(cJSON_CreateObject());
    cJSON* object = cJSON_AddObjectToObject(root.get(), "TransDataInfObject");
    cJSON_AddNumberToObject(object, "FileLength", static_cast<double>(upload->length));
    cJSON_AddStringToObject(object, "FileHash", upload->md5.c_str());
    return Answer(200, printJson(root.get()));
}

} // namespace viewlib
