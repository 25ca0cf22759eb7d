// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <span>

#include <sys/types.h>
#include <xcb/res.h>
#include <xcb/xcb.h>

namespace quillane {

/// A property of 32-bit items; empty when it has another format. They live as long as the reply.
[[nodiscard]] std::span<const std::uint32_t> items(const xcb_get_property_reply_t* reply);

/// 0 when there is none.
[[nodiscard]] std::uint32_t firstItem(const xcb_get_property_reply_t* reply);

/// The process of a client on this machine, from the server; 0 when it does not know.
[[nodiscard]] pid_t localProcess(const xcb_res_query_client_ids_reply_t* reply);

} // namespace quillane
