// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "fakes/FakeAccessibility.hpp"
#include "fakes/FakeApplicationCatalog.hpp"
#include "fakes/FakeApplicationMenu.hpp"
#include "fakes/FakeAreaCapture.hpp"
#include "fakes/FakeEventTap.hpp"
#include "fakes/FakeFileExaminer.hpp"
#include "fakes/FakeFilePanel.hpp"
#include "fakes/FakeHotKeys.hpp"
#include "fakes/FakeInputSources.hpp"
#include "fakes/FakeKeyEvents.hpp"
#include "fakes/FakeLauncher.hpp"
#include "fakes/FakeLoginItemService.hpp"
#include "fakes/FakeMainQueue.hpp"
#include "fakes/FakePasteboard.hpp"
#include "fakes/FakePermissionService.hpp"
#include "fakes/FakeSecretStore.hpp"
#include "fakes/FakeSecureInput.hpp"
#include "fakes/FakeSerialQueue.hpp"
#include "fakes/FakeServicesMenu.hpp"
#include "fakes/FakeSleepAssertions.hpp"
#include "fakes/FakeStatusItem.hpp"
#include "fakes/FakeSystemInspector.hpp"
#include "fakes/FakeSystemSymbols.hpp"
#include "fakes/FakeUpdaterService.hpp"
#include "fakes/FakeUrlSession.hpp"
#include "fakes/FakeUserDefaults.hpp"
#include "fakes/FakeWindowList.hpp"
#include "fakes/FakeWindowTraits.hpp"
#include "fakes/FakeWorkspace.hpp"
#include "platform/Platform.hpp"
#include "support/Modifier.hpp"

#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillane::fakes {

/// Input sources as the system describes them.
[[nodiscard]] InputSource english();
[[nodiscard]] InputSource hebrew();
[[nodiscard]] InputSource arabic();

/// A whole desktop of fakes with a manual clock. A test builds it, acts as the user would, and reads what came out:
///
///     FakeDesktop desktop;
///     desktop.withFrontApplication("com.apple.TextEdit").withInputSources({hebrew()}).withFocusedTextField();
///     desktop.press(Modifier::leftShift).type(0);
///     EXPECT_EQ(desktop.replacedText(), u"a");
///
/// All permissions are granted at first, and no application is in front.
class FakeDesktop {
public:
    FakeDesktop();
    FakeDesktop(const FakeDesktop&) = delete;
    FakeDesktop& operator=(const FakeDesktop&) = delete;

    /// What the program is given. A test may put another object into it; the fake that it replaces is gone then.
    Platform platform;

    FakeMainQueue& queue = put<FakeMainQueue>(platform.mainQueue);
    FakeUserDefaults& userDefaults = put<FakeUserDefaults>(platform.userDefaults);
    FakeWorkspace& workspace = put<FakeWorkspace>(platform.workspace, queue);
    FakeApplicationCatalog& applicationCatalog = put<FakeApplicationCatalog>(platform.applicationCatalog, queue);
    FakeInputSources& inputSources = put<FakeInputSources>(platform.inputSources);
    FakeEventTap& tap = put<FakeEventTap>(platform.eventTap);
    FakeAccessibility& accessibility = put<FakeAccessibility>(platform.accessibility);
    FakePermissionService& permissions = put<FakePermissionService>(platform.permissions);
    FakeStatusItem& statusItem = put<FakeStatusItem>(platform.statusItem);
    FakeApplicationMenu& applicationMenu = put<FakeApplicationMenu>(platform.applicationMenu);
    FakeWindowTraits& windowTraits = put<FakeWindowTraits>(platform.windowTraits);
    FakeWindowList& windowList = put<FakeWindowList>(platform.windowList);
    FakeSleepAssertions& sleepAssertions = put<FakeSleepAssertions>(platform.sleepAssertions);
    FakePasteboard& pasteboard = put<FakePasteboard>(platform.pasteboard);
    FakeKeyEvents& keyEvents = put<FakeKeyEvents>(platform.keyEvents);
    FakeAreaCapture& areaCapture = put<FakeAreaCapture>(platform.areaCapture);
    FakeHotKeys& hotKeys = put<FakeHotKeys>(platform.hotKeys, queue);
    FakeSecureInput& secureInput = put<FakeSecureInput>(platform.secureInput);
    FakeSecretStore& secretStore = put<FakeSecretStore>(platform.secretStore);
    FakeSerialQueue& vaultQueue = put<FakeSerialQueue>(platform.vaultQueue);
    FakeSerialQueue& imageQueue = put<FakeSerialQueue>(platform.imageQueue);
    FakeSerialQueue& fileQueue = put<FakeSerialQueue>(platform.fileQueue);
    FakeFilePanel& filePanel = put<FakeFilePanel>(platform.filePanel);
    FakeSystemSymbols& systemSymbols = put<FakeSystemSymbols>(platform.systemSymbols);
    FakeServicesMenu& servicesMenu = put<FakeServicesMenu>(platform.servicesMenu);
    FakeLauncher& launcher = put<FakeLauncher>(platform.launcher);
    FakeLoginItemService& loginItem = put<FakeLoginItemService>(platform.loginItem);
    FakeSystemInspector& systemInspector = put<FakeSystemInspector>(platform.systemInspector);
    FakeUpdaterService& updater = put<FakeUpdaterService>(platform.updater);
    FakeUrlSessions urlSessions;   ///< the network
    FakeFileExaminer fileExaminer; ///< the disk of files that are to be shared

    // Building.

    /// Opens another application and brings it to the front. A browser of the Chromium family has no accessibility tree
    /// until somebody wakes it.
    FakeDesktop& withFrontApplication(std::optional<std::string> bundleID, std::string name = {});

    /// The first source is in use.
    FakeDesktop& withInputSources(std::vector<InputSource> sources);

    /// Exactly these permissions are granted.
    FakeDesktop& withPermissions(std::set<core::MacPermission> granted);

    /// The application in front gets a field of that kind, and the keyboard focus is on it.
    FakeDesktop& withFocusedTextField(std::string role = "AXTextField");
    FakeDesktop& withFocusedPasswordField();

    // What the user does. Every event goes through the tap to the application in front.

    FakeDesktop& press(Modifier modifier);
    FakeDesktop& release(Modifier modifier);
    FakeDesktop& press(core::KeyCode key);
    FakeDesktop& release(core::KeyCode key);

    /// Releases a key without an event, as while secure input is on.
    FakeDesktop& releaseUnseen(core::KeyCode key);

    /// Presses and releases a key.
    FakeDesktop& type(core::KeyCode key);

    FakeDesktop& click(EventType button = EventType::leftMouseDown);
    FakeDesktop& scroll();

    /// Brings an application to the front, opening it when it does not run.
    FakeDesktop& switchTo(std::string_view bundleID);

    /// Releases every key and modifier that is held.
    FakeDesktop& releaseAll();

    /// From now on each fake records its calls in the journal.
    FakeDesktop& keepJournal(Journal& journal);

    // What came out.

    /// The process in front. Throws when nothing is in front.
    [[nodiscard]] pid_t frontPid() const;

    /// The events that went on to the application in front, in order. There are as many as the user made, once a tap
    /// has let go of those that it holds back.
    [[nodiscard]] const std::vector<InputEvent>& delivered() const { return delivered_; }

    /// The characters of the key presses whose text was replaced, in order.
    [[nodiscard]] std::u16string replacedText() const;

    /// Lets everything that was posted run.
    FakeDesktop& settle();

private:
    /// Makes a fake and puts it where the program finds it.
    template <typename Fake, typename Interface, typename... Arguments>
    static Fake& put(std::unique_ptr<Interface>& place, Arguments&... arguments) {
        auto made = std::make_unique<Fake>(arguments...);
        auto& fake = *made;
        place = std::move(made);
        return fake;
    }

    void send(EventType type, core::KeyCode key);

    std::set<Modifier> modifiers_;
    std::set<core::KeyCode> keys_;
    std::vector<InputEvent> delivered_;
};

} // namespace quillane::fakes
