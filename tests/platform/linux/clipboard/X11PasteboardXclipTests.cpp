// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/clipboard/X11PasteboardTest.hpp"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

namespace quillane {
namespace {

// With the usual command-line client

class XclipTest : public X11PasteboardTest {
protected:
    ~XclipTest() override {
        copying_.kill();
        copying_.waitForFinished();
    }

    void copyWithXclip(const QString& target, const std::string& bytes) {
        if (copying_.state() != QProcess::NotRunning) {
            const auto before = pasteboard_.changeCount();
            copying_.kill();
            copying_.waitForFinished();
            ASSERT_TRUE(waitUntil([&] { return pasteboard_.changeCount() > before; })); // it has gone
        }
        QFile file(folder_.filePath("contents"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes.data(), static_cast<qint64>(bytes.size()));
        file.close();
        const auto before = notices_;
        copying_.start("xclip", {"-quiet", "-selection", "clipboard", "-t", target, "-i", file.fileName()});
        ASSERT_TRUE(copying_.waitForStarted());
        waitForContents(before);
    }

    std::string pasteWithXclip(const QString& target) {
        QProcess pasting;
        pasting.start("xclip", {"-selection", "clipboard", "-t", target, "-o"});
        EXPECT_TRUE(waitUntil([&] { return pasting.state() == QProcess::NotRunning; }, std::chrono::seconds(20)));
        return pasting.readAllStandardOutput().toStdString();
    }

    QTemporaryDir folder_;
    QProcess copying_;
};

TEST_F(XclipTest, CopiesAreCaptured) {
    copyWithXclip("UTF8_STRING", "שלום");
    EXPECT_EQ(capturedText(), "שלום");
    copyWithXclip("text/html", "<b>x</b>");
    EXPECT_EQ(capturedBytes(), "<b>x</b>");
    const auto png = noise(15 * mega);
    copyWithXclip("image/png", png);
    EXPECT_EQ(capturedBytes(), png);
    copyWithXclip("text/uri-list", "file:///tmp/a\r\nfile:///tmp/b\r\n");
    EXPECT_EQ(capturedText(), "a\nb");
    copyWithXclip("image/png", noise(25 * mega));
    EXPECT_FALSE(capture());
}

TEST_F(XclipTest, RestoredContentsArePasted) {
    const auto png = noise(15 * mega);
    restored(entryOf(core::ClipboardKind::image, {{{"public.png", bytesOf(png)}}}));
    EXPECT_EQ(pasteWithXclip("image/png"), png);
    restored(entryOf(core::ClipboardKind::text,
                     {{{"public.utf8-plain-text", bytesOf("שלום")}, {"public.html", bytesOf("<b/>")}}}));
    EXPECT_EQ(pasteWithXclip("UTF8_STRING"), "שלום");
    EXPECT_EQ(pasteWithXclip("text/html"), "<b/>");
    EXPECT_THAT(pasteWithXclip("TARGETS"), ::testing::HasSubstr("text/plain;charset=utf-8"));
}

} // namespace
} // namespace quillane
