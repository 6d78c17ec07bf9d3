/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "api.h"
#include "devices.h"
#include "feed.h"
#include "service.h"
#include "store.h"
#include "uploads.h"
#include "viewlib/config.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace viewlib
{

/* What the endpoints reach into; all of it outlives them. */
struct Controlled
{
    const Config& config;
    Store& store;
    Uploads& uploads;
    Service& service;
    Devices& devices;
    Feed& feed;
    std::function<std::string()> url;
    std::function<std::uint64_t()> exchanges; /* how many there were */
    std::function<std::size_t()> faults;      /* how many can still be hit */
};

/* Status, feed, devices and clock. */
void addControlEndpoints(Api& api, const Controlled& controlled);

} // namespace viewlib
