/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What posts are measured beside: a program that calls libcurl alone, with the same options, headers and body, and a
 * handle of its own for each request. Its body is made beforehand. Each returns the HTTP status, 0 when there is none.
 */
#ifndef PUBSEC_BENCH_BARE_CURL_H
#define PUBSEC_BENCH_BARE_CURL_H

#include <cstddef>
#include <cstdio>
#include <string>

namespace bench
{

/* Before the first request. */
void initBareCurl();

long barePost(const std::string& url, const char* body, size_t size);

/* Sends a file; after each block that is read it sleeps as long as the library does. */
long bareUpload(const std::string& url, const std::string& path);

} // namespace bench

#endif
