// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemInspector.hpp"

namespace quillane::fakes {

/// A system whose facts a test sets; at first a healthy Mac.
class FakeSystemInspector final : public SystemInspector {
public:
    [[nodiscard]] core::SystemFacts inspect() override { return facts; }

    core::SystemFacts facts{.desktop = core::Desktop::macOS,
                            .name = "macOS 15.5",
                            .signature = core::CodeSignature{core::SignatureState::valid, "TEAM123456"},
                            .holdsActivity = true,
                            .windowSystem = std::nullopt,
                            .accessibilityBus = std::nullopt,
                            .secretService = std::nullopt};
};

} // namespace quillane::fakes
