// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/accessibility/AtspiAccessibility.hpp"

#include <optional>
#include <utility>

namespace quillane {

/// An application by its process, or one object.
class AtspiAccessibility::Handle final : public AXElement::Handle {
public:
    Handle(pid_t process, AtspiObject target, std::optional<std::chrono::milliseconds> limit)
        : pid(process), object(std::move(target)), timeout(limit) {}

    [[nodiscard]] bool isSame(const AXElement::Handle& other) const override {
        const auto* same = dynamic_cast<const Handle*>(&other);
        return same != nullptr && same->pid == pid && same->object == object;
    }

    pid_t pid;          ///< of an application; 0 for an object
    AtspiObject object; ///< empty for an application
    std::optional<std::chrono::milliseconds> timeout;
};

} // namespace quillane
