// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/history/LiveHistory.hpp"
#include "support/ProcessMemory.hpp"

#include <sstream>

#include <unistd.h>

namespace quillane::live {
namespace {

class LiveProtectionTest : public LiveHistoryTest {
protected:
    void SetUp() override {
#ifndef NDEBUG
        GTEST_SKIP() << "a debug build may be traced";
#endif
        LiveHistoryTest::SetUp();
    }

    /// The hard limit in /proc/PID/limits, which everybody may read.
    [[nodiscard]] std::string coreLimit() {
        const auto limits = readFile("/proc/" + std::to_string(agent().process().pid()) + "/limits");
        const std::string name = "Max core file size";
        const auto line = limits.find(name);
        std::istringstream words(line == std::string::npos ? "" : limits.substr(line + name.size()));
        std::string soft;
        std::string hard;
        words >> soft >> hard;
        return hard;
    }

    [[nodiscard]] bool shows(const std::string& text) {
        const auto root = desktop().accessibility().application(agent().process().pid());
        return root && desktop().accessibility().find(*root, [&](const AccessibleNode& node) {
            return node.name.starts_with(text) && node.is(AccessibleNode::State::showing);
        });
    }
};

TEST_F(LiveProtectionTest, ItsUserCannotReadTheAgentsMemoryAndNoCoreIsDumped) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "root may";
    }
    startAgent();
    EXPECT_EQ(coreLimit(), "0");
    const auto folder = std::filesystem::path("/proc") / std::to_string(agent().process().pid());
    const std::string anything = "x";
    EXPECT_FALSE(findInMemory(agent().process().pid(), std::as_bytes(std::span(anything))));
    std::error_code error;
    EXPECT_EQ(std::filesystem::read_symlink(folder / "exe", error), "");
    EXPECT_EQ(error, std::errc::permission_denied);
}

/// Services that look into /proc/PID of those who call them are refused there.
TEST_F(LiveProtectionTest, TrayKeyringAndFilePanelWorkAllTheSame) {
    const auto file = desktop().home() / ".config/quillane/defaults.plist";
    auto settings = readFile(file);
    settings.insert(settings.find("</dict>"), "<key>FileShareServer</key><string>http://127.0.0.1:9</string>");
    ASSERT_TRUE(writeFile(file, settings));
    startHistory();
    EXPECT_EQ(coreLimit(), "0");
    EXPECT_TRUE(agent().waitForStatus([](const auto& status) { return status.at("statusItemVisible") == true; }));
    copy("kept with the key of the keyring");
    ASSERT_TRUE(hasEntries(1));
    EXPECT_TRUE(waitUntil([&] { return entryFiles().size() == 1; }));
    EXPECT_EQ(agent().status().at("clipboard").at("storageError"), false);
    ASSERT_TRUE(agent().command({"share"}).succeeded());
    EXPECT_TRUE(waitUntil([&] { return shows("Choose a file to upload to "); }));
}

} // namespace
} // namespace quillane::live
