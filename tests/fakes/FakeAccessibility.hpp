// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Listeners.hpp"
#include "platform/Accessibility.hpp"

#include <functional>
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
    using Value = std::variant<bool, std::int64_t, std::string, AXTextRange, AXOpaqueValue>;

    /// What the application does when an action is called.
    using Effect = std::function<AXActionResult()>;

    explicit FakeElement(std::string role) { with("AXRole", std::move(role)); }

    FakeElement(const FakeElement&) = delete;
    FakeElement& operator=(const FakeElement&) = delete;

    FakeElement& with(const std::string& attribute, Value value);

    /// An attribute that refers to another element of any tree, for example "AXWindow".
    FakeElement& with(const std::string& attribute, FakeElement& element);

    FakeElement& without(const std::string& attribute);
    FakeElement& settable(const std::string& attribute, bool settable = true);

    /// An attribute that accepts writes and keeps its value all the same.
    FakeElement& ignoringWrites(const std::string& attribute);

    /// Gives the element an action. Without an effect it succeeds and does nothing.
    FakeElement& withAction(const std::string& name, Effect effect = {});

    /// Whether the element is in the tree at all: its parent does not list an absent one, and calls on it and on what
    /// is below it fail.
    FakeElement& present(bool present = true);

    [[nodiscard]] bool isPresent() const { return present_ && (parent_ == nullptr || parent_->isPresent()); }

    /// Makes the element the owner of a menu that is open now: it names it as "AXShownMenuUIElement", which on macOS
    /// may be the only way to it.
    FakeElement& showMenu(FakeElement& menu);

    /// The menu that the element has shown is closed.
    FakeElement& closeMenu();

    /// Makes every call on the element fail, as with an application that does not answer in time.
    FakeElement& failing(bool fails = true);

    /// Makes every call on the element wait for an answer that does not come in time.
    FakeElement& hanging();

    /// Puts the element on the screen.
    FakeElement& at(const AXRect& frame);

    /// Places the text: called with a range of it whenever somebody asks.
    FakeElement& withText(std::function<std::optional<AXRect>(const AXTextRange&)> place);

    /// Gives the element a text, in ASCII or with one unit for each code point, and a cursor at its end.
    FakeElement& saying(std::u32string text);

    [[nodiscard]] const std::u32string& text() const { return text_; }

    /// Called when the text is about to be replaced: the user types, or the application refuses by returning false.
    FakeElement& beforeReplacement(std::function<bool()> hook);

    /// The application accepts replacements and does not carry them out.
    FakeElement& ignoringReplacements();

    /// Adds a child and returns the child.
    FakeElement& add(std::string role);

    /// Adds a child that can be typed into: enabled, its value settable. Returns the child.
    FakeElement& addTextField(std::string role = "AXTextField");

private:
    friend class FakeAccessibility;

    void answer(bool answers);

    std::map<std::string, AXValue, std::less<>> values_;
    std::map<std::string, FakeElement*, std::less<>> references_;
    std::set<std::string, std::less<>> settable_;
    std::set<std::string, std::less<>> stubborn_; ///< attributes that ignore what is written
    std::map<std::string, Effect, std::less<>> actions_;
    std::vector<std::unique_ptr<FakeElement>> children_;
    FakeElement* parent_ = nullptr;
    std::optional<AXRect> frame_;
    std::function<std::optional<AXRect>(const AXTextRange&)> textPlace_;
    std::u32string text_;
    bool hasText_ = false;
    bool ignoresReplacements_ = false;
    std::function<bool()> beforeReplacement_;
    bool present_ = true;
    bool fails_ = false;
    bool hangs_ = false;
};

/// The value of an application's own kind: equal to those with the same text.
[[nodiscard]] AXOpaqueValue fakeOpaqueValue(std::string text);

/// Accessibility over trees that a test builds. It records each call with the timeout that applied to it. Every
/// application has a menu bar, as on macOS: its menus are closed, yet whoever walks into it finds them and their items,
/// and items by which paragraphs are turned are among them.
class FakeAccessibility final : public Accessibility {
public:
    struct Call {
        std::string what; ///< the attribute's name, or several joined by a comma
        std::optional<std::chrono::milliseconds> timeout;
    };

    /// An action that was called, on an element that answers.
    struct Action {
        const FakeElement* element;
        std::string name;

        bool operator==(const Action&) const = default;
    };

    [[nodiscard]] AXElement application(pid_t pid) override;
    void setMessagingTimeout(const AXElement& element, std::chrono::milliseconds timeout) override;
    [[nodiscard]] std::optional<AXValue> attribute(const AXElement& element, std::string_view name) override;
    [[nodiscard]] std::optional<std::vector<AXValue>> attributes(const AXElement& element,
                                                                 std::span<const std::string_view> names) override;

    [[nodiscard]] std::size_t elementsAtOnce() const override { return elementsAtOnce_; }

    [[nodiscard]] bool isAnswering(const AXElement& element) override;
    [[nodiscard]] bool isAttributeSettable(const AXElement& element, std::string_view name) override;
    bool setAttribute(const AXElement& element, std::string_view name, const AXValue& value) override;
    [[nodiscard]] std::optional<AXRect> frame(const AXElement& element) override;
    [[nodiscard]] std::optional<AXRect> frameOfText(const AXElement& element, const AXTextRange& range) override;
    [[nodiscard]] std::optional<std::string> textIn(const AXElement& element, const AXTextRange& range) override;
    [[nodiscard]] AXReplacement replaceText(const AXElement& element, const AXTextRange& range,
                                            const std::string& expected, const std::string& text) override;
    [[nodiscard]] std::vector<std::string> actionNames(const AXElement& element) override;
    AXActionResult performAction(const AXElement& element, std::string_view name) override;
    [[nodiscard]] std::optional<core::Subscription> observe(const AXElement& application, std::string_view name,
                                                            std::function<void(const AXElement&)> handler) override;

    /// A search reads this many elements in one call from now on.
    void answerAtOnce(std::size_t elements) { elementsAtOnce_ = elements; }

    /// The application makes no tree below its windows until somebody reads "AXRole" of its own element, as browsers of
    /// the Chromium family do: nothing has the focus, and no web area is there. `build` is given what makes the tree,
    /// and says when; without it the tree is there at once.
    void sleep(pid_t pid, std::function<void(std::function<void()>)> build = {});

    [[nodiscard]] bool isAsleep(pid_t pid) const { return asleep_.contains(pid); }

    /// The root of an application's tree, made on first use. An application without one does not answer.
    FakeElement& tree(pid_t pid);

    /// The application hangs: no element of its tree answers any more.
    void stopAnswering(pid_t pid);

    /// It resumes, with every element of its tree.
    void answerAgain(pid_t pid);

    /// Puts the keyboard focus of the application on the element; none removes it.
    void focus(pid_t pid, FakeElement* element);

    /// The application sends a notification, as from the main queue.
    void notify(pid_t pid, const std::string& notification, FakeElement& about);

    /// Whether somebody observes the notification of the application.
    [[nodiscard]] bool isObserved(pid_t pid, const std::string& notification) const;

    /// A reference to an element of a tree, as a call would give it.
    [[nodiscard]] AXElement reference(FakeElement& element) const;

    /// Every call that asked an application for something, in order.
    [[nodiscard]] const std::vector<Call>& calls() const { return calls_; }

    void forgetCalls() { calls_.clear(); }

    /// The actions that were called, in order.
    [[nodiscard]] const std::vector<Action>& actions() const { return actions_; }

private:
    class Handle;

    [[nodiscard]] FakeElement* nodeOf(const AXElement& element);
    [[nodiscard]] FakeElement* asked(const AXElement& element, std::string what);
    [[nodiscard]] bool isHidden(const FakeElement& element) const;
    [[nodiscard]] std::optional<pid_t> applicationOf(const FakeElement& element) const;
    void hearRoleRead(pid_t pid);

    std::map<pid_t, std::function<void(std::function<void()>)>> asleep_; ///< with what builds their trees
    std::map<pid_t, std::unique_ptr<FakeElement>> trees_;
    std::size_t elementsAtOnce_ = 1;
    std::vector<Call> calls_;
    std::vector<Action> actions_;
    std::map<std::pair<pid_t, std::string>, core::Listeners<const AXElement&>> observers_;
};

} // namespace quillane::fakes
