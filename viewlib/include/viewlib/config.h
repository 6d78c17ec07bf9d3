/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace viewlib
{

struct Exchange;

/* What the server insists on. A field that is false makes it look away, as many servers in the field do. */
struct Strict
{
    bool registration = true; /* requests of devices that are not registered get 401 */
    bool identity = true;     /* "User-Identify" and the body's "DeviceID" must agree where both are there */
    bool digestUri = true;    /* the digest's uri must be the request target */
    bool digestQop = true;    /* a digest without qop (the form of RFC 2069) is refused */
    bool nonceCount = true;   /* a nonce count that was used before is refused */
    bool lineBreaks = true;   /* base64 with line breaks is refused */
    bool dataPrefix = true;   /* base64 with a "data:" prefix is refused */
    bool documents = false;   /* objects must have the members, identifiers and times that the standard asks for */
    bool mediaType = false;   /* a document must say application/VIID+JSON or application/json */
    bool reading = false;     /* what is stored is shown to registered devices alone, if registrations count at all */
};

enum class Algorithm
{
    Md5,
    Sha256
};

struct Config
{
    std::string address = "127.0.0.1";      /* an IPv4 or IPv6 literal */
    std::vector<std::string> moreAddresses; /* listened on as well, at the same port */
    std::uint16_t port = 0;                 /* 0: any free one, and the same again after a restart */
    bool https = false; /* with a self-signed certificate, made at the first start and kept in a storage directory */
    unsigned maxConnections = 512; /* at once, on each address; further ones are closed */
    std::chrono::milliseconds headerTimeout = std::chrono::seconds(30); /* until the first request's headers are in */
    std::chrono::milliseconds idleTimeout =
        std::chrono::minutes(5); /* between requests, and for a body of which nothing comes */

    std::string user = "admin"; /* empty: registration asks for no credentials */
    std::string password = "viewlib";
    std::string realm = "viewlib";
    std::vector<Algorithm> algorithms = {Algorithm::Md5}; /* one challenge each, in this order */
    std::chrono::milliseconds nonceLifetime = std::chrono::minutes(5);

    std::chrono::milliseconds registrationLifetime =
        std::chrono::seconds(270); /* since the last sign of life; 0: for ever */
    std::string serverId = "44000000005030000001";

    std::string storage = ":memory:"; /* or a directory, made when it is not there */
    std::size_t maxBody = std::size_t(100) << 20;
    std::size_t maxExchanges = 100000; /* the oldest ones are dropped from the log */

    /* Exchanges are stored as well, for the control API. */
    std::size_t storedExchanges = 100000;          /* the oldest ones are dropped */
    std::size_t storedBody = std::size_t(1) << 20; /* so much is kept of each body, of a stored document all */

    /* What is older, or does not fit, is removed: documents with their objects and pictures, exchanges, uploads. */
    std::uint64_t keepBytes = 0;          /* 0: no limit */
    std::chrono::milliseconds keepFor{0}; /* 0: for ever */

    /* The time the server lives by (lifetimes, stored times); several threads call it at once. */
    std::function<std::chrono::system_clock::time_point()> clock;
    /* How far the clock that it shows to clients stands from that. */
    std::chrono::milliseconds clockOffset{0};

    /* Called for each exchange, by the thread that serves it, before the answer leaves. */
    std::function<void(const Exchange&)> observer;

    Strict strict;

    std::vector<std::string> addresses() const /* all that are listened on */
    {
        std::vector<std::string> all = {address};
        all.insert(all.end(), moreAddresses.begin(), moreAddresses.end());
        return all;
    }
};

} // namespace viewlib
