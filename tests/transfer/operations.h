/* SPDX-License-Identifier: Apache-2.0 */
/* The posts of slices, files, binary data, violations, access records, sensors, dispositions and log events. */
#ifndef PUBSEC_TESTS_TRANSFER_OPERATIONS_H
#define PUBSEC_TESTS_TRANSFER_OPERATIONS_H

#include <functional>
#include <string>
#include <vector>

#include <pubsecstack/pubsecstack.h>

/* Where a call goes, for operations that are told by their caller. */
struct Where
{
    std::string url;
    std::string host;
    u32 port;
};

struct Operation
{
    const char* name;
    const char* target;                                               /* of the request line */
    std::string body;                                                 /* what has to arrive */
    std::function<u32(u32 platform, const Where& where)> call;        /* with records that make that body */
    std::vector<std::function<u32(u32 platform, const Where&)>> null; /* without something that it needs */
    bool reads = false;                                               /* the answer */
    bool bounded = true;                                              /* by the overall time-out */
    bool urlOfCaller = false;
    u32 handleCode = 75;                                                 /* without a transfer handle ... */
    std::vector<std::string> handleErrors = {"curl_easy_init() failed"}; /* ... and what it says then */
    std::vector<std::string> nullErrors = {};                            /* without something that it needs */
};

const std::vector<Operation>& operations();
const Operation& operationNamed(const std::string& name);

std::ostream& operator<<(std::ostream& out, const Operation& operation);

#endif
