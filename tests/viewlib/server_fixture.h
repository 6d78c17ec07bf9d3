/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "client.h"

#include <viewlib/server.h>

#include <cjson/cJSON.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

/* A server, its settings still open until start(), and a client that speaks for one device. */
class ServerTest : public ::testing::Test
{
  protected:
    static constexpr const char* device = "34020000001190000001";

    viewlib::Server& server()
    {
        if (!m_server)
        {
            m_server = std::make_unique<viewlib::Server>(config);
        }
        return *m_server;
    }
    void start()
    {
        server().start();
    }
    void close() /* the next start makes another server */
    {
        m_server.reset();
    }
    client::Result get(const std::string& path)
    {
        return client::perform(call(path, "", "GET"));
    }

    client::Call call(const std::string& path, const std::string& body = "", const std::string& method = "POST")
    {
        client::Call made;
        made.url = server().url(path);
        made.method = method;
        made.body = body;
        made.headers = {std::string("User-Identify:") + device, "Content-Type:application/VIID+JSON;charset=UTF-8"};
        return made;
    }
    client::Result post(const std::string& path, const std::string& body)
    {
        return client::perform(call(path, body));
    }
    client::Result registerWith(const std::string& credentials)
    {
        client::Call made = call("/VIID/System/Register", R"({"RegisterObject":{"DeviceID":"34020000001190000001"}})");
        made.credentials = credentials;
        return client::perform(made);
    }
    client::Result keepAlive()
    {
        return post("/VIID/System/Keepalive", R"({"KeepaliveObject":{"DeviceID":"34020000001190000001"}})");
    }
    client::Result postFace()
    {
        return post("/VIID/Faces", R"({"FaceListObject":{"FaceObject":[{"FaceID":"face-1"}]}})");
    }

    /* A value of an answer by its members' names and indexes: "ResponseStatusListObject/ResponseStatusObject/0/Id". */
    static std::string at(const std::string& document, const std::string& path)
    {
        const std::unique_ptr<cJSON, void (*)(cJSON*)> tree(cJSON_Parse(document.c_str()), cJSON_Delete);
        const cJSON* node = tree.get();
        for (std::size_t from = 0; node != nullptr && from <= path.size();)
        {
            const std::size_t end = std::min(path.find('/', from), path.size());
            const std::string step = path.substr(from, end - from);
            node = cJSON_IsArray(node) ? cJSON_GetArrayItem(node, std::stoi(step))
                                       : cJSON_GetObjectItemCaseSensitive(node, step.c_str());
            from = end + 1;
        }
        const std::unique_ptr<char, void (*)(void*)> text(node == nullptr ? nullptr : cJSON_PrintUnformatted(node),
                                                          cJSON_free);
        return text == nullptr ? "(missing)" : text.get();
    }

    viewlib::Config config;

  private:
    std::unique_ptr<viewlib::Server> m_server;
};
