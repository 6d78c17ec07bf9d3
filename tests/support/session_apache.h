/* SPDX-License-Identifier: Apache-2.0 */
/* Apache as a view library: its digest is not ours, so it tells whether others understand what we send. */
#ifndef PUBSEC_TESTS_SESSION_APACHE_H
#define PUBSEC_TESTS_SESSION_APACHE_H

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

/*
 * A server of its own in a directory of its own, on a free port of 127.0.0.1. Registration and unregistration ask for
 * the digest of user "admin", password "viewlib"; keepalive and time don't. All are answered as view libraries do.
 */
class Apache
{
  public:
    static bool installed();

    Apache();
    ~Apache();
    Apache(const Apache&) = delete;
    Apache& operator=(const Apache&) = delete;

    /* False: it doesn't listen; log() says why. */
    bool running() const
    {
        return m_port != 0;
    }
    std::uint16_t port() const
    {
        return m_port;
    }

    /* "POST /VIID/System/Register 200 admin" for each request, "-" where nobody was named. */
    std::vector<std::string> requests() const;

    /* "POST /VIID/System/Register {...}" for each request that was let in, its body included. */
    std::vector<std::string> bodies() const;

    std::string log() const;

  private:
    void writeFiles(std::uint16_t port) const;
    void start();
    bool listening(std::uint16_t port) const;
    bool ended();

    std::string m_directory;
    pid_t m_pid = -1;
    std::uint16_t m_port = 0;
};

#endif
