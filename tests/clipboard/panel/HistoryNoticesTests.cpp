// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/HistoryPanelTest.hpp"
#include "views/WrappingLabel.hpp"

#include <filesystem>
#include <fstream>

namespace quillane {
namespace {

/// The rows above the list.
using HistoryNoticesTest = HistoryPanelTest;

TEST_F(HistoryNoticesTest, SaysThatRecordingIsOffAndTurnsItOn) {
    copyText("kept");
    auto options = manager.options();
    options.enabled = false;
    manager.setOptions(options);
    open();
    EXPECT_EQ(rows(), 1);
    auto& row = find<QWidget>("recordingOff");
    auto& button = find<QToolButton>("recordingOffButton");
    EXPECT_TRUE(row.isVisible());
    EXPECT_EQ(find<QLabel>("recordingOffText").text(),
              "Recording is off. What was recorded earlier can still be pasted.");
    EXPECT_EQ(button.text(), "Turn on");
    button.setFocus();
    QTest::keyClick(&button, Qt::Key_Return);
    settle();
    EXPECT_TRUE(manager.options().enabled);
    EXPECT_FALSE(row.isVisible());
    EXPECT_TRUE(window().isVisible());
    EXPECT_TRUE(field().hasFocus());
}

TEST_F(HistoryNoticesTest, WithNothingKeptAndRecordingOffItPromisesNoCopy) {
    auto options = manager.options();
    options.enabled = false;
    manager.setOptions(options);
    open();
    EXPECT_EQ(find<QLabel>("emptyTitle").text(), "Clipboard history is off");
    find<QToolButton>("recordingOffButton").click();
    settle();
    EXPECT_EQ(find<QLabel>("emptyTitle").text(), "Your next copy will appear here");
}

TEST_F(HistoryNoticesTest, SaysWhatElseWasSearchedForAndMarksIt) {
    copyText("שלום");
    copyText("akuo");
    panel.retyped = [](const std::string& query) {
        return query == "akuo" ? std::optional<std::string>("שלום") : std::nullopt;
    };
    open();
    auto& line = find<QLabel>("retypedQuery");
    EXPECT_FALSE(line.isVisible());
    QTest::keyClicks(&field(), "akuo");
    settle();
    EXPECT_TRUE(line.isVisible());
    EXPECT_EQ(line.text(), "Also searched for שלום");
    ASSERT_EQ(rows(), 2);
    const auto& entries = *qobject_cast<const ClipboardListModel*>(list().model());
    EXPECT_EQ(entries.query(0).terms(), core::SearchQuery("akuo").terms());
    EXPECT_EQ(entries.query(1).terms(), core::SearchQuery("שלום").terms());
    press(Qt::Key_Backspace);
    EXPECT_FALSE(line.isVisible());
}

TEST_F(HistoryNoticesTest, LongQueryStaysInItsLine) {
    copyText("שלום");
    panel.retyped = [](const std::string&) { return std::optional("שלום" + std::string(400, ' ')); };
    open();
    QTest::keyClicks(&field(), "akuo");
    settle();
    EXPECT_LE(find<QLabel>("retypedQuery").text().size(), 70);
}

TEST_F(HistoryNoticesTest, SaysWhatHappenedToTheSavedHistoryAndOpensItsSettings) {
    copyText("kept");
    open();
    auto& notice = find<QWidget>("notice");
    EXPECT_FALSE(notice.isVisible());
    std::filesystem::create_directories(folder().string() + "-2026-11-22T014500Z");
    std::ofstream(folder().string() + "-2026-11-22T014500Z/index") << "damaged";
    manager.clear(core::ClipboardHistory::Clearing::keepPins); // looks at the disk
    queue.advance(std::chrono::milliseconds(250));
    settle();
    EXPECT_TRUE(notice.isVisible());
    EXPECT_EQ(find<QLabel>("noticeText").text(),
              "The saved history could not be read. It was set aside and can be recovered in Settings.");
    find<QToolButton>("noticeButton").click();
    EXPECT_FALSE(panel.isVisible());
    EXPECT_EQ(settingsOpened, 1);
}

TEST_F(HistoryNoticesTest, EveryLabelThatWrapsBeginsItsLinesFlush) {
    open();
    int wrapping = 0;
    for (const auto* label : window().findChildren<QLabel*>()) {
        // Qt lays out marked-up text itself, without the spaces at the ends of lines.
        if (label->wordWrap() && label->textFormat() == Qt::PlainText) {
            ++wrapping;
            EXPECT_NE(dynamic_cast<const WrappingLabel*>(label), nullptr) << label->objectName().toStdString();
        }
    }
    EXPECT_GE(wrapping, 2);
}

} // namespace
} // namespace quillane
