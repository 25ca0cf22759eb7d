// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ServicesMenu.hpp"
#include "platform/linux/shell/NautilusScript.hpp"

#include <utility>

namespace quillane {

/// File managers on Linux have no services: the actions that are installed for them (packaging/linux) start the
/// command, which reaches the agent through AgentControl. One of them accepts entries from its user only.
class CommandServicesMenu final : public ServicesMenu {
public:
    /// Without a script there is nothing for the user to request.
    explicit CommandServicesMenu(std::optional<NautilusScript> script) : script_(std::move(script)) {}

    void provideShare(Share) override {}

    [[nodiscard]] std::optional<bool> hasUserEntry() const override {
        return script_ ? std::optional(script_->exists()) : std::nullopt;
    }

    bool setUserEntry(const std::optional<std::string>& title) override {
        return script_ && (title ? script_->write(*title) : script_->remove());
    }

private:
    std::optional<NautilusScript> script_;
};

} // namespace quillane
