// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <os/log.h>

#include <exception>

namespace quillane {

/// Runs a callback that the system has called for: no C++ exception may pass through the system's frames, so one that
/// gets here ends here. The log (os_log) tells that it did; what the exception says stays private.
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
