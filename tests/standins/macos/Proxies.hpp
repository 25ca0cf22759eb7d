// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "standins/macos/Values.hpp"

#include <CFNetwork/CFNetwork.h>

#include <atomic>
#include <optional>
#include <vector>

namespace quillane::standin {

/// The proxies of the Network settings. Set before threads ask.
class Proxies {
public:
    /// What CFNetworkCopyProxiesForURL answers for every address: none is null.
    std::optional<std::vector<Value>> forAddress = std::vector<Value>();
    bool hasSettings = true;

    enum class Script { answers, fails, hangs, cannotStart };
    Script script = Script::answers;
    std::vector<Value> ofScript;  ///< what a script answers
    std::atomic<int> scripts = 0; ///< that were started

    [[nodiscard]] static Value proxy(CFStringRef type, std::string_view host, int port);

    void settle();
};

} // namespace quillane::standin
