// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <sys/types.h>

namespace quillane {

/// A reference to one element of another application's accessibility tree. Two references are equal when they mean the
/// same object. A reference stays valid, if useless, after the application has gone.
class AXElement {
public:
    /// What a backend keeps for an element.
    class Handle {
    public:
        virtual ~Handle() = default;
        [[nodiscard]] virtual bool isSame(const Handle& other) const = 0;
    };

    explicit AXElement(std::shared_ptr<Handle> handle) : handle_(std::move(handle)) {} // shared: copies mean one object

    [[nodiscard]] Handle& handle() const { return *handle_; }

    bool operator==(const AXElement& other) const {
        return handle_ == other.handle_ || handle_->isSame(*other.handle_);
    }

private:
    std::shared_ptr<Handle> handle_;
};

/// The value of an attribute. `std::monostate` is a value that the element has not.
using AXValue = std::variant<std::monostate, bool, std::string, AXElement, std::vector<AXElement>>;

/// Reading other applications by Accessibility, in the names of macOS (NSAccessibilityConstants.h) on every desktop:
/// attributes as "AXRole", roles as "AXTextArea". Main thread. Each call waits for the other application at most for
/// the messaging time-out of the element asked; any failure (no permission, no answer in time, unknown attribute) is
/// absence.
class Accessibility {
public:
    virtual ~Accessibility() = default;

    /// The element that stands for an application; it is given out even when the application cannot be reached.
    [[nodiscard]] virtual AXElement application(pid_t pid) = 0;

    /// Bounds every later call on this element, and on elements read from it unless they are given their own.
    virtual void setMessagingTimeout(const AXElement& element, std::chrono::milliseconds timeout) = 0;

    /// One attribute; none on failure and when the element has not got it.
    [[nodiscard]] virtual std::optional<AXValue> attribute(const AXElement& element, std::string_view name) = 0;

    /// Several attributes in one call, in the order asked, `std::monostate` for each that the element has not got; none
    /// when the call as a whole fails.
    [[nodiscard]] virtual std::optional<std::vector<AXValue>> attributes(const AXElement& element,
                                                                         std::span<const std::string_view> names) = 0;

    [[nodiscard]] virtual bool isAttributeSettable(const AXElement& element, std::string_view name) = 0;
};

} // namespace quillane
