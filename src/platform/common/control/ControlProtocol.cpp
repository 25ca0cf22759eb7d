// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/control/ControlProtocol.hpp"

#include <nlohmann/json.hpp>

namespace quillane::control {

namespace {

using Json = nlohmann::json;

/// File names may hold any bytes; those that are not UTF-8 are replaced rather than refused.
std::string dump(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json parse(std::string_view line) {
    return line.size() > maximumLineBytes ? Json(Json::value_t::discarded) : Json::parse(line, nullptr, false);
}

std::optional<std::string> stringAt(const Json& json, const char* key) {
    const auto found = json.find(key);
    return found != json.end() && found->is_string() ? std::optional(found->get<std::string>()) : std::nullopt;
}

} // namespace

std::string encode(const ControlRequest& request) {
    return dump(Json{{"command", request.command}, {"arguments", request.arguments}});
}

std::string encode(const ControlReply& reply) {
    return dump(Json{{"ok", reply.ok}, {"text", reply.text}, {"problem", reply.problem}});
}

std::optional<ControlRequest> decodeRequest(std::string_view line) {
    const auto json = parse(line);
    const auto command = json.is_object() ? stringAt(json, "command") : std::nullopt;
    const auto arguments = json.is_object() ? json.find("arguments") : json.end();
    if (!command || arguments == json.end() || !arguments->is_array()) {
        return std::nullopt;
    }
    ControlRequest request{*command, {}};
    for (const auto& argument : *arguments) {
        if (!argument.is_string()) {
            return std::nullopt;
        }
        request.arguments.push_back(argument.get<std::string>());
    }
    return request;
}

std::optional<ControlReply> decodeReply(std::string_view line) {
    const auto json = parse(line);
    const auto text = json.is_object() ? stringAt(json, "text") : std::nullopt;
    const auto ok = json.is_object() ? json.find("ok") : json.end();
    if (!text || ok == json.end() || !ok->is_boolean()) {
        return std::nullopt;
    }
    const auto problem = json.find("problem"); // an agent of an earlier version does not say
    return ControlReply{ok->get<bool>(), *text, problem != json.end() && problem->is_boolean() && problem->get<bool>()};
}

} // namespace quillane::control
