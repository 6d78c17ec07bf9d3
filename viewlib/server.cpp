/* SPDX-License-Identifier: Apache-2.0 */
#include "viewlib/server.h"

#include "api.h"
#include "api_control.h"
#include "api_faults.h"
#include "api_pictures.h"
#include "api_records.h"
#include "certificate.h"
#include "devices.h"
#include "exchange_log.h"
#include "exchange_summary.h"
#include "faults.h"
#include "feed.h"
#include "journal.h"
#include "listener.h"
#include "retention.h"
#include "service.h"
#include "shapes.h"
#include "store.h"
#include "text.h"
#include "uploads.h"

#include <algorithm>
#include <atomic>
#include <exception>

namespace viewlib
{

namespace
{

/* What a scripted answer leaves open is taken from the usual one. */
Answer merge(Answer scripted, Answer usual)
{
    if (scripted.status != 0)
    {
        return scripted;
    }
    scripted.status = usual.status;
    if (scripted.contentType == Answer().contentType)
    {
        scripted.contentType = usual.contentType;
    }
    scripted.headers.insert(scripted.headers.begin(), usual.headers.begin(), usual.headers.end());
    if (!scripted.body)
    {
        scripted.body = std::move(usual.body);
    }
    return scripted;
}

bool isSilent(const Answer& answer)
{
    return answer.raw.has_value() || answer.cut == Cut::BeforeStatus || answer.cut == Cut::Reset;
}

/* Whether it is given in place of handling the request. */
bool replacesHandling(const std::optional<Answer>& scripted)
{
    return scripted && scripted->status != 0 && !scripted->takeEffect;
}

/* Registrations change there. */
bool isSessionPath(const std::string& path)
{
    return pathFits("/VIID/System/*", path);
}

bool shapesStatuses(const Answer& answer)
{
    return answer.envelope != Envelope::Usual || answer.statusCode || answer.statusCodeAsText || answer.statusText ||
           answer.statusId != StatusId::Usual;
}

/* So that a redirect can lead to this very server, by the name that the client has for it. */
void fillIn(std::string& text, const std::string& mark, const std::string& value)
{
    for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at + value.size()))
    {
        text.replace(at, mark.size(), value);
    }
}

bool bodyAllowed(unsigned status)
{
    return status >= 200 && status != 204 && status != 304;
}

} // namespace

struct Server::Engine : Handler
{
    explicit Engine(Config settings)
        : config(std::move(settings)), store(config.storage), uploads(config.storage, [this] { return service.now(); }),
          service(config, store, uploads), log(config.storage, config.storedExchanges, config.storedBody),
          retention(config, store, uploads, log), devices(store, service, feed), api(config.addresses()),
          journal(config.maxExchanges, log.last()), listener(*this, config), port(config.port)
    {
        addControlEndpoints(api,
                            {config, store, uploads, service, devices, feed, [this] { return url(config.address); },
                             [this] { return lastExchange.load(); }, [this] { return faults.active(); }});
        addFaultEndpoints(api, {[this](FaultRule rule) { return addFault(std::move(rule)); },
                                [this](std::uint64_t number) { return removeFault(number); }, [this] { clearFaults(); },
                                [this] { return faults.all(); }});
        addPictureEndpoint(api, store);
        addRecordEndpoints(api, {store, uploads, log, config.https ? "https" : "http"});
        service.onStored = [this](const StoredSummary& stored) { publish(stored); };
        service.onUploaded = [this](const Upload& upload) { publish(upload); };
        lastExchange = log.last();
        retention.apply(service.now());
    }
    std::string url(const std::string& address) const;
    void publish(const StoredSummary& stored);
    void publish(const Upload& upload);

    Reception begin(const Exchange& exchange) override;
    Answer finish(Exchange& exchange, Reception reception) override;
    void abandon(Exchange& exchange) override;

    Answer serveApi(const Exchange& exchange) const;
    Answer decide(Exchange& exchange, Reception reception);
    Answer handle(Exchange& exchange, std::optional<Answer> scripted, const UploadWriter* upload);
    std::optional<Answer> take(const Exchange& exchange, Faults::Stage stage, std::optional<std::int64_t>& number);
    void tellFault(std::uint64_t number, const char* change);
    std::uint64_t addFault(FaultRule rule);
    bool removeFault(std::uint64_t number);
    void clearFaults();
    void complete(const Exchange& exchange, Answer& answer) const;
    void record(Exchange& exchange);

    const Config config;
    Store store;
    Uploads uploads;
    Service service;
    ExchangeLog log;
    Retention retention;
    Feed feed;
    Devices devices;
    Api api;
    Faults faults;
    Journal journal;
    Listener listener;
    std::atomic<std::uint16_t> port;
    std::atomic<std::uint64_t> lastExchange{0};
    std::optional<Certificate> certificate; /* of HTTPS, from the first start on */
};

std::string Server::Engine::url(const std::string& address) const
{
    const bool ipv6 = address.find(':') != std::string::npos;
    return std::string(config.https ? "https://" : "http://") + (ipv6 ? "[" + address + "]" : address) + ":" +
           std::to_string(port);
}

void Server::Engine::publish(const StoredSummary& stored)
{
    for (const StoredSummary::Object& object : stored.objects)
    {
        Json members(cJSON_CreateObject());
        cJSON_AddNumberToObject(members.get(), "Object", static_cast<double>(object.id));
        cJSON_AddStringToObject(members.get(), "Kind", object.kind.c_str());
        cJSON_AddStringToObject(members.get(), "Id", object.objectId.c_str());
        cJSON_AddStringToObject(members.get(), "Device", stored.device.c_str());
        cJSON_AddNumberToObject(members.get(), "Notes", static_cast<double>(object.notes));
        cJSON_AddItemToObject(members.get(), "Picture",
                              object.picture ? cJSON_CreateNumber(static_cast<double>(*object.picture))
                                             : cJSON_CreateNull());
        feed.publish("object", service.now(), std::move(members));
    }
}

void Server::Engine::publish(const Upload& upload)
{
    Json members(cJSON_CreateObject());
    cJSON_AddStringToObject(members.get(), "Name", upload.name.c_str());
    cJSON_AddNumberToObject(members.get(), "Length", static_cast<double>(upload.length));
    feed.publish("upload", service.now(), std::move(members));
}

void Server::Engine::abandon(Exchange& exchange)
{
    exchange.received = service.now();
    if (!Api::serves(exchange.path))
    {
        record(exchange);
    }
}

Reception Server::Engine::begin(const Exchange& exchange)
{
    Reception reception;
    if (Api::serves(exchange.path))
    {
        reception.maxBody = Api::maxBody;
        return reception;
    }
    reception.early = take(exchange, Faults::Stage::HeadersRead, reception.fault);
    if (!service.isUpload(exchange))
    {
        return reception;
    }
    if (!reception.early) /* uploads pass no check that an answer could wait for */
    {
        reception.early = take(exchange, Faults::Stage::Authorized, reception.fault);
    }
    if (!replacesHandling(reception.early))
    {
        reception.upload = service.openUpload(exchange);
    }
    return reception;
}

Answer Server::Engine::finish(Exchange& exchange, Reception reception)
{
    exchange.received = service.now();
    if (Api::serves(exchange.path))
    {
        return serveApi(exchange);
    }
    const auto read = std::chrono::steady_clock::now();
    exchange.reading = std::chrono::duration_cast<std::chrono::microseconds>(read - exchange.arrived);
    Answer answer;
    try
    {
        answer = decide(exchange, std::move(reception));
    }
    catch (const std::exception& error)
    {
        answer = service.envelope(exchange, 500, {{StatusCode::OtherFault, error.what(), {}}});
    }
    complete(exchange, answer);
    const bool silent = isSilent(answer);
    exchange.status = silent ? 0 : answer.status;
    exchange.answer = silent ? answer.raw.value_or("") : *answer.body;
    exchange.answerHeaders = silent ? std::vector<Header>() : answer.headers;
    exchange.cut = answer.cut;
    exchange.handling = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - read);
    record(exchange);
    if (answer.gzip && !silent)
    {
        answer.body = gzip(*answer.body);
    }
    return answer;
}

Answer Server::Engine::serveApi(const Exchange& exchange) const
{
    Answer answer;
    try
    {
        answer = *api.handle(exchange);
    }
    catch (const std::exception& error)
    {
        answer = errorReply(500, error.what());
    }
    complete(exchange, answer);
    return answer;
}

std::optional<Answer> Server::Engine::take(const Exchange& exchange, Faults::Stage stage,
                                           std::optional<std::int64_t>& number)
{
    std::optional<Faults::Hit> hit = faults.take(exchange, stage);
    if (!hit)
    {
        return std::nullopt;
    }
    number = static_cast<std::int64_t>(hit->number);
    tellFault(hit->number, "hit");
    return std::move(hit->answer);
}

void Server::Engine::tellFault(std::uint64_t number, const char* change)
{
    Json members(cJSON_CreateObject());
    cJSON_AddNumberToObject(members.get(), "Fault", static_cast<double>(number));
    cJSON_AddStringToObject(members.get(), "Change", change);
    feed.publish("fault", service.now(), std::move(members));
}

std::uint64_t Server::Engine::addFault(FaultRule rule)
{
    const std::uint64_t number = faults.add(std::move(rule), Faults::Origin::Rule);
    tellFault(number, "added");
    return number;
}

bool Server::Engine::removeFault(std::uint64_t number)
{
    const bool known = faults.remove(number);
    if (known)
    {
        tellFault(number, "removed");
    }
    return known;
}

void Server::Engine::clearFaults()
{
    for (const Fault& fault : faults.all())
    {
        removeFault(fault.number);
    }
}

Answer Server::Engine::decide(Exchange& exchange, Reception reception)
{
    exchange.fault = reception.fault;
    std::optional<Answer>& early = reception.early;
    if (replacesHandling(early))
    {
        return *std::move(early);
    }
    const bool skip = early && early->skipAuth;
    if (std::optional<Answer> refusal = service.refuse(
            exchange, skip ? Service::Checks::FormOnly : Service::Checks::All, early ? &*early : nullptr))
    {
        return early ? merge(*std::move(early), *std::move(refusal)) : *std::move(refusal);
    }
    std::optional<Answer> scripted =
        early ? std::move(early) : take(exchange, Faults::Stage::Authorized, exchange.fault);
    return handle(exchange, std::move(scripted), reception.upload.get());
}

Answer Server::Engine::handle(Exchange& exchange, std::optional<Answer> scripted, const UploadWriter* upload)
{
    if (replacesHandling(scripted))
    {
        return *std::move(scripted);
    }
    std::optional<Answer> refusal = scripted ? service.refuseGood(exchange, *scripted) : std::nullopt;
    Answer usual = refusal ? *std::move(refusal) : service.perform(exchange, upload);
    if (scripted && scripted->nextNonce && exchange.hasHeader("Authorization") && usual.status < 400)
    {
        usual.with("Authentication-Info", service.nextNonce());
    }
    return scripted ? merge(*std::move(scripted), std::move(usual)) : usual;
}

/* Gives the answer the body and headers that it is sent with. */
void Server::Engine::complete(const Exchange& exchange, Answer& answer) const
{
    if (!answer.body)
    {
        const Status status = answer.status < 400 ? Status{} : Status{StatusCode::OtherFault, "Fail", {}};
        answer.body = bodyAllowed(answer.status) ? service.envelope(exchange, answer.status, {status}).body : "";
    }
    if (shapesStatuses(answer))
    {
        answer.body = shapeStatuses(*answer.body, answer);
    }
    if (answer.time)
    {
        answer.body = shapeTime(*answer.body, *answer.time, service.shownTime());
    }
    if (answer.gzip)
    {
        answer.with("Content-Encoding", "gzip");
    }
    for (Header& header : answer.headers)
    {
        fillIn(header.value, "{origin}", (config.https ? "https://" : "http://") + exchange.header("Host"));
        fillIn(header.value, "{target}", exchange.target);
    }
    const bool typed = std::any_of(answer.headers.begin(), answer.headers.end(),
                                   [](const Header& header) { return sameNoCase(header.name, "Content-Type"); });
    if (!typed && !answer.contentType.empty() && bodyAllowed(answer.status))
    {
        answer.with("Content-Type", answer.contentType);
    }
}

void Server::Engine::record(Exchange& exchange)
{
    devices.see(exchange);
    journal.add(exchange);
    lastExchange = exchange.number;
    if (isSessionPath(exchange.path))
    {
        devices.refresh();
    }
    LoggedExchange row = log.rowOf(exchange);
    feed.publish("exchange", exchange.received, summaryOf(row));
    log.add(std::move(row));
    retention.apply(exchange.received);
    if (config.observer)
    {
        config.observer(exchange);
    }
}

Server::Server(Config config) : m_engine(std::make_unique<Engine>(std::move(config)))
{
}

Server::~Server()
{
    stop();
}

void Server::start()
{
    const Config& config = m_engine->config;
    if (running())
    {
        return;
    }
    if (config.https && !m_engine->certificate)
    {
        m_engine->certificate = config.storage == ":memory:" ? makeCertificate(config.addresses())
                                                             : keptCertificate(config.storage, config.addresses());
    }
    m_engine->feed.open();
    m_engine->port = m_engine->listener.start(m_engine->port, m_engine->certificate);
}

void Server::stop()
{
    m_engine->feed.close();
    m_engine->listener.stop();
}

void Server::restart(Registrations registrations)
{
    stop();
    if (registrations == Registrations::Forgotten)
    {
        forgetRegistrations();
    }
    start();
}

bool Server::running() const
{
    return m_engine->listener.running();
}

std::uint16_t Server::port() const
{
    return m_engine->port;
}

std::string Server::url(const std::string& path) const
{
    return m_engine->url(m_engine->config.address) + path;
}

std::vector<std::string> Server::urls() const
{
    std::vector<std::string> all;
    for (const std::string& address : m_engine->config.addresses())
    {
        all.push_back(m_engine->url(address));
    }
    return all;
}

std::string Server::certificateFingerprint() const
{
    return m_engine->certificate ? fingerprint(*m_engine->certificate) : std::string();
}

void Server::script(const std::string& path, Answer answer)
{
    FaultRule rule;
    rule.resource = path;
    rule.count = 1;
    rule.answer = std::move(answer);
    m_engine->faults.add(std::move(rule), Faults::Origin::Script);
}

void Server::always(const std::string& path, Answer answer)
{
    FaultRule rule;
    rule.resource = path;
    rule.answer = std::move(answer);
    m_engine->faults.removeStanding(path);
    m_engine->faults.add(std::move(rule), Faults::Origin::Script);
}

void Server::clearScripts()
{
    m_engine->faults.clearScripts();
}

std::size_t Server::scriptsLeft() const
{
    return m_engine->faults.scriptsLeft();
}

std::uint64_t Server::addFault(FaultRule rule)
{
    return m_engine->addFault(std::move(rule));
}

bool Server::removeFault(std::uint64_t number)
{
    return m_engine->removeFault(number);
}

void Server::clearFaults()
{
    m_engine->clearFaults();
}

std::vector<Fault> Server::faults() const
{
    return m_engine->faults.all();
}

std::vector<Exchange> Server::exchanges() const
{
    return m_engine->journal.of("*");
}

std::vector<Exchange> Server::exchangesOf(const std::string& path) const
{
    return m_engine->journal.of(path);
}

bool Server::waitFor(const std::string& path, std::size_t count, std::chrono::milliseconds timeout) const
{
    return m_engine->journal.wait(path, count, timeout);
}

void Server::clearExchanges()
{
    m_engine->journal.clear();
    m_engine->log.clear();
}

std::vector<Registration> Server::registrations() const
{
    std::vector<Registration> found = m_engine->store.registrations();
    for (Registration& registration : found)
    {
        registration.online = m_engine->service.online(registration);
    }
    return found;
}

bool Server::registered(const std::string& device) const
{
    const std::optional<Registration> registration = m_engine->store.registration(device);
    return registration && m_engine->service.online(*registration);
}

void Server::registerDevice(const std::string& device)
{
    m_engine->store.addRegistration(device, m_engine->service.now());
}

void Server::forgetRegistrations()
{
    m_engine->store.forgetRegistrations();
}

StoreCounts Server::stored() const
{
    return m_engine->store.counts();
}

std::vector<StoredPost> Server::posts(const std::string& path) const
{
    return m_engine->store.posts(path);
}

std::vector<StoredObject> Server::objects(const std::string& kind) const
{
    return m_engine->store.objects(kind);
}

std::vector<Picture> Server::pictures(const std::string& objectId) const
{
    return m_engine->store.pictures(objectId);
}

std::vector<Upload> Server::uploads() const
{
    return m_engine->uploads.all();
}

void Server::setClockOffset(std::chrono::milliseconds offset)
{
    m_engine->service.setClockOffset(offset);
}

} // namespace viewlib
