// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/localization/Desktop.hpp"

#include <optional>
#include <string>

namespace quillane::core {

enum class SignatureState {
    valid,
    adHoc,   ///< signed without an identity: the system takes each build for another program
    altered, ///< the code is not what was signed
    missing,
};

/// The signature of the running program's code.
struct CodeSignature {
    SignatureState state{};
    std::string team; ///< the identifier of the developer's team; empty without one

    bool operator==(const CodeSignature&) const = default;
};

enum class WindowSystem {
    x11,
    waylandWithX11, ///< a Wayland compositor with an X server for programs that need one
    wayland,
    none, ///< the process is not part of a session with a screen
};

/// A service that programs of the session reach over its message bus.
enum class BusService {
    available,
    locked,     ///< it answers, but the user has not unlocked what it keeps
    unused,     ///< it has nothing yet to keep things in
    notStarted, ///< the bus starts it when it is first wanted
    absent,
    silent, ///< it does not answer in time
    noBus,  ///< there is no session bus
};

/// What only the platform knows about the system, the program's code and the session.
struct SystemFacts {
    Desktop desktop{};
    std::string name;                           ///< of the system, with its version
    std::optional<CodeSignature> signature;     ///< none where the system does not sign programs
    std::optional<bool> holdsActivity;          ///< whether App Nap is held off; none where there is no such thing
    std::optional<WindowSystem> windowSystem;   ///< none where the system has only one
    std::optional<BusService> accessibilityBus; ///< none where accessibility needs no bus
    std::optional<BusService> secretService;    ///< none where the system keeps secrets itself

    bool operator==(const SystemFacts&) const = default;
};

} // namespace quillane::core
