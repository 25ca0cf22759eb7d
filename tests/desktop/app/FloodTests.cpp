// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/agent/AgentTest.hpp"
#include "desktop/agent/HistoryDesktop.hpp"
#include "desktop/fixture/XFlood.hpp"
#include "support/ProcessFacts.hpp"

namespace quillane::live {
namespace {

using std::chrono::milliseconds;

constexpr int perSecond = 100'000;
constexpr std::uint64_t mebibyte = 1024 * 1024;

/// Another client that makes events without end, while the agent has everything turned on.
class LiveFloodTest : public AgentTest, public testing::WithParamInterface<XFloodKind> {
protected:
    void SetUp() override {
        AgentTest::SetUp();
        core::ClipboardOptions options;
        options.enabled = true;
        ASSERT_TRUE(writeHistorySettings(desktop(), options));
        keyring_ = required(startKeyring(desktop()));
    }

    void TearDown() override {
        AgentTest::TearDown();
        keyring_.reset();
    }

    [[nodiscard]] std::uint64_t memory() { return residentMemoryOf(agent().process().pid()); }

private:
    std::optional<ChildProcess> keyring_;
};

TEST_P(LiveFloodTest, AgentAnswersAndItsMemoryStaysBounded) {
    startTyping(editors().front());
    const auto before = memory();
    std::uint64_t most = before;
    {
        const XFlood flood(desktop().display(), GetParam(), perSecond);
        ASSERT_TRUE(waitUntil([&] { return flood.made() > 0; }));
        for (int answers = 0; answers < 10; ++answers) {
            ASSERT_TRUE(agent().command({"status"}).succeeded());
            most = std::max(most, memory());
        }
        ASSERT_TRUE(waitUntil([&] {
            most = std::max(most, memory());
            return flood.made() > 3 * perSecond;
        }));
        EXPECT_TRUE(agent().command({"status"}).succeeded());
    }
    EXPECT_LT(most - before, 24 * mebibyte);
    RecordProperty("grownKiB", static_cast<int>((most - before) / 1024));

    if (GetParam() == XFloodKind::group) {
        return; // the window manager and the editor work it off for many seconds
    }
    // What is shown at the end counts.
    ASSERT_TRUE(agent().useGroup(0, false));
    ASSERT_TRUE(agent().useGroup(1, true));
    ASSERT_TRUE(agent().bringToFront(editor().pid()));
    EXPECT_TRUE(waitUntil(
        [&] {
            desktop().keyboard().tapWith({Key::leftShift}, Key::a);
            return editorText().ends_with('a');
        },
        defaultTimeout, milliseconds{100}))
        << editorText();
}

/// Without those that the rest of the desktop, the window manager and the editor, works off for long after they have
/// ended. The benchmark has all of them.
constexpr XFloodKind floods[] = {XFloodKind::property,       XFloodKind::activeWindow, XFloodKind::clientList,
                                 XFloodKind::manager,        XFloodKind::layoutNames,  XFloodKind::structure,
                                 XFloodKind::selectionOwner, XFloodKind::group};

INSTANTIATE_TEST_SUITE_P(Of, LiveFloodTest, testing::ValuesIn(floods),
                         [](const auto& parameter) { return std::string(nameOf(parameter.param)); });

} // namespace
} // namespace quillane::live
