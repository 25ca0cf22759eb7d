// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "app/AppDelegateTest.hpp"
#include "core/clipboard/ClipboardOptions.hpp"

#include <nlohmann/json.hpp>

#include <chrono>
#include <filesystem>

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

TEST_F(AgentClipboardTest, TheHistoryIsSavedAtTheEnd) {
    start();
    copy("last");
    delegate->applicationWillTerminate();
    EXPECT_TRUE(std::filesystem::exists(files.folder() / "Quillane" / "ClipboardHistory" / "index"));
    start();
    EXPECT_EQ(clipboard().at("entries"), 1);
}

} // namespace
} // namespace quillane
