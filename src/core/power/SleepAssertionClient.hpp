// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Subscription.hpp"

#include <array>
#include <cstdint>
#include <functional>
#include <variant>

namespace quillane::core {

/// What is kept from happening because nobody uses the machine, in the order of asking.
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

/// The system's power assertions. Whatever is held ends with the process, however that ends. Main thread; a call may
/// wait for the answer of a system service for a fraction of a second.
class SleepAssertionClient {
public:
    virtual ~SleepAssertionClient() = default;

    /// Prevents one kind of idle sleep until the assertion is released.
    [[nodiscard]] virtual std::variant<SleepAssertionID, SleepAssertionError> create(SleepAssertionKind kind) = 0;

    /// Lets go of one assertion. A number that stands for none is passed over.
    virtual void release(SleepAssertionID assertion) = 0;

    /// Who kept an assertion has gone, as a service that is restarted: nothing is held for it any more, and it need not
    /// be released. Called outside `create` and `release`, when creating it again can succeed. A system whose
    /// assertions last as long as the process, as macOS, never gives this notice.
    virtual Subscription
    onLost([[maybe_unused]] std::function<void(SleepAssertionID assertion, SleepAssertionError reason)> callback) {
        return {};
    }
};

} // namespace quillane::core
