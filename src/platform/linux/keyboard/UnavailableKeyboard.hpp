// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/EventTap.hpp"
#include "platform/HotKeys.hpp"
#include "platform/InputSources.hpp"
#include "platform/KeyEvents.hpp"
#include "platform/WindowList.hpp"
#include "platform/Workspace.hpp"

namespace quillane {

/// The keyboard where no ordinary program can observe it (Wayland): the tap never starts, and nothing is known.
class UnavailableEventTap final : public EventTap {
public:
    bool start(std::uint64_t, Receiver) override { return false; }

    void stop() override {}

    void enable() override {}

    [[nodiscard]] bool isEnabled() const override { return false; }

    void setReplaceableKeys(std::span<const core::KeyCode>) override {}

    void hold() override {}

    void letGo() override {}

    [[nodiscard]] bool isHolding() const override { return false; }
};

class UnavailableKeyEvents final : public KeyEvents {
public:
    [[nodiscard]] core::EventFlags currentFlags() const override { return 0; }

    [[nodiscard]] bool isKeyDown(core::KeyCode) const override { return false; }

    [[nodiscard]] bool postKey(pid_t, core::KeyCode, core::EventFlags) override { return false; }
};

class UnavailableInputSources final : public InputSources {
public:
    [[nodiscard]] std::optional<std::vector<InputSource>> enabled() const override { return std::nullopt; }

    [[nodiscard]] std::optional<InputSource> current() const override { return std::nullopt; }

    [[nodiscard]] std::optional<core::KeyboardLayout> layout(std::string_view) const override { return std::nullopt; }

    bool select(std::string_view) override { return false; }

    [[nodiscard]] bool switchedBySystemShortcut() const override { return false; }

    [[nodiscard]] bool hasSettings() const override { return false; }

    bool openSettings() override { return false; }

    core::Subscription onChanged(std::function<void()>) override { return {}; }
};

/// No key can be grabbed: registering does nothing and reports no conflict.
class UnavailableHotKeys final : public HotKeys {
public:
    core::Subscription registerHotKey(const HotKey&, std::function<void()>, std::function<void()>) override {
        return {};
    }
};

/// The workspace where no window system reports what is in front.
class UnavailableWorkspace final : public Workspace {
public:
    explicit UnavailableWorkspace(bool launchedAtLogin) : launchedAtLogin_(launchedAtLogin) {}

    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() const override { return std::nullopt; }

    [[nodiscard]] std::vector<RunningApplication> runningApplications(std::string_view) const override { return {}; }

    [[nodiscard]] bool isRunning(pid_t) const override { return false; }

    bool activateApplication(pid_t) override { return false; }

    bool terminate(pid_t) override { return false; }

    [[nodiscard]] bool launchedAtLogin() const override { return launchedAtLogin_; }

    core::Subscription onDidActivateApplication(std::function<void()>) override { return {}; }

    core::Subscription onDidWake(std::function<void()>) override { return {}; }

private:
    bool launchedAtLogin_;
};

/// No window system reports windows.
class UnavailableWindowList final : public WindowList {
public:
    void read(Handler handler) override { handler({}); }
};

} // namespace quillane
