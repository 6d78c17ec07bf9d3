/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "digest.h"
#include "resources.h"
#include "store.h"
#include "uploads.h"
#include "viewlib/answer.h"
#include "viewlib/config.h"
#include "viewlib/exchange.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace viewlib
{

/* The codes that this server gives. */
enum class StatusCode
{
    Ok = 0,
    OtherFault = 1,
    InvalidOperation = 4,
    JsonFormat = 7,
    JsonContent = 8
};

/* What goes into one "ResponseStatusObject". */
struct Status
{
    StatusCode code = StatusCode::Ok;
    std::string text = "OK";
    std::string id;
};

/* The resources of the view library: who may use them and what they do. */
class Service
{
  public:
    Service(const Config& config, Store& store, Uploads& uploads);

    /* Called for each post that was stored, by the thread that serves it. */
    std::function<void(const StoredSummary&)> onStored;
    std::function<void(const Upload&)> onUploaded; /* the same for uploads; with length and hash alone */

    enum class Checks
    {
        All,
        FormOnly /* path, method and size, but neither credentials nor registration */
    };
    /* The answer for a request that may not go on; nothing when it may. */
    std::optional<Answer> refuse(const Exchange& exchange, Checks checks, const Answer* spoilt = nullptr);
    /* The refusal that a fault asks for of a request that was found good; nothing when it asks for none. */
    std::optional<Answer> refuseGood(const Exchange& exchange, const Answer& spoilt);
    /* The "Authentication-Info" of an answer to good credentials. */
    std::string nextNonce()
    {
        return m_verifier.nextNonce(now());
    }
    /* The answer for one that may. */
    Answer perform(Exchange& exchange, const UploadWriter* upload);

    /* Whether the body is one to stream; its writer is opened before the body is read. */
    bool isUpload(const Exchange& exchange) const;
    std::unique_ptr<UploadWriter> openUpload(const Exchange& exchange);

    /* The standard envelope under an HTTP status. */
    Answer envelope(const Exchange& exchange, unsigned http, const std::vector<Status>& statuses) const;

    std::chrono::system_clock::time_point now() const;
    std::chrono::system_clock::time_point shownTime() const; /* the clock that clients are shown */
    bool online(const Registration& registration) const;
    /* When it expires unless a sign of life comes; nothing: never. */
    std::optional<std::chrono::system_clock::time_point> expiry(const Registration& registration) const;
    bool expire(const std::string& device); /* at once; false: it is not registered */
    void setClockOffset(std::chrono::milliseconds offset)
    {
        m_clockOffset = offset;
    }
    std::chrono::milliseconds clockOffset() const
    {
        return m_clockOffset;
    }

  private:
    std::optional<Answer> refuseCredentials(const Exchange& exchange, const Answer* spoilt);
    Answer challenge(const Exchange& exchange, digest::Verdict verdict, const Answer* spoilt);
    std::optional<Answer> refuseStranger(const Exchange& exchange) const;
    std::optional<Answer> refuseUpload(const Exchange& exchange, const std::string& name) const;

    Answer registerDevice(const Exchange& exchange);
    Answer unregisterDevice(const Exchange& exchange);
    Answer keepAlive(const Exchange& exchange);
    Answer tellTime() const;
    Answer show(const Exchange& exchange, const ResourceMatch& match) const;
    Answer store(Exchange& exchange, const ResourceMatch& match);
    Answer storeDocument(Exchange& exchange, const Resource& resource);
    Answer storeData(Exchange& exchange, const ResourceMatch& match);
    Answer storeLogEvent(Exchange& exchange);
    void keep(Exchange& exchange, const std::vector<FoundObject>& objects);
    Answer endUpload(const Exchange& exchange, const std::string& name, const UploadWriter* upload) const;
    Answer tellTransferState(const Exchange& exchange, const std::string& name) const;

    /* The "DeviceID" of a session document, or the answer that says what is wrong with it. */
    struct Identity
    {
        std::string device;
        std::optional<Answer> fault;
    };
    Identity identify(const Exchange& exchange, const char* root) const;
    Answer fault(const Exchange& exchange, unsigned http, StatusCode code, const std::string& text) const;
    StoredPost postOf(const Exchange& exchange) const;

    const Config m_config;
    Store& m_store;
    Uploads& m_uploads;
    digest::Verifier m_verifier;
    std::atomic<std::chrono::milliseconds> m_clockOffset;
};

} // namespace viewlib
