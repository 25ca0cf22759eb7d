// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/panel/HistoryPanel.hpp"
#include "core/clipboard/PasteboardTypes.hpp"
#include "core/localization/Texts.hpp"
#include "fakes/FakeClipboardHistory.hpp"
#include "support/OffscreenApplication.hpp"

#ifdef QUILLANE_LINE_ART
#include "platform/linux/shell/LineArtSymbols.hpp"
#include "platform/linux/shell/LinuxWindowTraits.hpp"
#endif

#include <QApplication>
#include <QBuffer>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPalette>
#include <QTest>
#include <QToolButton>

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>

namespace quillane {

/// The window over the real model and manager, with the desktop faked and drawn off the screen.
class HistoryPanelTest : public ::testing::Test, protected fakes::FakeClipboardHistory {
protected:
    explicit HistoryPanelTest(core::Desktop desktop = core::Desktop::macOS) : FakeClipboardHistory(desktop) {
        preferences.choose(core::AppLanguage::english);
        workspace.activate(workspace.open("com.example.editor", "Editor"));
        manager.start();
        auto options = manager.options();
        options.enabled = true;
        options.limit = 1000;
        manager.setOptions(options);
        settle();
    }

    ~HistoryPanelTest() override { useDark(false); }

    HistoryPanel& window() {
        if (!window_) {
            window_ = std::make_unique<HistoryPanel>(services());
        }
        return *window_;
    }

    [[nodiscard]] HistoryPanelServices services() {
        return {.platform = platform,
                .panel = panel,
                .preferences = preferences,
                .symbol =
                    []([[maybe_unused]] const std::string& name, [[maybe_unused]] const QColor& color) {
#ifdef QUILLANE_LINE_ART
                        auto icon = symbolIcon(name, color);
                        EXPECT_FALSE(icon.isNull()) << name;
                        return icon;
#else
                        return QIcon();
#endif
                    },
                .openSettings = [this] { ++settingsOpened; }};
    }

    /// Runs everything that was posted and lays out the window.
    void settle() {
        for (int round = 0; round < 5; ++round) {
            queue.runPosted();
            vaultQueue.wait();
            QApplication::processEvents();
        }
    }

    /// Pictures and files exist too.
    void load() {
        for (int round = 0; round < 3; ++round) {
            settle();
            imageQueue.wait();
            fileQueue.wait();
        }
        settle();
    }

    void open() {
        window();
        panel.show(workspace.frontmostApplication());
        settle();
    }

    // What another application copies

    void copied() {
        queue.advance(std::chrono::milliseconds(500));
        settle();
    }

    void copyText(const std::string& text) {
        pasteboard.copyText(text);
        copied();
    }

    void copyThree() {
        copyText("first");
        copyText("second");
        copyText("third");
    }

    static std::string png(QSize size, const QColor& color = Qt::darkCyan) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(color);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "png");
        return bytes.toStdString();
    }

    void copyImage(const std::string& bytes, std::string_view type = core::pasteboardTypes::png) {
        pasteboard.copy({{{{std::string(type), bytes}}, {}}});
        copied();
    }

    void copyFiles(const std::vector<std::string>& urls) {
        std::vector<fakes::FakePasteboard::Item> items;
        items.reserve(urls.size());
        for (const auto& url : urls) {
            items.push_back({{{std::string(core::pasteboardTypes::fileUrl), url}}, {}});
        }
        pasteboard.copy(std::move(items));
        copied();
    }

    // What is seen

    template <typename Widget>
    [[nodiscard]] Widget& find(const char* name) {
        auto* found = window().template findChild<Widget*>(QLatin1String(name));
        if (found == nullptr) {
            throw std::logic_error(std::string("no widget ") + name);
        }
        return *found;
    }

    [[nodiscard]] QListView& list() {
        return find<QListView>("list");
    }

    [[nodiscard]] QLineEdit& field() {
        return find<QLineEdit>("search");
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&field(), key, modifiers);
        settle();
    }

    QMenu& openMenu(int row) {
        emit list().customContextMenuRequested(list().visualRect(list().model()->index(row, 0)).center());
        settle();
        return find<QMenu>("rowMenu");
    }

    [[nodiscard]] int rows() {
        return list().model()->rowCount();
    }

    [[nodiscard]] QString nameOfRow(int row) {
        return list().model()->index(row, 0).data(Qt::AccessibleTextRole).toString();
    }

    [[nodiscard]] static const ClipboardRow& delegateOf(QListView& list) {
        return *qobject_cast<const ClipboardRow*>(list.itemDelegate());
    }

    [[nodiscard]] std::string pasted() const {
        return pasteboard.string(core::pasteboardTypes::string).value_or(std::string());
    }

    static void useDark(bool dark) {
        QPalette palette;
        palette.setColor(QPalette::Window, dark ? QColor(30, 31, 34) : QColor(240, 240, 240));
        palette.setColor(QPalette::WindowText, dark ? Qt::white : Qt::black);
        QApplication::setPalette(palette);
        QApplication::processEvents();
    }

private:
    fakes::OffscreenApplication application_;

protected:
    core::AppPreferences preferences{userDefaults};
    int settingsOpened = 0;

private:
    std::unique_ptr<HistoryPanel> window_;
};

} // namespace quillane
