// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/PasteboardTypes.hpp"
#include "fakes/FakeDesktop.hpp"
#include "fileshare/FileShareService.hpp"
#include "support/OffscreenApplication.hpp"
#include "support/TemporaryFolder.hpp"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

#include <gtest/gtest.h>

namespace quillane {

/// Sharing files with everything around it faked; windows are drawn offscreen.
class FileShareTest : public ::testing::Test {
protected:
    FileShareTest() {
        preferences_.choose(core::AppLanguage::english);
        core::FileShareServer::validating("https://files.example:8443/up")->save(defaults_);
    }

    /// The transfer of the upload that was started last.
    [[nodiscard]] fakes::FakeUrlSessions::Transfer& transfer() const { return sessions_.last(); }

    void answerWithLink() {
        transfer().receive("https://files.example:8443/up/abc/file.txt\n");
        transfer().complete(core::UrlResponse{201});
    }

    /// Destroys closed windows.
    static void runDeferred() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    /// Sets the appearance of the desktop.
    static void useDark(bool dark) {
        QPalette palette;
        palette.setColor(QPalette::Window, dark ? QColor(30, 31, 34) : QColor(240, 240, 240));
        palette.setColor(QPalette::WindowText, dark ? Qt::white : Qt::black);
        QApplication::setPalette(palette);
        QApplication::processEvents();
    }

    [[nodiscard]] std::optional<std::string> copiedText() const {
        return pasteboard_.string(core::pasteboardTypes::string);
    }

private:
    /// The drawing of the program's own resources, as Linux shows it.
    static QIcon lineArt(const std::string& name, const QColor& color) {
        QSvgRenderer renderer(QString::fromStdString(std::string(QUILLANE_RESOURCES) + "/symbols/" + name + ".svg"));
        EXPECT_TRUE(renderer.isValid()) << name;
        QPixmap pixmap(96, 96);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        renderer.render(&painter);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(pixmap.rect(), color);
        return QIcon(pixmap);
    }

    fakes::OffscreenApplication application_;

protected:
    live::TemporaryFolder files_;
    fakes::FakeDesktop desktop_;
    fakes::FakeUserDefaults& defaults_ = desktop_.userDefaults;
    core::AppPreferences preferences_{defaults_};
    fakes::FakePasteboard& pasteboard_ = desktop_.pasteboard;
    fakes::FakeFilePanel& panel_ = desktop_.filePanel;
    fakes::FakeWindowTraits& windowTraits_ = desktop_.windowTraits;
    fakes::FakeUrlSessions& sessions_ = desktop_.urlSessions;
    fakes::FakeFileExaminer& disk_ = desktop_.fileExaminer;
    int serverSettingsShown_ = 0;
    std::chrono::steady_clock::time_point now_;
    std::vector<std::string> symbols_; ///< names that were drawn
    FileShareServices services_{.platform = desktop_.platform,
                                .preferences = preferences_,
                                .examiner = disk_.examiner(),
                                .chooseServer = [this] { ++serverSettingsShown_; },
                                .symbol =
                                    [this](const std::string& name, const QColor& color) {
                                        symbols_.push_back(name);
                                        return lineArt(name, color);
                                    },
                                .now = [this] { return now_; }};
    core::Url file_ = files_.url("file.txt", std::string(1000, 'x'));
};

} // namespace quillane
