/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A server that reads requests, throws their bodies away and answers 200. It is a process of its own, so that neither
 * its time nor its memory is counted for the program that measures; it ends with that program.
 */
#ifndef PUBSEC_BENCH_SINK_SERVER_H
#define PUBSEC_BENCH_SINK_SERVER_H

#include <sys/types.h>

#include <cstddef>
#include <string>

namespace bench
{

class SinkServer
{
  public:
    /* Forks; call it before the program has threads. */
    SinkServer();
    ~SinkServer();
    SinkServer(const SinkServer&) = delete;
    SinkServer& operator=(const SinkServer&) = delete;

    unsigned short port() const
    {
        return m_port;
    }

    std::string url(const std::string& path) const;

    /* Requests and bytes of bodies so far. */
    size_t requests() const;
    size_t bodyBytes() const;

    /* When the first registration came in, in nanoseconds of the monotonic clock; 0 before. */
    long long firstRegistration() const;

    struct Shared;

  private:
    pid_t m_process = -1;
    unsigned short m_port = 0;
    Shared* m_shared = nullptr;
};

} // namespace bench

#endif
