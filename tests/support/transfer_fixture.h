/* SPDX-License-Identifier: Apache-2.0 */
/* Tests that send: a registered platform whose server is on loopback, and everything that libcurl is asked for. */
#ifndef PUBSEC_TESTS_TRANSFER_FIXTURE_H
#define PUBSEC_TESTS_TRANSFER_FIXTURE_H

#include <functional>
#include <string>
#include <vector>

#include <viewlib/server.h>

#include "core/state.h"
#include "tests/support/curl_shim.h"
#include "tests/support/stack_test.h"

constexpr const char* kFirstDevice = "34020000001190000001";
constexpr const char* kSecondDevice = "34020000001190000002";

/* The lines of a request of the platform with this device, as the list has them. */
std::vector<std::string> headerLines(const std::string& device);

class TransferTest : public StackTest
{
  protected:
    void SetUp() override;
    void TearDown() override;

    /* Both platforms registered at this server, each with its device. */
    void connect();

    /* The next transfer, or every one, is answered without a network. */
    static void answer(long status, const std::string& body = "");

    /* Error lines of an operation since the last call: what follows "<operation>:<line> ", without the line end. */
    std::vector<std::string> newErrors(const std::string& operation);

    /* All log lines since the last call. */
    std::vector<std::string> newLines();

    viewlib::Server server;

  private:
    size_t m_linesRead = 0;
};

/* What the process wrote to its standard output meanwhile. */
std::string outputOf(const std::function<void()>& run);

#endif
