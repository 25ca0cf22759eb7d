// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "standins/macos/Accessibility.hpp"
#include "standins/macos/RunLoop.hpp"

#include <CoreGraphics/CoreGraphics.h>

#include <variant>

namespace quillane::standin {

/// A reference to an element: two that mean the same one are equal.
class ElementReference final : public Object {
public:
    ElementReference(pid_t process, const AccessibleElement* meant) : pid(process), element(meant) {}

    [[nodiscard]] CFTypeID type() const override { return AXUIElementGetTypeID(); }

    [[nodiscard]] std::string describe() const override { return "an accessible element"; }

    [[nodiscard]] bool equals(const Object& other) const override {
        const auto& reference = static_cast<const ElementReference&>(other);
        return reference.pid == pid && reference.element == element;
    }

    const pid_t pid;
    const AccessibleElement* const element; ///< null stands for the application itself
    float timeout = 0;                      ///< seconds; 0 is the system's own
};

/// A structure by its type.
class Structure final : public Object {
public:
    using Content = std::variant<CFRange, AXError, CGSize, CGPoint, CGRect>;

    explicit Structure(Content content) : content_(content) {}

    [[nodiscard]] CFTypeID type() const override { return AXValueGetTypeID(); }

    [[nodiscard]] std::string describe() const override { return "a structure"; }

    [[nodiscard]] bool equals(const Object& other) const override;

    [[nodiscard]] AXValueType structureType() const;

    [[nodiscard]] const Content& content() const { return content_; }

private:
    Content content_;
};

/// An observer of one application.
class Observer final : public Object {
public:
    Observer(pid_t process, AXObserverCallback function) : pid(process), callback(function) {}

    [[nodiscard]] CFTypeID type() const override { return 52; }

    [[nodiscard]] std::string describe() const override { return "an accessibility observer"; }

    const pid_t pid;
    const AXObserverCallback callback;
    RunLoopSource& source = make<RunLoopSource>("an accessibility observer");

private:
    void dispose() override { source.release(); }
};

} // namespace quillane::standin
