// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "contracts/AccessibilityContract.hpp"
#include "contracts/AreaCaptureContract.hpp"
#include "contracts/EventTapContract.hpp"
#include "contracts/HotKeysContract.hpp"
#include "contracts/InputSourcesContract.hpp"
#include "contracts/PasteboardContract.hpp"
#include "contracts/SecretStoreContract.hpp"
#include "contracts/WorkspaceContract.hpp"
#include "fakes/FakeAreaCapture.hpp"
#include "fakes/FakeDesktop.hpp"
#include "fakes/FakeHotKeys.hpp"
#include "fakes/FakePasteboard.hpp"
#include "fakes/FakeSecretStore.hpp"

#include <gtest/gtest.h>

#include <functional>

namespace quillane {
namespace {

using namespace fakes;

/// In a faked world everything has happened as soon as what was posted has run.
class FakeDriver {
public:
    bool waitUntil(const std::function<bool()>& condition) {
        desktop_.settle();
        return condition();
    }

protected:
    FakeDesktop desktop_;
};

class FakeEventTapDriver : public FakeDriver {
public:
    FakeEventTapDriver() { desktop_.withInputSources({hebrew()}).withFrontApplication("com.apple.TextEdit"); }

    EventTap& tap() { return desktop_.tap; }

    void press(core::KeyCode key) { desktop_.press(key); }

    void release(core::KeyCode key) { desktop_.release(key); }

    void press(Modifier modifier) { desktop_.press(modifier); }

    void release(Modifier modifier) { desktop_.release(modifier); }

    void click() { desktop_.click(); }

    void scroll() { desktop_.scroll(); }

    [[nodiscard]] std::u16string text() const {
        std::u16string text;
        for (const auto& event : desktop_.delivered()) {
            if (event.type == EventType::keyDown) {
                text += event.replacementText ? std::u16string(1, *event.replacementText) : ownText(event.keyCode);
            }
        }
        return text;
    }

    [[nodiscard]] static std::u16string ownText(core::KeyCode key) { return {static_cast<char16_t>(u'\u05D0' + key)}; }
};

class FakeInputSourcesDriver : public FakeDriver {
public:
    FakeInputSourcesDriver() { desktop_.withInputSources({english(), hebrew(), arabic()}); }

    InputSources& sources() { return desktop_.inputSources; }

    void switchFromOutside(const std::string& id) {
        for (const auto& source : desktop_.inputSources.enabled().value_or(std::vector<InputSource>())) {
            if (source.id == id) {
                desktop_.inputSources.switchFromOutside(source);
            }
        }
    }
};

class FakeWorkspaceDriver : public FakeDriver {
public:
    static constexpr std::string_view first = "com.apple.TextEdit";
    static constexpr std::string_view second = "com.apple.Notes";

    Workspace& workspace() { return desktop_.workspace; }

    pid_t open(std::string_view bundleID) {
        desktop_.withFrontApplication(std::string(bundleID));
        return desktop_.frontPid();
    }

    void activate(pid_t pid) { desktop_.workspace.activate(pid); }
};

class FakeAccessibilityDriver : public FakeDriver {
public:
    FakeAccessibilityDriver() {
        desktop_.withFrontApplication("com.apple.TextEdit");
        auto& window = tree().add("AXWindow");
        tree().with("AXFocusedWindow", window);
        field_ = &window.addTextField()
                      .with("AXWindow", window)
                      .with("AXSelectedTextRange", AXTextRange{3, 0})
                      .settable("AXSelectedTextRange");
        password_ = &window.addTextField().with("AXSubrole", "AXSecureTextField");
        menu_ = &tree().add("AXMenu").present(false).withAction("AXCancel", [this] {
            menu_->present(false);
            return AXActionResult::done;
        });
        menu_->add("AXMenuItem");
        focusTextField();
    }

    Accessibility& accessibility() { return desktop_.accessibility; }

    [[nodiscard]] pid_t pid() const { return desktop_.frontPid(); }

    void focusTextField() { desktop_.accessibility.focus(pid(), field_); }

    void focusPasswordField() { desktop_.accessibility.focus(pid(), password_); }

    void openContextMenu() {
        menu_->present();
        desktop_.accessibility.notify(pid(), "AXMenuOpened", *menu_);
    }

    void stopAnswering() { desktop_.accessibility.stopAnswering(pid()); }

private:
    FakeElement& tree() { return desktop_.accessibility.tree(pid()); }

    FakeElement* field_ = nullptr;
    FakeElement* password_ = nullptr;
    FakeElement* menu_ = nullptr;
};

class FakePasteboardDriver : public FakeDriver {
public:
    Pasteboard& pasteboard() { return pasteboard_; }

    void copyText(std::string text) { pasteboard_.copyText(std::move(text)); }

    std::string fileUrl(const std::filesystem::path& file) { return pasteboard_.referenceTo(file); }

    void settle() {}

private:
    fakes::FakePasteboard pasteboard_;
};

class FakeHotKeysDriver {
public:
    HotKeys& hotKeys() { return hotKeys_; }

    void press() { hotKeys_.press(key); }

    void takeByAnother() { hotKeys_.take(key); }

    void giveBack() { hotKeys_.giveBack(key); }

    bool waitUntil(const std::function<bool()>& condition) {
        settle();
        return condition();
    }

    void settle() { queue_.runPosted(); }

private:
    static constexpr HotKey key{9, core::flags::command | core::flags::shift};

    FakeMainQueue queue_;
    FakeHotKeys hotKeys_{queue_};
};

class FakeSecretStoreDriver {
public:
    core::SecretStore& store() { return store_; }

    bool lock() {
        store_.failWith(core::SecretStatus::interactionNotAllowed);
        return true;
    }

private:
    fakes::FakeSecretStore store_;
};

class FakeAreaCaptureDriver {
public:
    AreaCapture& capture() { return capture_; }

    [[nodiscard]] bool isSelecting() const { return capture_.selecting().has_value(); }

    void cancel() { capture_.end(); }

    void keepKeyboard() { keeps_ = true; }

    bool waitUntil(const std::function<bool()>& condition) {
        if (keeps_ && isSelecting()) {
            capture_.keepOut();
        }
        return condition();
    }

private:
    FakeAreaCapture capture_;
    bool keeps_ = false;
};

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, EventTapContract, FakeEventTapDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, InputSourcesContract, FakeInputSourcesDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, WorkspaceContract, FakeWorkspaceDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, AccessibilityContract, FakeAccessibilityDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, PasteboardContract, FakePasteboardDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, SecretStoreContract, FakeSecretStoreDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, HotKeysContract, FakeHotKeysDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, AreaCaptureContract, FakeAreaCaptureDriver);

} // namespace testing
} // namespace quillane
