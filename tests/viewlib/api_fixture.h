/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

#include "server_fixture.h"

#include <string>
#include <vector>

/* A server whose control API is spoken to as its page does. */
class ApiTest : public ServerTest
{
  protected:
    client::Result api(const std::string& method, const std::string& path, const std::string& body = "",
                       const std::vector<std::string>& headers = {"Content-Type: application/json", "X-Viewlibd: 1"})
    {
        client::Call made;
        made.url = server().url(path);
        made.method = method;
        made.body = body;
        made.headers = headers;
        made.timeoutMs = 30000;
        return client::perform(made);
    }
    client::Result get(const std::string& path)
    {
        return api("GET", path, "", {});
    }
    /* What it says of an error. */
    static std::string error(const client::Result& result)
    {
        return std::to_string(result.status) + " " + at(result.body, "error");
    }
};
