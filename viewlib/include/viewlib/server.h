/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "viewlib/answer.h"
#include "viewlib/config.h"
#include "viewlib/exchange.h"
#include "viewlib/fault.h"
#include "viewlib/stored.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace viewlib
{

/*
 * A view library in this process. Every member may be called from any thread; start, stop and restart one at a time.
 *
 *     viewlib::Server server;
 *     server.script("/VIID/Faces", viewlib::Answer(503));
 *     server.start();
 *     ... a client at server.port() ...
 *     ASSERT_TRUE(server.waitFor("/VIID/Faces", 1));
 *     EXPECT_EQ(server.exchangesOf("/VIID/Faces")[0].header("User-Identify"), "...");
 */
class Server
{
  public:
    explicit Server(Config config = {}); /* throws std::runtime_error when the storage cannot be opened */
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    void start(); /* throws std::runtime_error naming the address when it cannot be listened on */
    void stop();  /* ends delays, closes every connection; what was stored and registered stays */
    enum class Registrations
    {
        Kept,
        Forgotten
    };
    void restart(Registrations registrations); /* on the same port */
    bool running() const;

    std::uint16_t port() const;                          /* stays after stop */
    std::string url(const std::string& path = "") const; /* on the first address */
    std::vector<std::string> urls() const;               /* one for each address */
    /* SHA-256 of the certificate as "AB:CD:..."; empty before the first start and without HTTPS. */
    std::string certificateFingerprint() const;

    /* A path is exact, or a beginning followed by '*'; "*" alone is every path. An exact one goes before the others. */
    void script(const std::string& path, Answer answer); /* for one request; several are used up in order */
    void always(const std::string& path, Answer answer); /* for every request that no script() answer takes */
    void clearScripts();
    std::size_t scriptsLeft() const; /* answers of script() that no request has taken */

    /* The same by device, resource and method, for a number of requests or a share of them; see fault.h. */
    std::uint64_t
    addFault(FaultRule rule); /* returns its number; throws std::invalid_argument for a rule that cannot be */
    bool removeFault(std::uint64_t number); /* false: there is none */
    void clearFaults();                     /* and scripts */
    std::vector<Fault> faults() const;

    std::vector<Exchange> exchanges() const;
    std::vector<Exchange> exchangesOf(const std::string& path) const;
    /* Until so many exchanges of the path are in the log (with their answers decided, not necessarily sent); false: not
     * in time. */
    bool waitFor(const std::string& path, std::size_t count,
                 std::chrono::milliseconds timeout = std::chrono::seconds(10)) const;
    void clearExchanges();

    std::vector<Registration> registrations() const;
    bool registered(const std::string& device) const; /* and online */
    void registerDevice(const std::string& device);   /* as if it had registered */
    void forgetRegistrations();

    StoreCounts stored() const;
    std::vector<StoredPost> posts(const std::string& path = "*") const;
    std::vector<StoredObject> objects(const std::string& kind = "") const; /* "": of every kind */
    std::vector<Picture> pictures(const std::string& objectId = "") const; /* "": of every object */
    std::vector<Upload> uploads() const;                                   /* by name */

    void setClockOffset(std::chrono::milliseconds offset);

  private:
    struct Engine;
    std::unique_ptr<Engine> m_engine;
};

} // namespace viewlib
