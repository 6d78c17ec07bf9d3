/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A view library that asks for credentials and accepts everything, in a process of its own, so that what it holds is not
 * counted for the device. It ends with this process.
 */
#ifndef PUBSEC_TESTS_SOAK_VIEW_LIBRARY_H
#define PUBSEC_TESTS_SOAK_VIEW_LIBRARY_H

#include <sys/types.h>

#include <atomic>
#include <cstdint>

class ViewLibrary
{
  public:
    /* Forks; call it before the program has threads. Throws std::runtime_error where it cannot. */
    ViewLibrary();
    ~ViewLibrary();
    ViewLibrary(const ViewLibrary&) = delete;
    ViewLibrary& operator=(const ViewLibrary&) = delete;

    std::uint16_t port() const;

    struct Counts
    {
        std::atomic<std::uint32_t> port;
        std::atomic<std::uint64_t> registrations; /* accepted */
        std::atomic<std::uint64_t> unregistrations;
        std::atomic<std::uint64_t> keepalives;
        std::atomic<std::uint64_t> clockQueries;
        std::atomic<std::uint64_t> posts;
    };
    const Counts& counts() const;

  private:
    Counts* m_counts = nullptr; /* shared with the other process */
    pid_t m_process = -1;
};

#endif
