/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "viewlib/answer.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace viewlib
{

/* One request as it came and the answer that was decided for it. */
struct Exchange
{
    std::uint64_t number = 0;                       /* from 1, in the order in which the requests were complete */
    std::uint64_t connection = 0;                   /* from 1: two exchanges with the same number shared a connection */
    std::string peer;                               /* address:port */
    std::chrono::system_clock::time_point received; /* by the server's clock */
    std::chrono::steady_clock::time_point arrived;  /* when its headers were in, for measuring intervals */

    std::string method;
    std::string target; /* path and query as they stood on the request line */
    std::string path;
    std::string query;            /* what follows '?', without it */
    std::vector<Header> headers;  /* in the order received */
    std::string body;             /* empty for an upload that was handled: its bytes are streamed into what is held */
    std::uint64_t bodyLength = 0; /* bytes of the body that were read, kept or not */
    bool complete = false;        /* false: the connection ended before the body did */
    bool oversized = false;       /* the body was larger than the limit and was not kept */

    unsigned status = 0;               /* 0: nothing was answered (see cut) */
    std::vector<Header> answerHeaders; /* those the server sets itself, without length, date and connection */
    std::string answer;
    Cut cut = Cut::None;

    std::chrono::microseconds reading{0};  /* from the headers to the end of the body */
    std::chrono::microseconds handling{0}; /* from there until the answer was decided */
    std::int64_t post = 0;                 /* StoredPost::id of what it was stored as; 0: nothing was */
    std::optional<std::int64_t> fault;     /* the fault that shaped the answer */

    /* The value of the first header of that name in any case of letters; empty when there is none. */
    std::string header(std::string_view name) const;
    bool hasHeader(std::string_view name) const;
    std::string answerHeader(std::string_view name) const;
    std::string device() const
    {
        return header("User-Identify");
    }
};

} // namespace viewlib
