// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ApplicationMenu.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace quillane {

/// The application menu where windows have no menu bar: each row's key works in every window of the program, and the
/// standard editing keys are left to the widget that has the focus. A key is recognised by its symbol, and in a layout
/// without Latin letters also by its Latin symbol in another layout.
class WindowKeysApplicationMenu final : public ApplicationMenu {
public:
    /// The Latin character of a key, from its native code and its symbol (Unicode), if the symbol alone does not
    /// decide.
    using LatinKey = std::function<std::optional<char>(std::uint32_t key, char32_t symbol)>;

    explicit WindowKeysApplicationMenu(LatinKey latinKey = {});
    ~WindowKeysApplicationMenu() override;

    void install(std::vector<ApplicationSubmenu> menus, LayoutDirection direction) override;

private:
    class Keys;
    std::unique_ptr<Keys> keys_;
};

} // namespace quillane
