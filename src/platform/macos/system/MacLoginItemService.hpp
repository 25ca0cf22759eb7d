// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/LoginItemService.hpp"

namespace quillane {

/// The main application's entry in the system's login items (SMAppService of the Service Management framework).
class MacLoginItemService final : public LoginItemService {
public:
    [[nodiscard]] LoginItemStatus status() const override;
    [[nodiscard]] bool enable() override;
    [[nodiscard]] bool disable() override;

    [[nodiscard]] bool hasSettings() const override { return true; }

    void openSettings() override;
};

} // namespace quillane
