// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/applications/X11Clients.hpp"

#include "platform/linux/x11/X11Connection.hpp"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include <unistd.h>

#include <xcb/res.h>

namespace quillane {

namespace {

constexpr std::chrono::milliseconds betweenQuestions{1500};

/// The name of the process's program file, even if an update has since removed the file (proc(5)).
std::string programOf(pid_t pid) {
    constexpr std::string_view removed = " (deleted)";
    std::error_code error;
    auto name = std::filesystem::read_symlink("/proc/" + std::to_string(pid) + "/exe", error).filename().string();
    if (name.ends_with(removed)) {
        name.resize(name.size() - removed.size());
    }
    return name;
}

std::vector<pid_t> processesIn(const xcb_res_query_client_ids_reply_t& reply) {
    std::vector<pid_t> found;
    for (auto id = xcb_res_query_client_ids_ids_iterator(&reply); id.rem > 0; xcb_res_client_id_value_next(&id)) {
        if ((id.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0 &&
            xcb_res_client_id_value_value_length(id.data) > 0) {
            found.push_back(static_cast<pid_t>(*xcb_res_client_id_value_value(id.data)));
        }
    }
    std::ranges::sort(found); // a program may have several connections
    found.erase(std::unique(found.begin(), found.end()), found.end());
    std::erase_if(found, [](pid_t pid) { return pid <= 0 || pid == ::getpid(); });
    return found;
}

} // namespace

X11Clients::X11Clients(X11Connection& connection) : connection_(connection) {
    losses_ = connection.onLost([this] {
        asked_.reset();
        processes_.clear();
    });
    ask();
}

std::vector<pid_t> X11Clients::running(const std::function<bool(std::string_view)>& isWanted) {
    if (!asked_ || std::chrono::steady_clock::now() - *asked_ >= betweenQuestions) {
        ask();
    }
    std::vector<pid_t> found;
    std::ranges::copy_if(processes_, std::back_inserter(found), [&](pid_t pid) {
        const auto program = programOf(pid);
        return !program.empty() && isWanted(program);
    });
    return found;
}

void X11Clients::ask() {
    asked_ = std::chrono::steady_clock::now();
    if (connection_.isLost() || !connection_.extensions().hasClientIds) {
        return;
    }
    const xcb_res_client_id_spec_t everyClient{XCB_NONE, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    connection_.await<xcb_res_query_client_ids_reply_t>(xcb_res_query_client_ids(connection_.raw(), 1, &everyClient),
                                                        lifetime_, [this](const auto* reply) {
                                                            if (reply != nullptr) {
                                                                processes_ = processesIn(*reply);
                                                            }
                                                        });
    connection_.flush();
}

} // namespace quillane
