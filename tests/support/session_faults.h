/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What can go wrong inside the process. libcurl's functions stand behind the linker's --wrap in the programs that link
 * session_faults.cpp; each fault lasts as long as its object.
 */
#ifndef PUBSEC_TESTS_SESSION_FAULTS_H
#define PUBSEC_TESTS_SESSION_FAULTS_H

namespace session_faults
{

/* curl_global_init fails with CURLE_FAILED_INIT, curl_easy_init and curl_slist_append give null. */
struct NoGlobalInit
{
    NoGlobalInit();
    ~NoGlobalInit();
};

struct NoHandle
{
    NoHandle();
    ~NoHandle();
};

struct NoHeaders
{
    NoHeaders();
    ~NoHeaders();
};

/* No memory for cJSON: documents cannot be built. Nothing else may use cJSON meanwhile. */
struct NoDocuments
{
    NoDocuments();
    ~NoDocuments();
};

} // namespace session_faults

#endif
