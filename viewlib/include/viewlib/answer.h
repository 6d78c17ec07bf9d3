/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "viewlib/config.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace viewlib
{

struct Header
{
    std::string name;
    std::string value;
};

/* Where an answer is broken off. */
enum class Cut
{
    None,
    BeforeStatus, /* the connection is closed without an answer */
    MidBody,      /* the length of the whole body is declared, a part is sent, the connection is closed */
    Reset         /* the connection is reset without an answer */
};

enum class Framing
{
    Length,
    Chunked,
    UntilClose /* neither length nor chunks: the end of the connection ends the body */
};

/* How the statuses of an answer are wrapped. */
enum class Envelope
{
    Usual,
    Object,         /* {"ResponseStatusObject":{...}} */
    List,           /* {"ResponseStatusListObject":{"ResponseStatusObject":[...]}} */
    BareArray,      /* {"ResponseStatusObject":[...]} */
    BareStatus,     /* {...} */
    Both,           /* the object and the list in one document */
    ObjectForArray, /* {"ResponseStatusListObject":{"ResponseStatusObject":{...}}} */
    EmptyArray,     /* {"ResponseStatusListObject":{"ResponseStatusObject":[]}} */
    NullArray,      /* {"ResponseStatusListObject":{"ResponseStatusObject":null}} */
    NullList,       /* {"ResponseStatusListObject":null} */
    Null            /* null */
};

/* The "Id" of a status. */
enum class StatusId
{
    Usual,
    Empty,
    Null,
    UpperCase /* spelled "ID" */
};

enum class TimeForm
{
    Digits, /* YYYYMMDDhhmmss */
    EpochMilliseconds,
    EpochSeconds,
    Rfc3339
};

/* What the answer to Time says in place of what it would. */
struct TimeShape
{
    TimeForm form = TimeForm::Digits;              /* of "LocalTime" */
    std::optional<std::string> mode;               /* "TimeMode" as JSON: "1" is a number, "\"1\"" a text */
    std::optional<std::string> zone;               /* "TimeZone" as JSON */
    std::optional<std::chrono::minutes> utcOffset; /* of the zone that "LocalTime" is told in; none: the local one */
    std::chrono::milliseconds offset{0};           /* what the clock is ahead, besides the server's own offset */
};

/* How a challenge is written. Credentials that answer it are checked by what it said. */
struct ChallengeShape
{
    bool algorithm = true; /* false: no "algorithm", which stands for MD5 */
    bool quotedAlgorithm = false;
    bool opaque = true;
    bool cnonce = false; /* an extra "cnonce" */
    std::optional<std::string> opaqueText;
    std::optional<std::string> realm;
    std::vector<Algorithm> algorithms; /* empty: the server's */
    bool emptyBody = false;
    std::string cookie; /* a "Set-Cookie" along with it */
};

/*
 * How a request is answered when a test says so.
 *
 * With status 0 the request is handled as usual and the rest of the Answer shapes what is sent (delay, cut, framing,
 * further headers, another body). With a status the request is not handled: nothing is registered or stored, unless
 * takeEffect is set.
 */
struct Answer
{
    unsigned status = 0;
    std::optional<std::string> body; /* none: the standard envelope that goes with the status */
    std::string contentType = "application/VIID+JSON;charset=UTF-8"; /* empty: no such header */
    std::vector<Header> headers;                                     /* in addition */

    std::chrono::milliseconds delayBeforeReading{0}; /* between the request's headers and its body */
    std::chrono::milliseconds delay{0};              /* before the status line */
    std::chrono::milliseconds delayBeforeBody{0};    /* between the headers and the body */
    std::uint64_t bytesPerSecond = 0;                /* of the body; 0: no throttle */

    /* The body of the request, as it is read. Not with afterAuth, which waits for all of it (except on uploads). */
    std::uint64_t requestBytesPerSecond = 0;             /* 0: no throttle */
    std::optional<std::uint64_t> cutAfterRequestBytes;   /* so many are read, then the connection is closed */
    std::optional<std::uint64_t> stallAfterRequestBytes; /* so many are read, then no more until the client is seen to
                                                            have gone or the server stops; then it is closed */

    Framing framing = Framing::Length;
    Cut cut = Cut::None;
    std::optional<std::size_t> cutAfter; /* bytes of the body before Cut::MidBody; none: half of it */
    std::optional<std::string>
        raw; /* plain HTTP only: these bytes instead of an answer, then the connection is closed */

    std::string trailing; /* plain HTTP only: these bytes right after the answer, on a connection that stays open */
    bool continueFirst = false; /* plain HTTP only: a "100 Continue" before the answer, asked for or not */
    bool beforeBody = false;    /* with a status: sent as soon as the headers are in; the connection is closed then */
    bool gzip = false;          /* the body, with "Content-Encoding" */

    /* The standard envelope, the answer to Time, and the challenge. */
    Envelope envelope = Envelope::Usual;
    std::optional<std::string> statusCode; /* as JSON: "10" is a number, "\"10\"" a text */
    bool statusCodeAsText = false;         /* the usual code, but as a text */
    std::optional<std::string> statusText; /* "StatusString" */
    StatusId statusId = StatusId::Usual;
    std::optional<TimeShape> time;
    std::optional<ChallengeShape> challenge;

    bool staleNonce = false;    /* right credentials are challenged once more, as if their nonce were too old */
    bool expireSession = false; /* the device's registration expires, and the request is refused for that */
    bool nextNonce = false;     /* right credentials are answered with an "Authentication-Info" that has a next nonce */
    bool askCredentials = false; /* credentials are asked for on this resource, too */

    bool skipAuth = false;   /* neither credentials nor a registration are asked for */
    bool afterAuth = false;  /* used only once the request has passed the digest or registration check */
    bool takeEffect = false; /* with a status: the request is handled all the same, only its own answer is not sent */

    Answer() = default;
    explicit Answer(unsigned code) : status(code)
    {
    }
    Answer(unsigned code, std::string text) : status(code), body(std::move(text))
    {
    }

    static Answer redirect(unsigned code, const std::string& location)
    {
        return Answer(code).with("Location", location);
    }
    static Answer broken(Cut where)
    {
        Answer answer;
        answer.cut = where;
        return answer;
    }
    static Answer late(std::chrono::milliseconds time)
    {
        Answer answer;
        answer.delay = time;
        return answer;
    }
    /* Whether it is used only once the request has passed the digest or registration check. */
    bool waits() const
    {
        return afterAuth || staleNonce || expireSession;
    }
    Answer& with(std::string name, std::string value)
    {
        headers.push_back({std::move(name), std::move(value)});
        return *this;
    }
};

} // namespace viewlib
