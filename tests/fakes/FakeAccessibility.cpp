// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fakes/FakeAccessibility.hpp"

#include <algorithm>
#include <utility>

#include <unicode/unistr.h>

namespace quillane::fakes {

namespace {

struct OpaqueText final : AXOpaqueValue::Handle {
    std::string text;

    explicit OpaqueText(std::string exact) : text(std::move(exact)) {}

    [[nodiscard]] bool isSame(const AXOpaqueValue::Handle& other) const override {
        const auto* same = dynamic_cast<const OpaqueText*>(&other);
        return same != nullptr && same->text == text;
    }
};

} // namespace

namespace {

std::string utf8OfUtf32(std::u32string_view text) {
    std::string utf8;
    icu::UnicodeString::fromUTF32(reinterpret_cast<const UChar32*>(text.data()), static_cast<std::int32_t>(text.size()))
        .toUTF8String(utf8);
    return utf8;
}

std::u32string utf32OfUtf8(const std::string& utf8) {
    const auto text = icu::UnicodeString::fromUTF8(utf8);
    std::u32string result;
    for (std::int32_t at = 0; at < text.length(); at = text.moveIndex32(at, 1)) {
        result += static_cast<char32_t>(text.char32At(at));
    }
    return result;
}

} // namespace

AXOpaqueValue fakeOpaqueValue(std::string text) {
    return AXOpaqueValue(std::make_shared<OpaqueText>(std::move(text)));
}

namespace {

/// A menu bar as applications have one. Its menus are closed.
void addMenuBar(FakeElement& application) {
    auto& bar = application.add("AXMenuBar");
    application.with("AXMenuBar", bar);
    auto& format = bar.add("AXMenuBarItem").with("AXTitle", std::string("Format")).add("AXMenu");
    for (const auto* title : {"Writing Direction", "Paragraph Direction"}) {
        auto& commands = format.add("AXMenuItem").with("AXTitle", std::string(title)).add("AXMenu");
        for (const auto* command : {"Default", "Left to Right", "Right to Left"}) {
            commands.add("AXMenuItem").with("AXTitle", std::string(command)).withAction("AXPress");
        }
    }
}

} // namespace

FakeElement& FakeElement::with(const std::string& attribute, Value value) {
    std::visit([&](auto&& exact) { values_.insert_or_assign(attribute, std::move(exact)); }, std::move(value));
    return *this;
}

FakeElement& FakeElement::with(const std::string& attribute, FakeElement& element) {
    references_.insert_or_assign(attribute, &element);
    return *this;
}

FakeElement& FakeElement::without(const std::string& attribute) {
    values_.erase(attribute);
    references_.erase(attribute);
    return *this;
}

FakeElement& FakeElement::settable(const std::string& attribute, bool settable) {
    settable ? void(settable_.insert(attribute)) : void(settable_.erase(attribute));
    return *this;
}

FakeElement& FakeElement::ignoringWrites(const std::string& attribute) {
    stubborn_.insert(attribute);
    return settable(attribute);
}

FakeElement& FakeElement::withAction(const std::string& name, Effect effect) {
    actions_.insert_or_assign(
        name, effect ? std::move(effect) : [] { return AXActionResult::done; });
    return *this;
}

FakeElement& FakeElement::present(bool present) {
    present_ = present;
    return *this;
}

FakeElement& FakeElement::showMenu(FakeElement& menu) {
    menu.present();
    return with("AXShownMenuUIElement", menu);
}

FakeElement& FakeElement::closeMenu() {
    if (const auto menu = references_.find("AXShownMenuUIElement"); menu != references_.end()) {
        menu->second->present(false);
    }
    return without("AXShownMenuUIElement");
}

FakeElement& FakeElement::failing(bool fails) {
    fails_ = fails;
    return *this;
}

FakeElement& FakeElement::hanging() {
    answer(false);
    return *this;
}

FakeElement& FakeElement::at(const AXRect& frame) {
    frame_ = frame;
    return *this;
}

FakeElement& FakeElement::withText(std::function<std::optional<AXRect>(const AXTextRange&)> place) {
    textPlace_ = std::move(place);
    return *this;
}

FakeElement& FakeElement::saying(std::u32string text) {
    text_ = std::move(text);
    hasText_ = true;
    settable("AXSelectedTextRange").settable("AXSelectedText");
    return with("AXSelectedTextRange", AXTextRange{static_cast<std::int64_t>(text_.size()), 0});
}

FakeElement& FakeElement::beforeReplacement(std::function<bool()> hook) {
    beforeReplacement_ = std::move(hook);
    return *this;
}

FakeElement& FakeElement::ignoringReplacements() {
    ignoresReplacements_ = true;
    return *this;
}

FakeElement& FakeElement::add(std::string role) {
    auto& child = *children_.emplace_back(std::make_unique<FakeElement>(std::move(role)));
    child.parent_ = this;
    return child;
}

FakeElement& FakeElement::addTextField(std::string role) {
    return add(std::move(role)).with("AXEnabled", true).settable("AXValue");
}

void FakeElement::answer(bool answers) {
    fails_ = !answers;
    hangs_ = !answers;
    for (const auto& child : children_) {
        child->answer(answers);
    }
}

/// A reference: the element, and the timeout of this reference and those read from it.
class FakeAccessibility::Handle final : public AXElement::Handle {
public:
    Handle(pid_t application, FakeElement* referred, std::optional<std::chrono::milliseconds> bound)
        : pid(application), element(referred), timeout(bound) {}

    [[nodiscard]] bool isSame(const AXElement::Handle& other) const override {
        const auto* same = dynamic_cast<const Handle*>(&other);
        return same != nullptr && same->pid == pid && same->element == element;
    }

    pid_t pid;            ///< of an application's own reference, which exists before its tree; otherwise zero
    FakeElement* element; ///< none in an application's own reference
    std::optional<std::chrono::milliseconds> timeout;
};

AXElement FakeAccessibility::application(pid_t pid) {
    return AXElement(std::make_shared<Handle>(pid, nullptr, std::nullopt));
}

void FakeAccessibility::setMessagingTimeout(const AXElement& element, std::chrono::milliseconds timeout) {
    dynamic_cast<Handle&>(element.handle()).timeout = timeout;
}

FakeElement* FakeAccessibility::nodeOf(const AXElement& element) {
    const auto& handle = dynamic_cast<Handle&>(element.handle());
    if (handle.element != nullptr) {
        return handle.element;
    }
    const auto found = trees_.find(handle.pid);
    return found == trees_.end() ? nullptr : found->second.get();
}

bool FakeAccessibility::isAnswering(const AXElement& element) {
    const auto* node = nodeOf(element);
    return node != nullptr && !node->hangs_;
}

FakeElement* FakeAccessibility::asked(const AXElement& element, std::string what) {
    calls_.push_back({std::move(what), dynamic_cast<Handle&>(element.handle()).timeout});
    auto* node = nodeOf(element);
    return node == nullptr || node->fails_ || !node->isPresent() || isHidden(*node) ? nullptr : node;
}

std::optional<pid_t> FakeAccessibility::applicationOf(const FakeElement& element) const {
    const auto* root = &element;
    while (root->parent_ != nullptr) {
        root = root->parent_;
    }
    const auto found = std::ranges::find_if(trees_, [&](const auto& tree) { return tree.second.get() == root; });
    return found == trees_.end() ? std::nullopt : std::optional(found->first);
}

/// Whether the element belongs to the part of a tree that its application has not made yet.
bool FakeAccessibility::isHidden(const FakeElement& element) const {
    const auto pid = asleep_.empty() ? std::nullopt : applicationOf(element);
    if (!pid || !asleep_.contains(*pid)) {
        return false;
    }
    for (const auto* step = &element; step != nullptr; step = step->parent_) {
        const auto role = step->values_.find("AXRole");
        if (role != step->values_.end() && role->second == AXValue(std::string("AXWebArea"))) {
            return true;
        }
    }
    return false;
}

void FakeAccessibility::sleep(pid_t pid, std::function<void(std::function<void()>)> build) {
    static_cast<void>(tree(pid));
    asleep_[pid] = build ? std::move(build) : [](const std::function<void()>& makeTree) { makeTree(); };
}

void FakeAccessibility::hearRoleRead(pid_t pid) {
    const auto sleeper = asleep_.find(pid);
    if (sleeper != asleep_.end() && sleeper->second) {
        std::exchange(sleeper->second, nullptr)([this, pid] { asleep_.erase(pid); });
    }
}

std::optional<std::vector<AXValue>> FakeAccessibility::attributes(const AXElement& element,
                                                                  std::span<const std::string_view> names) {
    std::string what;
    for (const auto name : names) {
        what.append(what.empty() ? "" : ",").append(name);
    }
    auto* node = asked(element, std::move(what));
    if (node == nullptr) {
        return std::nullopt;
    }
    const auto refer = [&](FakeElement* other) {
        const auto& timeout = dynamic_cast<Handle&>(element.handle()).timeout;
        for (const auto& [pid, root] : trees_) {
            if (root.get() == other) {
                return AXElement(std::make_shared<Handle>(pid, nullptr, timeout));
            }
        }
        return AXElement(std::make_shared<Handle>(0, other, timeout));
    };
    const auto& handle = dynamic_cast<const Handle&>(element.handle());
    std::vector<AXValue> values;
    for (const auto name : names) {
        if (name == "AXRole" && handle.element == nullptr) {
            hearRoleRead(handle.pid);
        }
        if (name == "AXFocusedUIElement" && handle.element == nullptr && isAsleep(handle.pid)) {
            values.emplace_back();
        } else if (const auto reference = node->references_.find(name); reference != node->references_.end()) {
            values.emplace_back(refer(reference->second));
        } else if (name == "AXParent" && node->parent_ != nullptr) {
            values.emplace_back(refer(node->parent_));
        } else if (name == "AXChildren") {
            std::vector<AXElement> children;
            for (const auto& child : node->children_) {
                if (child->present_ && !isHidden(*child)) {
                    children.push_back(refer(child.get()));
                }
            }
            values.emplace_back(std::move(children));
        } else if (const auto value = node->values_.find(name); value != node->values_.end()) {
            values.push_back(value->second);
        } else {
            values.emplace_back();
        }
    }
    return values;
}

std::optional<AXValue> FakeAccessibility::attribute(const AXElement& element, std::string_view name) {
    auto values = attributes(element, std::span(&name, 1));
    if (!values || std::holds_alternative<std::monostate>(values->front())) {
        return std::nullopt;
    }
    return std::move(values->front());
}

bool FakeAccessibility::isAttributeSettable(const AXElement& element, std::string_view name) {
    const auto* node = asked(element, std::string(name));
    return node != nullptr && node->settable_.contains(name);
}

bool FakeAccessibility::setAttribute(const AXElement& element, std::string_view name, const AXValue& value) {
    auto* node = asked(element, std::string(name));
    if (node == nullptr || !node->settable_.contains(name)) {
        return false;
    }
    const auto current = node->values_.find(name);
    if (current != node->values_.end() && current->second.index() != value.index()) {
        return false; // a value of another type
    }
    if (!node->stubborn_.contains(name)) {
        node->values_.insert_or_assign(std::string(name), value);
    }
    return true;
}

std::optional<AXRect> FakeAccessibility::frame(const AXElement& element) {
    const auto* node = asked(element, "frame");
    return node != nullptr ? node->frame_ : std::nullopt;
}

std::optional<AXRect> FakeAccessibility::frameOfText(const AXElement& element, const AXTextRange& range) {
    const auto* node = asked(element, "frame of text");
    return node != nullptr && node->textPlace_ ? node->textPlace_(range) : std::nullopt;
}

std::optional<std::string> FakeAccessibility::textIn(const AXElement& element, const AXTextRange& range) {
    const auto* node = asked(element, "text");
    const auto size = node != nullptr ? static_cast<std::int64_t>(node->text_.size()) : 0;
    if (node == nullptr || !node->hasText_ || range.location < 0 || range.location + range.length > size) {
        return std::nullopt;
    }
    return utf8OfUtf32(std::u32string_view(node->text_)
                           .substr(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length)));
}

AXReplacement FakeAccessibility::replaceText(const AXElement& element, const AXTextRange& range,
                                             const std::string& expected, const std::string& text) {
    auto* node = asked(element, "replace text");
    if (node == nullptr || !node->settable_.contains("AXSelectedText")) {
        return AXReplacement::failed;
    }
    if (node->beforeReplacement_ && !node->beforeReplacement_()) {
        return AXReplacement::failed;
    }
    const auto current = textIn(element, range);
    if (!current) {
        return AXReplacement::failed;
    }
    if (*current != expected) {
        return AXReplacement::differs;
    }
    if (!node->ignoresReplacements_) {
        const auto replacement = utf32OfUtf8(text);
        node->text_.replace(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length),
                            replacement);
        const auto end = range.location + static_cast<std::int64_t>(replacement.size());
        node->with("AXSelectedTextRange", AXTextRange{end, 0});
    }
    return AXReplacement::done;
}

std::vector<std::string> FakeAccessibility::actionNames(const AXElement& element) {
    std::vector<std::string> names;
    if (const auto* node = asked(element, "actions")) {
        for (const auto& [name, effect] : node->actions_) {
            names.push_back(name);
        }
    }
    return names;
}

AXActionResult FakeAccessibility::performAction(const AXElement& element, std::string_view name) {
    auto* node = asked(element, std::string(name));
    if (node == nullptr) {
        return AXActionResult::failed;
    }
    actions_.push_back({node, std::string(name)});
    const auto action = node->actions_.find(name);
    const auto effect = action == node->actions_.end() ? FakeElement::Effect() : action->second;
    return effect ? effect() : AXActionResult::failed;
}

std::optional<core::Subscription> FakeAccessibility::observe(const AXElement& application, std::string_view name,
                                                             std::function<void(const AXElement&)> handler) {
    const auto pid = dynamic_cast<Handle&>(application.handle()).pid;
    if (!trees_.contains(pid) || name != "AXMenuOpened") {
        return std::nullopt;
    }
    return observers_[{pid, std::string(name)}].subscribe(std::move(handler));
}

void FakeAccessibility::notify(pid_t pid, const std::string& notification, FakeElement& about) {
    observers_[{pid, notification}].notify(reference(about));
}

bool FakeAccessibility::isObserved(pid_t pid, const std::string& notification) const {
    const auto found = observers_.find({pid, notification});
    return found != observers_.end() && !found->second.empty();
}

FakeElement& FakeAccessibility::tree(pid_t pid) {
    auto& root = trees_[pid];
    if (!root) {
        root = std::make_unique<FakeElement>("AXApplication");
        addMenuBar(*root);
    }
    return *root;
}

void FakeAccessibility::stopAnswering(pid_t pid) {
    tree(pid).answer(false);
}

void FakeAccessibility::answerAgain(pid_t pid) {
    tree(pid).answer(true);
}

void FakeAccessibility::focus(pid_t pid, FakeElement* element) {
    auto& root = tree(pid);
    element == nullptr ? root.without("AXFocusedUIElement") : root.with("AXFocusedUIElement", *element);
}

AXElement FakeAccessibility::reference(FakeElement& element) const {
    for (const auto& [pid, root] : trees_) {
        if (root.get() == &element) {
            return AXElement(std::make_shared<Handle>(pid, nullptr, std::nullopt));
        }
    }
    return AXElement(std::make_shared<Handle>(0, &element, std::nullopt));
}

} // namespace quillane::fakes
