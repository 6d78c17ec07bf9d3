/* SPDX-License-Identifier: Apache-2.0 */
#ifndef PUBSEC_TESTS_TORTURE_SILENCE_H
#define PUBSEC_TESTS_TORTURE_SILENCE_H

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

/* While it lives nothing reaches the standard output: answers that are left to libcurl go there. */
class Silence
{
  public:
    Silence()
    {
        std::fflush(stdout);
        m_output = dup(STDOUT_FILENO);
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDOUT_FILENO);
        close(nowhere);
    }
    ~Silence()
    {
        std::fflush(stdout);
        dup2(m_output, STDOUT_FILENO);
        close(m_output);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

  private:
    int m_output;
};

#endif
