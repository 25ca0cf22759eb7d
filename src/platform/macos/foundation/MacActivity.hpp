// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quillane {

/// While one exists, macOS does not slow this program down as an invisible one (App Nap): its timers fire on time. The
/// machine may still sleep. NSProcessInfo.beginActivityWithOptions:reason:.
class MacActivity {
public:
    explicit MacActivity(const char* reason);
    ~MacActivity();
    MacActivity(const MacActivity&) = delete;
    MacActivity& operator=(const MacActivity&) = delete;

    /// Whether this process holds one. Main thread, as every activity is: the system itself does not say.
    [[nodiscard]] static bool isHeld();

private:
    const void* token_; ///< retained
};

} // namespace quillane
