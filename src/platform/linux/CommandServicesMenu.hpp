// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ServicesMenu.hpp"

namespace quillane {

/// File managers on Linux have no services: the actions that are installed for them (packaging/linux) start the
/// command, which reaches the agent through AgentControl.
class CommandServicesMenu final : public ServicesMenu {
public:
    void provideShare(Share) override {}
};

} // namespace quillane
