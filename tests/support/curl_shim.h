/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Stands between the library and libcurl in a test program: writes down every call in order, can refuse calls, and can
 * answer transfers itself. What it does not refuse or answer goes on to the real libcurl.
 *
 *     curl_shim::reset();
 *     curl_shim::answer({CURLE_OK, 200, "{}"});
 *     PubSecPostImageFace(0, &face, 1);
 *     EXPECT_THAT(curl_shim::calls(), ElementsAre("global_init(3)", "easy_init()", "append(localhost:8080)", ...));
 *
 * An option is written down as "setopt(URL=http://...)": numbers in decimal, texts as they are, header lists as their
 * lines joined by '|', the library's own callbacks by name, a body cursor as the body, a sink as "sink", null as
 * "null".
 */
#ifndef PUBSEC_TESTS_CURL_SHIM_H
#define PUBSEC_TESTS_CURL_SHIM_H

#include <cstddef>
#include <string>
#include <vector>

#include <curl/curl.h>

namespace curl_shim
{

/* A transfer that does not reach the network. */
struct Answer
{
    CURLcode result = CURLE_OK;
    long status = 0;
    std::string body = {};     /* given to the write callback; a short count there makes the result a write error */
    std::string redirect = {}; /* CURLINFO_REDIRECT_URL */
};

void reset();

/* For the next transfer that has none; several are used up in order. */
void answer(const Answer& answer);

/* For every transfer from here on. */
void answerAlways(const Answer& answer);

/* The next calls give this instead of being carried out. */
void failGlobalInit(CURLcode result);
void failEasyInit();

/* After `pass` more calls, the next `times` calls of curl_slist_append give null. */
void failAppend(unsigned pass, unsigned times);

/*
 * Every setting of the option gives CURLE_UNKNOWN_OPTION and is not carried out. With a callback's data refused the
 * real libcurl would call it with a stream of its own: answer the transfers here then.
 */
void refuse(CURLoption option);

/* Called at the start of each transfer, its number from 1. */
void setPerformHook(void (*hook)(unsigned number));

/* Called at the start of each curl_slist_append, its number from 1. */
void setAppendHook(void (*hook)(unsigned number));

/* Everything since the reset. curl_easy_strerror and curl_easy_getinfo are not written down. */
std::vector<std::string> calls();

/* Those that begin with a text. */
std::vector<std::string> callsOf(const std::string& beginning);

/* The bodies of the transfers that were answered here, as the read callback or the fields gave them. */
std::vector<std::string> sentBodies();

/* Handles and lists that were made and not released. */
size_t openHandles();
size_t openLists();

/* Releases the handles that the library keeps on purpose. */
void cleanUp();

} // namespace curl_shim

#endif
