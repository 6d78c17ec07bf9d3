/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A server on loopback that takes one request after another, so that a test can have it stop reading, read at a pace of
 * its own, or cut the connection at any byte of the body.
 *
 *     TransferPeer peer;
 *     peer.plan({300000, TransferPeer::Then::Cut});
 *     PubSecCurlUpLoadFile(peer.url("/store").c_str(), path, 0);
 *     EXPECT_EQ(peer.requests()[0].body.size(), 300000u);
 */
#ifndef PUBSEC_TESTS_TRANSFER_PEER_H
#define PUBSEC_TESTS_TRANSFER_PEER_H

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

class TransferPeer
{
  public:
    enum class Then
    {
        Answer, /* once the declared body is in, or as much of it as is to be read */
        Cut,    /* the connection is reset */
        Stall   /* nothing more is read until the client or the test leaves */
    };

    /* What is done with the next request. */
    struct Plan
    {
        std::uint64_t read = UINT64_MAX; /* of the body */
        Then then = Then::Answer;
        std::string answer = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
        std::function<void(size_t count)> atRead = {};      /* after so many bytes of the body */
        std::function<void(std::uint64_t read)> atEnd = {}; /* before what comes then */
    };

    struct Request
    {
        std::string head; /* request line and header lines as they came */
        std::string body; /* what was read of it */
        std::uint64_t declared = 0;
    };

    TransferPeer();
    ~TransferPeer();
    TransferPeer(const TransferPeer&) = delete;
    TransferPeer& operator=(const TransferPeer&) = delete;

    void plan(Plan plan);
    std::string url(const std::string& path) const;
    std::vector<Request> requests() const;

  private:
    void run();
    void serve(int fd, const Plan& plan);
    bool nextPlan(Plan* plan);
    void readBody(int fd, const Plan& plan, Request& request);
    void end(int fd, const Plan& plan);
    void waitForEnd(int fd);

    int m_listening = -1;
    std::uint16_t m_port = 0;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Plan> m_plans;
    std::vector<Request> m_requests;
    bool m_ending = false;
    std::thread m_thread;
};

#endif
