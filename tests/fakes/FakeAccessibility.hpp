// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Accessibility.hpp"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace quillane::fakes {

/// One element of a faked accessibility tree, and the builder for it: each setter returns the element itself.
class FakeElement {
public:
    using Value = std::variant<bool, std::string>;

    explicit FakeElement(std::string role) { with("AXRole", std::move(role)); }

    FakeElement(const FakeElement&) = delete;
    FakeElement& operator=(const FakeElement&) = delete;

    FakeElement& with(const std::string& attribute, Value value);

    /// An attribute that refers to another element of any tree, for example "AXWindow".
    FakeElement& with(const std::string& attribute, FakeElement& element);

    FakeElement& without(const std::string& attribute);
    FakeElement& settable(const std::string& attribute, bool settable = true);

    /// Makes every call on the element fail, as with an application that does not answer in time.
    FakeElement& failing(bool fails = true);

    /// Adds a child and returns the child.
    FakeElement& add(std::string role);

    /// Adds a child that can be typed into: enabled, its value settable. Returns the child.
    FakeElement& addTextField(std::string role = "AXTextField");

private:
    friend class FakeAccessibility;

    void stopAnswering();

    std::map<std::string, AXValue, std::less<>> values_;
    std::map<std::string, FakeElement*, std::less<>> references_;
    std::set<std::string, std::less<>> settable_;
    std::vector<std::unique_ptr<FakeElement>> children_;
    FakeElement* parent_ = nullptr;
    bool fails_ = false;
};

/// Accessibility over trees that a test builds. It records each call with the time-out that held for it.
class FakeAccessibility final : public Accessibility {
public:
    struct Call {
        std::string what; ///< the attribute's name, or several joined by a comma
        std::optional<std::chrono::milliseconds> timeout;
    };

    [[nodiscard]] AXElement application(pid_t pid) override;
    void setMessagingTimeout(const AXElement& element, std::chrono::milliseconds timeout) override;
    [[nodiscard]] std::optional<AXValue> attribute(const AXElement& element, std::string_view name) override;
    [[nodiscard]] std::optional<std::vector<AXValue>> attributes(const AXElement& element,
                                                                 std::span<const std::string_view> names) override;
    [[nodiscard]] bool isAttributeSettable(const AXElement& element, std::string_view name) override;

    /// The root of an application's tree, made when it is first asked for. An application without one gives no answers.
    FakeElement& tree(pid_t pid);

    /// The application hangs: no element of its tree gives an answer any more.
    void stopAnswering(pid_t pid);

    /// Puts the keyboard focus of the application on the element; none takes it away.
    void focus(pid_t pid, FakeElement* element);

    /// A reference to an element of a tree, as a call would give it.
    [[nodiscard]] AXElement reference(FakeElement& element) const;

    /// Every call that asked an application for something, in order.
    [[nodiscard]] const std::vector<Call>& calls() const { return calls_; }

private:
    class Handle;

    [[nodiscard]] FakeElement* asked(const AXElement& element, std::string what);

    std::map<pid_t, std::unique_ptr<FakeElement>> trees_;
    std::vector<Call> calls_;
};

} // namespace quillane::fakes
