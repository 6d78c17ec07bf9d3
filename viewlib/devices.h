/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "feed.h"
#include "service.h"
#include "store.h"
#include "viewlib/exchange.h"
#include "viewlib/stored.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace viewlib
{

/* The devices that are registered or were until their registration expired, and what is seen of them. */
class Devices
{
  public:
    using Time = std::chrono::system_clock::time_point;

    Devices(Store& store, Service& service, Feed& feed);

    /* Of every exchange: where the device is and when it was there. */
    void see(const Exchange& exchange);

    /* Tells the feed which devices came, went or expired since it was called last. */
    void refresh();

    struct Device
    {
        Registration registration;
        Time lastSeen;
        std::string address; /* empty: nothing was seen of it since the start */
        std::size_t posts = 0;
        std::optional<Time> expires; /* nothing: never */
    };
    std::vector<Device> all();

    bool expire(const std::string& device); /* false: it is not registered */
    bool forget(const std::string& device);

  private:
    struct Sight
    {
        Time when;
        std::string address;
    };
    struct State
    {
        bool online;
        Time since;
        bool operator!=(const State& other) const
        {
            return online != other.online || since != other.since;
        }
    };
    using States = std::map<std::string, State>;
    States read() const;
    void tell(const std::string& device, const char* state);

    Store& m_store;
    Service& m_service;
    Feed& m_feed;
    std::mutex m_mutex;
    States m_states;
    std::map<std::string, Sight> m_sights;
};

} // namespace viewlib
