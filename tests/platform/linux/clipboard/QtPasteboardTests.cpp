// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/clipboard/QtPasteboard.hpp"

#include "core/clipboard/PasteboardTypes.hpp"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <gtest/gtest.h>

#include <span>

namespace quillane {
namespace {

namespace types = core::pasteboardTypes;

class QtPasteboardTest : public ::testing::Test {
private:
    bool offscreen_ = qputenv("QT_QPA_PLATFORM", "offscreen");
    int argc_ = 1;
    std::string name_ = "tests";
    char* argv_ = name_.data();
    QGuiApplication application_{argc_, &argv_};

protected:
    static core::SharedBytes bytesOf(std::string_view text) {
        const auto bytes = std::as_bytes(std::span(text));
        return std::vector<std::byte>(bytes.begin(), bytes.end());
    }

    QtPasteboard pasteboard;
};

TEST_F(QtPasteboardTest, TextIsOfferedToOthersAndReadBack) {
    pasteboard.clear();
    ASSERT_TRUE(pasteboard.setString(types::string, "https://nas/קובץ"));
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), "https://nas/קובץ");
    EXPECT_EQ(pasteboard.string(types::string), "https://nas/קובץ");
    EXPECT_EQ(pasteboard.data(0, types::string), bytesOf("https://nas/קובץ"));
    EXPECT_EQ(pasteboard.itemTypes(), (std::vector<std::vector<std::string>>{{std::string(types::string)}}));
}

TEST_F(QtPasteboardTest, EveryFlavourIsOffered) {
    pasteboard.clear();
    ASSERT_TRUE(pasteboard.write({{{{std::string(types::string), bytesOf("one")},
                                    {std::string(types::html), bytesOf("<b>one</b>")},
                                    {std::string(types::png), bytesOf("\x89PNG")}},
                                   {}}}));
    const auto* offered = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(offered->text(), "one");
    EXPECT_EQ(offered->html(), "<b>one</b>");
    EXPECT_EQ(offered->data("image/png"), "\x89PNG");
}

TEST_F(QtPasteboardTest, WritingKeepsTheCountThatClearingMoved) {
    const auto before = pasteboard.changeCount();
    pasteboard.clear();
    const auto cleared = pasteboard.changeCount();
    EXPECT_GT(cleared, before);
    ASSERT_TRUE(pasteboard.setString(types::string, "text"));
    QCoreApplication::processEvents();
    EXPECT_EQ(pasteboard.changeCount(), cleared);
}

TEST_F(QtPasteboardTest, CopiesOfOthersMoveTheCountAndAreNotRead) {
    pasteboard.clear(); // without contents of its own, any owner is another
    const auto before = pasteboard.changeCount();
    QGuiApplication::clipboard()->setText("theirs");
    EXPECT_GT(pasteboard.changeCount(), before);
    EXPECT_TRUE(pasteboard.itemTypes().empty());
    EXPECT_EQ(pasteboard.string(types::string), std::nullopt);
}

TEST_F(QtPasteboardTest, NothingAndUnknownTypesCannotBeWritten) {
    pasteboard.clear();
    EXPECT_FALSE(pasteboard.write({}));
    EXPECT_FALSE(pasteboard.setString("com.example.unknown", "text"));
}

} // namespace
} // namespace quillane
