// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Subscription.hpp"

#include <array>
#include <cstdint>
#include <functional>
#include <variant>

namespace quillane::core {

/// What is prevented while nobody uses the machine, in the order of requesting.
enum class SleepAssertionKind {
    system,  ///< the machine does not go to sleep
    display, ///< the display stays on and unlocked
};

inline constexpr std::array allSleepAssertionKinds{SleepAssertionKind::system, SleepAssertionKind::display};

/// The system's return code of the call that failed: an IOReturn on macOS, an errno value on Linux.
struct SleepAssertionError {
    std::int32_t code = 0;

    bool operator==(const SleepAssertionError&) const = default;
};

using SleepAssertionID = std::uint32_t;

/// The system's power assertions. Assertions end with the process, however it ends. Main thread; a call may wait a
/// fraction of a second for a system service.
class SleepAssertionClient {
public:
    virtual ~SleepAssertionClient() = default;

    /// Prevents one kind of idle sleep until the assertion is released.
    [[nodiscard]] virtual std::variant<SleepAssertionID, SleepAssertionError> create(SleepAssertionKind kind) = 0;

    /// Releases one assertion. An unknown number is ignored.
    virtual void release(SleepAssertionID assertion) = 0;

    /// An assertion was lost because its service has gone, for example was restarted; it need not be released. Called
    /// outside `create` and `release`, when creating it again can succeed. Never called on a system whose assertions
    /// last as long as the process, such as macOS.
    virtual Subscription
    onLost([[maybe_unused]] std::function<void(SleepAssertionID assertion, SleepAssertionError reason)> callback) {
        return {};
    }
};

} // namespace quillane::core
