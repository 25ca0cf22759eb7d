// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "standins/macos/Values.hpp"

#include <ApplicationServices/Accessibility.h>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillane::standin {

/// One element of an application's tree, and the builder for it: each setter returns the element itself.
class AccessibleElement {
public:
    explicit AccessibleElement(std::string_view role) { with("AXRole", value(role)); }

    AccessibleElement& with(const std::string& attribute, Value held);
    AccessibleElement& with(const std::string& attribute, const AccessibleElement& element);

    /// An attribute that answers with an error.
    AccessibleElement& failing(const std::string& attribute, AXError error);

    AccessibleElement& settable(const std::string& attribute);
    AccessibleElement& withAction(const std::string& name, std::function<AXError()> effect);

    /// Places the text: gives the bounds of a range.
    AccessibleElement& withBounds(std::function<Value(const CFRange& range)> bounds);

    /// Gives the element a text, whose selected range ("AXSelectedTextRange") can be written ("AXSelectedText").
    AccessibleElement& withText(std::u16string text);

    [[nodiscard]] const std::optional<std::u16string>& text() const { return text_; }

    /// Adds a child and returns the child.
    AccessibleElement& add(std::string_view role);

    /// Whether it has left the tree: then every call on it fails.
    bool isGone = false;

private:
    friend class AccessibilityServer;
    using Attribute = std::variant<Value, const AccessibleElement*, AXError>;

    std::map<std::string, Attribute> attributes_;
    std::set<std::string> settable_;
    std::map<std::string, std::function<AXError()>> actions_;
    std::function<Value(const CFRange& range)> bounds_;
    std::optional<std::u16string> text_;
    std::vector<std::unique_ptr<AccessibleElement>> children_;
    AccessibleElement* parent_ = nullptr;
};

/// An application that can be asked by Accessibility.
struct AccessibleApplication {
    AccessibleElement root{"AXApplication"};
    std::chrono::duration<double> answersAfter{0}; ///< which the caller waits, as far as its time-out goes
    bool hangs = false;
    bool refusesAtOnce = false; ///< each call with kAXErrorCannotComplete, as while it is being launched
    int calls = 0;              ///< that came to it
};

/// All applications, and what stands between them and the caller.
class AccessibilityServer {
public:
    /// The application, made when it is first asked for.
    AccessibleApplication& application(pid_t pid);

    [[nodiscard]] AXUIElementRef create(pid_t pid, const AccessibleElement* element = nullptr);

    [[nodiscard]] AXError copy(AXUIElementRef element, const std::string& attribute, CFTypeRef* result);
    [[nodiscard]] AXError copyFor(AXUIElementRef element, const std::string& attribute, CFTypeRef parameter,
                                  CFTypeRef* result);
    [[nodiscard]] AXError copySeveral(AXUIElementRef element, CFArrayRef names, CFArrayRef* result);
    [[nodiscard]] AXError isSettable(AXUIElementRef element, const std::string& attribute, Boolean* result);
    [[nodiscard]] AXError set(AXUIElementRef element, const std::string& attribute, CFTypeRef held);
    [[nodiscard]] AXError copyActions(AXUIElementRef element, CFArrayRef* result);
    [[nodiscard]] AXError perform(AXUIElementRef element, const std::string& action);
    [[nodiscard]] AXError observe(AXObserverRef observer, AXUIElementRef element, const std::string& name,
                                  void* context);
    [[nodiscard]] AXError endObserving(AXObserverRef observer, const std::string& name);

    /// The application sends a notification, which arrives from the main queue.
    void notify(pid_t pid, const std::string& name, const AccessibleElement& about);

    bool isTrusted = true; ///< this program, by the user
    bool makesObservers = true;
    std::string answersShortly; ///< attributes come with one value too few when this one is among them

    void settle();

private:
    struct Observation {
        AXObserverRef observer; ///< not retained
        pid_t pid;
        std::string name;
        void* context;
    };

    struct Answer {
        AccessibleElement* element = nullptr;
        AXError error = kAXErrorSuccess;
    };

    /// Asks the application of the reference: the element when it answers.
    [[nodiscard]] Answer ask(AXUIElementRef element);
    [[nodiscard]] static AXError write(AccessibleElement& element, CFTypeRef text);
    [[nodiscard]] AXError read(pid_t pid, AccessibleElement& element, const std::string& attribute, Value* result);

    std::map<pid_t, std::unique_ptr<AccessibleApplication>> applications_;
    std::vector<Observation> observations_;
};

/// A structure of Accessibility.
[[nodiscard]] Value rangeValue(CFIndex location, CFIndex length);
[[nodiscard]] Value pointValue(double x, double y);
[[nodiscard]] Value sizeValue(double width = 0, double height = 0);
[[nodiscard]] Value rectangleValue(double x, double y, double width, double height);
[[nodiscard]] Value errorValue(AXError error);

/// A reference to an element, as an attribute of another type or inside of a list would hold it.
[[nodiscard]] Value elementValue(pid_t pid, const AccessibleElement& element);

} // namespace quillane::standin
