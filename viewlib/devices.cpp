/* SPDX-License-Identifier: Apache-2.0 */
#include "devices.h"

#include "json.h"

#include <algorithm>

namespace viewlib
{

namespace
{

/* Anybody can name any device, so not every name is remembered. */
constexpr std::size_t maxSights = 4096;
constexpr std::size_t maxName = 64;

} // namespace

Devices::Devices(Store& store, Service& service, Feed& feed)
    : m_store(store), m_service(service), m_feed(feed), m_states(read())
{
}

Devices::States Devices::read() const
{
    States states;
    for (const Registration& registration : m_store.registrations())
    {
        states[registration.device] = {m_service.online(registration), registration.since};
    }
    return states;
}

void Devices::see(const Exchange& exchange)
{
    const std::string device = exchange.device();
    if (device.empty() || device.size() > maxName)
    {
        return;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_sights.size() >= maxSights && m_sights.count(device) == 0)
    {
        m_sights.erase(std::min_element(m_sights.begin(), m_sights.end(), [](const auto& left, const auto& right) {
            return left.second.when < right.second.when;
        }));
    }
    m_sights[device] = {exchange.received, exchange.peer};
}

void Devices::tell(const std::string& device, const char* state)
{
    Json members(cJSON_CreateObject());
    cJSON_AddStringToObject(members.get(), "Device", device.c_str());
    cJSON_AddStringToObject(members.get(), "State", state);
    m_feed.publish("device", m_service.now(), std::move(members));
}

void Devices::refresh()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    States states = read();
    for (const auto& [device, before] : m_states)
    {
        if (states.count(device) == 0)
        {
            tell(device, "gone");
        }
    }
    for (const auto& [device, state] : states)
    {
        const auto before = m_states.find(device);
        if (before == m_states.end() || before->second != state)
        {
            tell(device, state.online ? "online" : "offline");
        }
    }
    m_states = std::move(states);
}

std::vector<Devices::Device> Devices::all()
{
    const std::map<std::string, std::size_t> posts = m_store.postsByDevice();
    std::vector<Device> devices;
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (Registration& registration : m_store.registrations())
    {
        Device device;
        registration.online = m_service.online(registration);
        device.lastSeen = std::max(registration.since, registration.lastKeepalive);
        const auto sight = m_sights.find(registration.device);
        if (sight != m_sights.end())
        {
            device.lastSeen = std::max(device.lastSeen, sight->second.when);
            device.address = sight->second.address;
        }
        const auto counted = posts.find(registration.device);
        device.posts = counted == posts.end() ? 0 : counted->second;
        device.expires = m_service.expiry(registration);
        device.registration = std::move(registration);
        devices.push_back(std::move(device));
    }
    return devices;
}

bool Devices::expire(const std::string& device)
{
    const bool known = m_service.expire(device);
    refresh();
    return known;
}

bool Devices::forget(const std::string& device)
{
    const bool known = m_store.removeRegistration(device);
    refresh();
    return known;
}

} // namespace viewlib
