// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fakes/FakeDesktop.hpp"

#include "core/direction/ChromiumFamily.hpp"

#include <stdexcept>
#include <utility>

namespace quillane::fakes {

InputSource english() {
    return {.id = "com.apple.keylayout.US", .localizedName = "U.S.", .languages = {"en"}};
}

InputSource hebrew() {
    return {.id = "com.apple.keylayout.Hebrew", .localizedName = "Hebrew", .languages = {"he"}};
}

InputSource arabic() {
    return {.id = "com.apple.keylayout.Arabic", .localizedName = "Arabic", .languages = {"ar"}};
}

FakeDesktop::FakeDesktop() {
    platform.urlSessions = urlSessions.factory();
    tap.onLetGo([this](const InputEvent& event) { delivered_.push_back(event); });
    tap.hideKeysWhen([&typed = secureInput] { return typed.isEnabled(); });
    tap.permitWhen([&granted = permissions] { return granted.isGranted(core::MacPermission::accessibility); });
    withPermissions({core::allPermissions.begin(), core::allPermissions.end()});
}

FakeDesktop& FakeDesktop::withFrontApplication(std::optional<std::string> bundleID, std::string name) {
    const bool sleeps = bundleID && core::chromiumFamily::contains(*bundleID);
    const auto pid = workspace.open(std::move(bundleID), std::move(name));
    if (sleeps) {
        accessibility.sleep(pid);
    }
    workspace.activate(pid);
    return *this;
}

FakeDesktop& FakeDesktop::withInputSources(std::vector<InputSource> sources) {
    inputSources.setEnabled(std::move(sources));
    return *this;
}

FakeDesktop& FakeDesktop::withPermissions(std::set<core::MacPermission> granted) {
    for (const auto permission : core::allPermissions) {
        granted.contains(permission) ? permissions.grant(permission) : permissions.revoke(permission);
    }
    return *this;
}

FakeDesktop& FakeDesktop::withFocusedTextField(std::string role) {
    accessibility.focus(frontPid(), &accessibility.tree(frontPid()).addTextField(std::move(role)));
    return *this;
}

FakeDesktop& FakeDesktop::withFocusedPasswordField() {
    auto& field = accessibility.tree(frontPid()).addTextField().with("AXSubrole", "AXSecureTextField");
    accessibility.focus(frontPid(), &field);
    return *this;
}

void FakeDesktop::send(EventType type, core::KeyCode key) {
    core::EventFlags flags = 0;
    for (const auto modifier : modifiers_) {
        flags |= keyOf(modifier).common | keyOf(modifier).own;
    }
    const auto passed = tap.send({.type = type, .keyCode = key, .flags = flags, .replacementText = std::nullopt});
    if (passed) {
        delivered_.push_back(*passed);
    }
    keyEvents.setCurrentFlags(flags); // a tap comes before the session
}

FakeDesktop& FakeDesktop::press(Modifier modifier) {
    if (!modifiers_.insert(modifier).second) {
        throw std::logic_error("This modifier is held already");
    }
    send(EventType::flagsChanged, keyOf(modifier).keyCode);
    return *this;
}

FakeDesktop& FakeDesktop::release(Modifier modifier) {
    if (modifiers_.erase(modifier) == 0) {
        throw std::logic_error("This modifier is not held");
    }
    send(EventType::flagsChanged, keyOf(modifier).keyCode);
    return *this;
}

FakeDesktop& FakeDesktop::press(core::KeyCode key) {
    keys_.insert(key); // pressing a held key is its repetition
    keyEvents.press(key);
    send(EventType::keyDown, key);
    return *this;
}

FakeDesktop& FakeDesktop::release(core::KeyCode key) {
    if (keys_.erase(key) == 0) {
        throw std::logic_error("This key is not held");
    }
    keyEvents.release(key);
    send(EventType::keyUp, key);
    return *this;
}

FakeDesktop& FakeDesktop::releaseUnseen(core::KeyCode key) {
    if (keys_.erase(key) == 0) {
        throw std::logic_error("This key is not held");
    }
    keyEvents.release(key);
    return *this;
}

FakeDesktop& FakeDesktop::type(core::KeyCode key) {
    return press(key).release(key);
}

FakeDesktop& FakeDesktop::click(EventType button) {
    send(button, 0);
    return *this;
}

FakeDesktop& FakeDesktop::scroll() {
    send(EventType::scrollWheel, 0);
    return *this;
}

FakeDesktop& FakeDesktop::switchTo(std::string_view bundleID) {
    const auto running = workspace.runningApplications(bundleID);
    if (running.empty()) {
        return withFrontApplication(std::string(bundleID));
    }
    workspace.activate(running.front().pid);
    return *this;
}

FakeDesktop& FakeDesktop::releaseAll() {
    while (!keys_.empty()) {
        release(*keys_.begin());
    }
    while (!modifiers_.empty()) {
        release(*modifiers_.begin());
    }
    return *this;
}

FakeDesktop& FakeDesktop::keepJournal(Journal& journal) {
    queue.journal = userDefaults.journal = workspace.journal = inputSources.journal = tap.journal = &journal;
    permissions.journal = statusItem.journal = applicationMenu.journal = windowTraits.journal = &journal;
    sleepAssertions.journal = pasteboard.journal = servicesMenu.journal = loginItem.journal = &journal;
    updater.journal = urlSessions.journal = &journal;
    return *this;
}

pid_t FakeDesktop::frontPid() const {
    const auto front = workspace.frontmostApplication();
    if (!front) {
        throw std::logic_error("No application is in front");
    }
    return front->pid;
}

std::u16string FakeDesktop::replacedText() const {
    std::u16string text;
    for (const auto& event : delivered_) {
        if (event.type == EventType::keyDown && event.replacementText) {
            text.push_back(*event.replacementText);
        }
    }
    return text;
}

FakeDesktop& FakeDesktop::settle() {
    queue.runPosted();
    return *this;
}

} // namespace quillane::fakes
