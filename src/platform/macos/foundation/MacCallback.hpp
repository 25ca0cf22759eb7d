// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <os/log.h>

#include <exception>

namespace quillane {

/// Runs a callback of the system. No C++ exception may pass through the system's frames, so one that gets here ends
/// here. It is logged (os_log); its text stays private.
template <typename Callback>
void guarded(Callback&& callback) noexcept {
    try {
        callback();
    } catch (const std::exception& error) {
        os_log_error(OS_LOG_DEFAULT, "a callback failed: %{private}s", error.what());
    } catch (...) {
        os_log_error(OS_LOG_DEFAULT, "a callback failed");
    }
}

} // namespace quillane
