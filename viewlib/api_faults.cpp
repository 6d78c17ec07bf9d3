/* SPDX-License-Identifier: Apache-2.0 */
#include "api_faults.h"

#include "fault_json.h"
#include "json.h"

#include <stdexcept>
#include <string>

namespace viewlib
{

namespace
{

void addNumber(cJSON* object, const char* name, std::uint64_t number)
{
    cJSON_AddNumberToObject(object, name, static_cast<double>(number));
}

Reply presetsReply()
{
    const Json root(cJSON_CreateObject());
    cJSON* list = cJSON_AddArrayToObject(root.get(), "Presets");
    for (const Preset& preset : presets())
    {
        cJSON* entry = cJSON_CreateObject();
        cJSON_AddItemToArray(list, entry);
        cJSON_AddStringToObject(entry, "Name", preset.name.c_str());
        cJSON_AddStringToObject(entry, "Title", preset.title.c_str());
        cJSON_AddStringToObject(entry, "TitleZh", preset.titleZh.c_str());
        cJSON_AddItemToObject(entry, "Rule", ruleToJson(preset.rule).release());
    }
    return jsonReply(200, root.get());
}

Reply faultsReply(const std::vector<Fault>& faults)
{
    const Json root(cJSON_CreateObject());
    cJSON* list = cJSON_AddArrayToObject(root.get(), "Faults");
    for (const Fault& fault : faults)
    {
        Json entry = ruleToJson(fault.rule);
        addNumber(entry.get(), "Fault", fault.number);
        addNumber(entry.get(), "Hits", fault.hits);
        cJSON_AddItemToObject(entry.get(), "Left",
                              fault.left ? cJSON_CreateNumber(static_cast<double>(*fault.left)) : cJSON_CreateNull());
        cJSON_AddItemToArray(list, entry.release());
    }
    return jsonReply(200, root.get());
}

Reply addFault(const FaultControl& control, const ApiRequest& request)
{
    try
    {
        const std::uint64_t number = control.add(ruleFromJson(request.body().get()));
        const Json root(cJSON_CreateObject());
        addNumber(root.get(), "Fault", number);
        return jsonReply(201, root.get());
    }
    catch (const std::invalid_argument& error)
    {
        throw ApiError(400, error.what());
    }
}

Reply done()
{
    return jsonReply(200, "{}");
}

Reply removeFault(const FaultControl& control, const ApiRequest& request)
{
    const std::uint64_t number = request.nameNumber(0);
    if (!control.remove(number))
    {
        throw ApiError(404, "there is no fault " + std::to_string(number));
    }
    return done();
}

Reply clearFaults(const FaultControl& control)
{
    control.clear();
    return done();
}

} // namespace

void addFaultEndpoints(Api& api, const FaultControl& control)
{
    api.add("GET", "/api/presets", [](const ApiRequest&) { return presetsReply(); });
    api.add("GET", "/api/faults", [control](const ApiRequest&) { return faultsReply(control.all()); });
    api.add("POST", "/api/faults", [control](const ApiRequest& request) { return addFault(control, request); });
    api.add("DELETE", "/api/faults", [control](const ApiRequest&) { return clearFaults(control); });
    api.add("DELETE", "/api/faults/*", [control](const ApiRequest& request) { return removeFault(control, request); });
}

} // namespace viewlib
