// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/agent/AgentTest.hpp"
#include "desktop/agent/ColoredWindow.hpp"
#include "desktop/agent/LiveAreaSelection.hpp"
#include "desktop/agent/LiveMenu.hpp"

#include <QImage>

#include <algorithm>
#include <chrono>

namespace quillane::live {
namespace {

using std::chrono::milliseconds;

/// All options at their defaults, and the history turned on: what the settings window stores.
constexpr const char* historyIsOn =
    "eyJlbmFibGVkIjp0cnVlLCJzYXZlVGV4dCI6dHJ1ZSwic2F2ZUltYWdlcyI6dHJ1ZSwic2F2ZUZpbGVzIjp0cnVlLCJwZXJzaXN0"
    "Ijp0cnVlLCJsaW1pdCI6MjAwLCJzdG9yYWdlTUIiOjI1MCwicG9wdXBBdEN1cnNvciI6dHJ1ZSwicGluc09uVG9wIjp0cnVlLCJp"
    "bWFnZUhlaWdodCI6NjAsInByZXZpZXdEZWxheSI6NzAwLCJzb3J0QnlMYXN0Q29weSI6dHJ1ZSwiaWdub3JlZEFwcHMiOltdfQ==";

constexpr ScreenArea windowArea{300, 240, 400, 300};
constexpr ScreenArea area{450, 350, 120, 80}; // some of each colour

/// The agent's area capture over a window of known colours.
class LiveAreaCaptureTest : public AgentTest {
protected:
    void SetUp() override {
        AgentTest::SetUp();
        window_.emplace(desktop().screen(), windowArea);
        require(waitUntil([&] { return window_->isShown(); }), "the coloured window is not shown");
    }

    void TearDown() override {
        AgentTest::TearDown();
        window_.reset();
    }

    void start(const std::string& language = "en", const Environment& more = {}) {
        require(language != "en" ? chooseAgentLanguage(desktop(), language)
                                 : writeAgentSettings(desktop(), {{"QuillaneClipboardOptionsV1",
                                                                   std::string("<data>") + historyIsOn + "</data>"}}),
                "the settings cannot be written");
        startAgent(more);
        require(language != "en" || agent().waitForStatus([](const auto& status) {
            return status.at("clipboard").at("status") == "Clipboard history is active";
        }),
                "the history is not active");
    }

    [[nodiscard]] LiveAreaSelection selection() { return LiveAreaSelection(desktop()); }

    void capture() {
        const auto asked = agent().command({"capture"});
        ASSERT_TRUE(asked.succeeded()) << asked.errors;
        ASSERT_TRUE(selection().waitUntilOpen());
    }

    /// What another program reads from the clipboard as a PNG.
    [[nodiscard]] QImage pasted() {
        const auto file = desktop().home() / "pasted.png";
        const auto pasting =
            desktop().run({"sh", "-c", "exec xclip -selection clipboard -t image/png -o >~/pasted.png"});
        return pasting.succeeded() ? QImage(QString::fromStdString(file.string())) : QImage();
    }

    /// Waits for a picture of exactly these pixels of the window.
    void expectPasted(const ScreenArea& expected) {
        QImage picture;
        ASSERT_TRUE(waitUntil([&] { return !(picture = pasted()).isNull(); }));
        ASSERT_EQ(picture.width(), expected.width);
        ASSERT_EQ(picture.height(), expected.height);
        for (int y = 0; y < expected.height; ++y) {
            for (int x = 0; x < expected.width; ++x) {
                ASSERT_EQ(picture.pixel(x, y) & 0xffffffU, window_->colorAt(expected.x + x, expected.y + y))
                    << x << ' ' << y;
            }
        }
    }

    [[nodiscard]] int entries() { return agent().status().at("clipboard").at("entries"); }

    void copyText(const std::string& text) {
        ASSERT_TRUE(desktop().run({"sh", "-c", "printf %s \"$0\" | xclip -selection clipboard -i", text}).succeeded());
    }

    [[nodiscard]] std::string pastedText() { return desktop().run({"xclip", "-selection", "clipboard", "-o"}).output; }

private:
    std::optional<ColoredWindow> window_;
};

TEST_F(LiveAreaCaptureTest, TheMenusCommandCopiesTheSelectedPixelsAndTheHistoryTakesThemUp) {
    start();
    ASSERT_TRUE(agent().waitForStatus([](const auto& status) { return status.at("clipboard").at("entries") == 0; }));
    ASSERT_TRUE(required(LiveMenu::open(desktop())).choose("Capture Area to Clipboard…"));
    ASSERT_TRUE(selection().waitUntilOpen());
    selection().drag(area);
    expectPasted(area);
    EXPECT_TRUE(selection().waitUntilClosed());
    EXPECT_TRUE(agent().waitForStatus([](const auto& status) { return status.at("clipboard").at("entries") == 1; }));
    EXPECT_EQ(agent().status().at("lastAction"), "Select an area to capture and copy. Esc to cancel.");
}

TEST_F(LiveAreaCaptureTest, ThePictureStaysOnTheClipboard) {
    start();
    capture();
    selection().drag(area);
    expectPasted(area);
    EXPECT_TRUE(holdsFor(milliseconds{700}, [&] { return !pasted().isNull(); }));
    capture();
    selection().drag({301, 241, 300, 260});
    EXPECT_TRUE(waitUntil([&] { return pasted().width() == 300; }));
    expectPasted({301, 241, 300, 260});
    EXPECT_TRUE(agent().waitForStatus([](const auto& status) { return status.at("clipboard").at("entries") == 2; }));
}

TEST_F(LiveAreaCaptureTest, OnAScreenOfTwiceTheScaleThePixelsAreTheScreens) {
    start("en", {{"QT_SCALE_FACTOR", "2"}});
    capture();
    selection().drag({451, 351, 119, 79});
    expectPasted({451, 351, 119, 79});
}

TEST_F(LiveAreaCaptureTest, EscapeLeavesTheClipboardAsItIs) {
    start();
    copyText("before");
    ASSERT_TRUE(agent().waitForStatus([](const auto& status) { return status.at("clipboard").at("entries") == 1; }));
    capture();
    selection().beginDrag(area);
    desktop().keyboard().tap(Key::escape);
    EXPECT_TRUE(selection().waitUntilClosed());
    selection().release();
    EXPECT_TRUE(holdsFor(milliseconds{700}, [&] { return pastedText() == "before" && entries() == 1; }));
}

TEST_F(LiveAreaCaptureTest, TheApplicationInFrontStaysThereAndGetsNoKey) {
    startEditor(editors().front());
    start();
    desktop().keyboard().type("a");
    expectEditorText("a");
    capture();
    desktop().keyboard().type("b");
    desktop().keyboard().tap(Key::escape);
    ASSERT_TRUE(selection().waitUntilClosed());
    EXPECT_TRUE(desktop().waitUntilInFront(editor().pid()));
    desktop().keyboard().type("c");
    expectEditorText("ac");
}

TEST_F(LiveAreaCaptureTest, AssistiveTechnologiesGetTheCommandAndTheSize) {
    start();
    capture();
    const auto root = desktop().accessibility().application(agent().process().pid());
    ASSERT_TRUE(root);
    EXPECT_TRUE(desktop().accessibility().find(*root, [](const AccessibleNode& node) {
        return node.name == "Select an area to capture and copy. Esc to cancel." &&
               node.is(AccessibleNode::State::showing);
    }));
    desktop().keyboard().tap(Key::escape);
}

class LiveAreaCaptureInTest : public LiveAreaCaptureTest, public testing::WithParamInterface<const char*> {};

/// Pictures to look at, and a size label in each: it changes pixels below the area.
TEST_P(LiveAreaCaptureInTest, ShowsTheSizeAtTheAreasCorner) {
    start(GetParam());
    desktop().keyboard().movePointer(40, 400);
    capture();
    const std::string name = std::string(QUILLANE_SCREENSHOTS) + "/area-capture-" + GetParam();
    ASSERT_TRUE(desktop().takeScreenshot(name + "-hint.png"));
    selection().beginDrag({400, 300, 240, 160});
    ASSERT_TRUE(waitUntil([&] {
        if (!desktop().takeScreenshot(name + ".png")) {
            return false;
        }
        const QImage picture(QString::fromStdString(name + ".png"));
        bool white = false; // the label's text, below the corner under the pointer
        for (int y = 466; y < 486; ++y) {
            for (int x = 560; x < 640; ++x) {
                white = white || qGray(picture.pixel(x, y)) > 240;
            }
        }
        return white && picture.pixelColor(400, 300) == QColor(0xd0, 0x20, 0x30) &&
               picture.pixelColor(310, 250) != QColor(0xd0, 0x20, 0x30);
    }));
    desktop().keyboard().tap(Key::escape);
    selection().release();
}

INSTANTIATE_TEST_SUITE_P(Language, LiveAreaCaptureInTest, testing::Values("en", "he", "ar"),
                         [](const auto& parameter) { return std::string(parameter.param); });

} // namespace
} // namespace quillane::live
