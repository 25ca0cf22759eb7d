// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/PasteboardTypes.hpp"
#include "fakes/FakeFileExaminer.hpp"
#include "fakes/FakeFilePanel.hpp"
#include "fakes/FakePasteboard.hpp"
#include "fakes/FakeUrlSession.hpp"
#include "fakes/FakeUserDefaults.hpp"
#include "fakes/FakeWindowTraits.hpp"
#include "fileshare/FileShareService.hpp"
#include "support/OffscreenApplication.hpp"
#include "support/TemporaryFiles.hpp"

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
    fakes::TemporaryFiles files_;
    fakes::FakeUserDefaults defaults_;
    core::AppPreferences preferences_{defaults_};
    fakes::FakePasteboard pasteboard_;
    fakes::FakeFilePanel panel_;
    fakes::FakeWindowTraits windowTraits_;
    fakes::FakeUrlSessions sessions_;
    fakes::FakeFileExaminer disk_;
    int serverSettingsShown_ = 0;
    std::chrono::steady_clock::time_point now_;
    std::vector<std::string> symbols_; ///< names that were drawn
    FileShareServices services_{.userDefaults = defaults_,
                                .preferences = preferences_,
                                .pasteboard = pasteboard_,
                                .filePanel = panel_,
                                .windowTraits = windowTraits_,
                                .sessions = sessions_.factory(),
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
