// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "app/AppDelegateTest.hpp"
#include "core/clipboard/ClipboardOptions.hpp"
#include "core/clipboard/VaultLock.hpp"
#include "core/localization/Texts.hpp"
#include "support/KeyboardLayouts.hpp"

#include <nlohmann/json.hpp>

#include <chrono>
#include <filesystem>
#include <fstream>

namespace quillane {
namespace {

using namespace std::chrono_literals;

/// The clipboard history in the running agent.
class AgentClipboardTest : public AppDelegateTest {
protected:
    AgentClipboardTest() {
        core::ClipboardOptions options;
        options.enabled = true;
        defaults.setObject(core::clipboardOptionsKey, core::encodeClipboardOptions(options));
        desktop.withFrontApplication("com.apple.TextEdit", "TextEdit");
    }

    void start() {
        launch();
        desktop.settle();
        desktop.vaultQueue.wait();
        desktop.settle();
    }

    void copy(const std::string& text) {
        desktop.pasteboard.copyText(text);
        desktop.queue.advance(500ms);
    }

    [[nodiscard]] bool isPanelOpen() const { return clipboard().at("panelOpen"); }

    [[nodiscard]] nlohmann::json clipboard() const {
        return nlohmann::json::parse(toJson(delegate->statusReport())).at("clipboard");
    }

    static constexpr HotKey shortcut{9, core::flags::command | core::flags::shift};
};

TEST_F(AgentClipboardTest, CopiesAreCountedAndNotShown) {
    start();
    copy("a secret");
    EXPECT_EQ(clipboard().at("entries"), 1);
    EXPECT_EQ(toJson(delegate->statusReport()).find("a secret"), std::string::npos);
}

TEST_F(AgentClipboardTest, SearchFindsWhatWasTypedInTheOtherLayout) {
    desktop.inputSources.setLayout(fakes::english().id, testing::englishLayout());
    desktop.inputSources.setLayout(fakes::hebrew().id, testing::hebrewLayout());
    start();
    copy("שלום");
    copy("akuo");
    auto& panel = delegate->clipboardPanel();
    panel.toggle();
    panel.setQuery("akuo");
    EXPECT_EQ(panel.retypedQuery(), "שלום");
    EXPECT_EQ(panel.filtered().size(), 2U);
    panel.setQuery("שלום");
    EXPECT_EQ(panel.retypedQuery(), "akuo");
}

TEST_F(AgentClipboardTest, PauseAllRecordsNothing) {
    start();
    EXPECT_TRUE(delegate->handleControlRequest({"pause", {}}).ok);
    copy("one");
    EXPECT_TRUE(delegate->handleControlRequest({"resume", {}}).ok);
    desktop.queue.advance(1s);
    EXPECT_EQ(clipboard().at("entries"), 0);
}

TEST_F(AgentClipboardTest, AnotherComputersScreenInFrontTakesTheHotKeyAway) {
    start();
    EXPECT_TRUE(desktop.hotKeys.isRegistered(shortcut));
    desktop.switchTo("com.apple.ScreenSharing");
    EXPECT_FALSE(desktop.hotKeys.isRegistered(shortcut));
    copy("over there");
    desktop.switchTo("com.apple.TextEdit");
    EXPECT_TRUE(desktop.hotKeys.isRegistered(shortcut));
    desktop.queue.advance(1s);
    EXPECT_EQ(clipboard().at("entries"), 0);
}

TEST_F(AgentClipboardTest, TheHotKeyTheMenuAndTheCommandOpenThePanel) {
    start();
    EXPECT_FALSE(isPanelOpen());
    desktop.hotKeys.press(shortcut);
    EXPECT_TRUE(isPanelOpen());
    desktop.hotKeys.press(shortcut);
    EXPECT_FALSE(isPanelOpen());
    click("Clipboard history");
    EXPECT_TRUE(isPanelOpen());
    EXPECT_TRUE(delegate->handleControlRequest({"history", {}}).ok);
    EXPECT_FALSE(isPanelOpen());
}

TEST_F(AgentClipboardTest, ThePanelWorksWhileEverythingIsPausedAndClosesWhenThatBegins) {
    start();
    copy("one");
    desktop.hotKeys.press(shortcut);
    EXPECT_TRUE(delegate->handleControlRequest({"pause", {}}).ok);
    EXPECT_FALSE(isPanelOpen());
    desktop.hotKeys.press(shortcut);
    EXPECT_TRUE(isPanelOpen());
}

TEST_F(AgentClipboardTest, HistoryThatIsOffIsOpenedByItsRowAndByTheCommand) {
    defaults.removeObject(core::clipboardOptionsKey);
    start();
    click("Clipboard history");
    EXPECT_TRUE(isPanelOpen());
    click("Clipboard history");
    EXPECT_FALSE(isPanelOpen());
    EXPECT_TRUE(delegate->handleControlRequest({"history", {}}).ok);
    EXPECT_TRUE(isPanelOpen());
    EXPECT_EQ(settingsWindow(), nullptr);
}

TEST_F(AgentClipboardTest, DamagedHistoryIsReportedInTheMenuAndInTheStatus) {
    start();
    copy("one");
    delegate->applicationWillTerminate();
    std::ofstream(files.path() / "Quillane" / "ClipboardHistory" / "index") << "damaged";
    start();
    EXPECT_EQ(clipboard().at("setAside"), 1);
    EXPECT_EQ(clipboard().at("unread"), false);
    EXPECT_EQ(desktop.statusItem.row("Clipboard history").toolTip,
              "The saved history could not be read. It was set aside and can be recovered in Settings.");
}

TEST_F(AgentClipboardTest, HistoryThatAnotherProgramWritesIsSaidInTheMenuAndInTheStatus) {
    const auto lock = core::VaultLock::acquire(files.path() / "Quillane" / "ClipboardHistory");
    start();
    EXPECT_EQ(clipboard().at("usedElsewhere"), true);
    EXPECT_EQ(clipboard().at("storageError"), true);
    EXPECT_EQ(clipboard().at("unread"), false);
    EXPECT_EQ(desktop.statusItem.row("Clipboard history").toolTip,
              "Another copy of Quillane is using the saved history. History is available in memory only.");
}

TEST_F(AgentClipboardTest, PasteThatGivesUpIsReported) {
    start();
    copy("one");
    desktop.hotKeys.press(shortcut);
    desktop.secureInput.setEnabled(true);
    delegate->clipboardPanel().handle(36, 0);
    desktop.queue.advance(1s);
    const auto text = core::LocalizedText(core::texts::itemCopiedReturnToApp.on(core::Desktop::macOS))
                          .rendered(core::AppLanguage::english);
    ASSERT_EQ(desktop.statusItem.notices().size(), 1U);
    EXPECT_EQ(desktop.statusItem.notices()[0].text, text);
    EXPECT_EQ(model->lastAction().rendered(core::AppLanguage::english), text);
}

TEST_F(AgentClipboardTest, ThePanelPastesIntoTheApplicationThatWasInFrontLast) {
    start();
    copy("one");
    const auto editor = desktop.workspace.frontmostApplication()->pid;
    desktop.workspace.activateNothing(); // for example while a menu of the desktop is open
    desktop.hotKeys.press(shortcut);
    ASSERT_TRUE(isPanelOpen());
    delegate->clipboardPanel().handle(36, 0);
    desktop.queue.advance(50ms);
    EXPECT_EQ(desktop.keyEvents.posted,
              std::vector<fakes::FakeKeyEvents::PostedKey>({{editor, 9, core::flags::command}}));
}

TEST_F(AgentClipboardTest, TheHistoryIsSavedAtTheEnd) {
    start();
    copy("last");
    delegate->applicationWillTerminate();
    EXPECT_TRUE(std::filesystem::exists(files.path() / "Quillane" / "ClipboardHistory" / "index"));
    start();
    EXPECT_EQ(clipboard().at("entries"), 1);
}

} // namespace
} // namespace quillane
