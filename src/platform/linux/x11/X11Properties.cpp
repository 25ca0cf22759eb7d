// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/x11/X11Properties.hpp"

namespace quillane {

std::span<const std::uint32_t> items(const xcb_get_property_reply_t* reply) {
    if (reply == nullptr || reply->format != 32) {
        return {};
    }
    return {static_cast<const std::uint32_t*>(xcb_get_property_value(reply)), reply->value_len};
}

std::uint32_t firstItem(const xcb_get_property_reply_t* reply) {
    const auto all = items(reply);
    return all.empty() ? 0 : all.front();
}

pid_t localProcess(const xcb_res_query_client_ids_reply_t* reply) {
    if (reply == nullptr) {
        return 0;
    }
    for (auto ids = xcb_res_query_client_ids_ids_iterator(reply); ids.rem > 0; xcb_res_client_id_value_next(&ids)) {
        if ((ids.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0 && ids.data->length >= 4) {
            return static_cast<pid_t>(*xcb_res_client_id_value_value(ids.data));
        }
    }
    return 0;
}

} // namespace quillane
