// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Subscription.hpp"

#include <chrono>
#include <cstdint>
#include <functional>
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

/// A range of a text, in the units of its application; a position when the length is zero.
struct AXTextRange {
    std::int64_t location = 0;
    std::int64_t length = 0;

    bool operator==(const AXTextRange&) const = default;
};

/// A rectangle on the screen, in the units of the desktop from its upper left.
struct AXRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] double right() const { return x + width; }

    bool operator==(const AXRect&) const = default;
};

/// A value that only its application understands, such as a position in a web page. It can be kept, compared and
/// written back.
class AXOpaqueValue {
public:
    /// What a backend keeps for a value.
    class Handle {
    public:
        virtual ~Handle() = default;
        [[nodiscard]] virtual bool isSame(const Handle& other) const = 0;
    };

    explicit AXOpaqueValue(std::shared_ptr<const Handle> handle) // shared: copies mean one value
        : handle_(std::move(handle)) {}

    [[nodiscard]] const Handle& handle() const { return *handle_; }

    bool operator==(const AXOpaqueValue& other) const {
        return handle_ == other.handle_ || handle_->isSame(*other.handle_);
    }

private:
    std::shared_ptr<const Handle> handle_;
};

/// The value of an attribute. `std::monostate` stands for an attribute that the element does not have. Addresses (URLs)
/// are text. Whole numbers are numbers; all others are opaque.
using AXValue = std::variant<std::monostate, bool, std::int64_t, std::string, AXElement, std::vector<AXElement>,
                             AXTextRange, AXOpaqueValue>;

/// The outcome of an action.
enum class AXActionResult {
    done,
    cannotComplete, ///< the application did not answer in time, for example while it shows a menu; it may have acted
                    ///< all the same
    failed,
};

/// The outcome of replacing text.
enum class AXReplacement {
    done,    ///< the application has accepted it; some carry it out a moment later
    differs, ///< the range holds another text than expected; nothing was changed
    failed,  ///< the text cannot be read or changed; nothing was changed
};

/// Reads and drives other applications through Accessibility, with the names of macOS (NSAccessibilityConstants.h) on
/// every desktop: attributes such as "AXRole", roles such as "AXTextArea". Main thread. Each call waits for the other
/// application no longer than the messaging timeout of the element; any failure (no permission, no answer in time,
/// unknown attribute) is absence. An application that has not answered is not waited for again at once.
class Accessibility {
public:
    virtual ~Accessibility() = default;

    /// The element that stands for an application; returned even when the application cannot be reached.
    [[nodiscard]] virtual AXElement application(pid_t pid) = 0;

    /// Bounds every later call on this element, and on elements read from it unless they are given their own.
    virtual void setMessagingTimeout(const AXElement& element, std::chrono::milliseconds timeout) = 0;

    /// One attribute; none on failure and when the element does not have it. Reading "AXRole" of an application's own
    /// element lets a program that puts off making its tree make it, as browsers of the Chromium family do.
    [[nodiscard]] virtual std::optional<AXValue> attribute(const AXElement& element, std::string_view name) = 0;

    /// Several attributes in one call, in the order of the names, `std::monostate` for each that the element does not
    /// have; none when the call as a whole fails.
    [[nodiscard]] virtual std::optional<std::vector<AXValue>> attributes(const AXElement& element,
                                                                         std::span<const std::string_view> names) = 0;

    /// The best number of elements for one call of `attributesOfEach`: one where a backend asks them in turn.
    [[nodiscard]] virtual std::size_t elementsAtOnce() const { return 1; }

    /// The same attributes of several elements, one result for each as from `attributes`. A backend that asks all of
    /// them at once waits no longer than one call may.
    [[nodiscard]] virtual std::vector<std::optional<std::vector<AXValue>>>
    attributesOfEach(std::span<const AXElement> elements, std::span<const std::string_view> names);

    /// False once the element's application has not answered a call in time, until it is worth another one: meanwhile
    /// calls on it fail at once. Never waits.
    [[nodiscard]] virtual bool isAnswering([[maybe_unused]] const AXElement& element) { return true; }

    [[nodiscard]] virtual bool isAttributeSettable(const AXElement& element, std::string_view name) = 0;

    /// Sets an attribute; false on failure.
    virtual bool setAttribute(const AXElement& element, std::string_view name, const AXValue& value) = 0;

    /// Where an element is; none when it is not on the screen.
    [[nodiscard]] virtual std::optional<AXRect> frame(const AXElement& element) = 0;

    /// Where the characters of a range in the element's text are, which may be scrolled away; the text cursor where the
    /// range is empty.
    [[nodiscard]] virtual std::optional<AXRect> frameOfText(const AXElement& element, const AXTextRange& range) = 0;

    /// The text in a range of the element's text; none where it cannot be read.
    [[nodiscard]] virtual std::optional<std::string> textIn(const AXElement& element, const AXTextRange& range) = 0;

    /// Puts `text` in the place of a range that holds `expected`. The selection and the cursor may move.
    [[nodiscard]] virtual AXReplacement replaceText(const AXElement& element, const AXTextRange& range,
                                                    const std::string& expected, const std::string& text) = 0;

    /// The actions of an element ("AXPress", "AXShowMenu", …); empty on failure.
    [[nodiscard]] virtual std::vector<std::string> actionNames(const AXElement& element) = 0;

    /// Performs an action. Pressing an item of a menu closes the menu, and "AXCancel" on a menu closes it without a
    /// choice.
    virtual AXActionResult performAction(const AXElement& element, std::string_view name) = 0;

    /// Calls the handler, from the main queue and never inside another call, for each notification of the name that an
    /// application sends, with the element that it is about, until the token is dropped. None when the application or
    /// the notification cannot be observed.
    [[nodiscard]] virtual std::optional<core::Subscription> observe(const AXElement& application, std::string_view name,
                                                                    std::function<void(const AXElement&)> handler) = 0;
};

inline std::vector<std::optional<std::vector<AXValue>>>
Accessibility::attributesOfEach(std::span<const AXElement> elements, std::span<const std::string_view> names) {
    std::vector<std::optional<std::vector<AXValue>>> results;
    for (const auto& element : elements) {
        results.push_back(attributes(element, names));
    }
    return results;
}

} // namespace quillane
