// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/HistoryPanelTest.hpp"
#include "support/FocusableNames.hpp"

#include "views/InterfaceLanguage.hpp"

#include <QDir>
#include <QLinearGradient>
#include <QPainter>

#include <fstream>

namespace quillane {
namespace {

/// Pictures of the panel to look at, and what can be measured on them.
class HistoryScreenshotsTest : public HistoryPanelTest {
protected:
    HistoryScreenshotsTest() : HistoryPanelTest(core::Desktop::linuxDesktop) {
        QFont font(QStringLiteral("Noto Sans"));
        font.setFamilies(
            {"Noto Sans", "Noto Sans Hebrew", "Noto Sans Arabic", "Noto Sans Symbols", "Noto Sans Symbols 2"});
        font.setPointSizeF(10);
        QApplication::setFont(font);
    }

    InterfaceLanguage interface { preferences };

    static std::string landscape() {
        QImage image(1280, 720, QImage::Format_RGB32);
        QLinearGradient sky(0, 0, 0, 720);
        sky.setColorAt(0, QColor(70, 120, 190));
        sky.setColorAt(0.6, QColor(240, 190, 150));
        sky.setColorAt(0.61, QColor(60, 90, 70));
        sky.setColorAt(1, QColor(30, 50, 45));
        QPainter painter(&image);
        painter.fillRect(image.rect(), sky);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(QColor(255, 230, 170));
        painter.setPen(Qt::NoPen);
        painter.drawEllipse(QPoint(900, 380), 70, 70);
        painter.end();
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "png");
        return bytes.toStdString();
    }

    void use(const std::string& bundleID, const std::string& name) {
        workspace.activate(workspace.open(bundleID, name));
    }

    void copyADay() {
        use("org.example.files", "Files");
        copyFiles({"file:///nowhere/old%20draft.odt"});
        copyFiles({files.url("Quarterly report 2026.pdf", "x").absoluteString(),
                   files.url("תקציב שנתי.xlsx", "x").absoluteString(), files.url("notes.txt", "x").absoluteString(),
                   files.url("more.txt", "x").absoluteString()});
        use("org.example.browser", "Firefox");
        copyText("https://example.org/articles/bidirectional-text?lang=he&page=2");
        use("org.example.notes", "Notes");
        copyText("مرحبًا بالعالم! هذا نص عربي يظهر من اليمين إلى اليسار حتى في واجهة إنجليزية، ويحتوي على كلمة Quillane "
                 "في وسطه.");
        use("org.example.mail", "Mail");
        copyText(
            "Please send the final version to Dana (דנה) before 17:00, together with the signed contract and the two "
            "annexes that we discussed on Tuesday.");
        copyImage(landscape());
        use("org.example.editor", "Text Editor");
        copyText("שָׁלוֹם רב, מצורף הקובץ report-v2.pdf לפי בקשתך.\nאפשר לחזור אליי עד יום חמישי בשעה 14:30.");
        copyText("+972-3-555-0134");
        manager.pin(manager.history().entries().back().id);
        settle();
    }

    /// A picture of the panel, saved under the name.
    QImage take(const QString& name) {
        load();
        const auto picture = window().grab();
        QImage rounded(picture.size(), QImage::Format_ARGB32_Premultiplied);
        rounded.fill(Qt::transparent);
        QPainter painter(&rounded);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(QBrush(picture));
        painter.setPen(Qt::NoPen);
        painter.drawRoundedRect(window().rect(), 12, 12);
        painter.end();
        EXPECT_TRUE(rounded.save(QDir(QStringLiteral(QUILLANE_SCREENSHOTS)).filePath(name + ".png")));
        return picture.toImage();
    }

    /// The panel of a history that is off and was set aside.
    void showNotices() {
        const auto aside = folder().string() + "-2026-11-22T014500Z";
        std::filesystem::create_directories(aside);
        std::ofstream(aside + "/index") << "damaged";
        auto options = manager.options();
        options.enabled = false;
        manager.setOptions(options);
        queue.advance(std::chrono::milliseconds(250));
        open();
    }

    void expectNothingCut() {
        for (const auto* label : window().findChildren<QLabel*>()) {
            if (!label->isVisible() || label->text().isEmpty()) {
                continue;
            }
            const int needed = label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height();
            EXPECT_GE(label->height(), needed) << label->text().toStdString();
        }
    }
};

/// Pixels that differ from the window's background.
int drawnPixels(const QImage& image) {
    const auto ground = image.pixelColor(image.width() / 2, 4);
    int drawn = 0;
    for (int y = 60; y < image.height() - 50; y += 2) {
        for (int x = 0; x < image.width(); x += 2) {
            drawn += image.pixelColor(x, y) != ground ? 1 : 0;
        }
    }
    return drawn;
}

TEST_F(HistoryScreenshotsTest, InAllLanguagesLightAndDark) {
    for (const bool dark : {false, true}) {
        useDark(dark);
        for (const auto language : core::allLanguages) {
            preferences.choose(language);
            manager.clear(core::ClipboardHistory::Clearing::includePins);
            const auto name = [&](const char* what) {
                return QStringLiteral("history-%1-%2-%3")
                    .arg(QLatin1String(what), QString::fromLatin1(core::languageID(language).data(), 2),
                         QLatin1String(dark ? "dark" : "light"));
            };
            open();
            EXPECT_GT(drawnPixels(take(name("empty"))), 300);
            expectNothingCut();
            fakes::expectNamedFocusables(window());
            panel.close();
            copyADay();
            open();
            EXPECT_GT(drawnPixels(take(name("entries"))), 5000);
            expectNothingCut();
            fakes::expectNamedFocusables(window());
            list().scrollToBottom();
            EXPECT_GT(drawnPixels(take(name("more"))), 3000);
            QTest::keyClicks(&field(), "re");
            EXPECT_GT(drawnPixels(take(name("found"))), 3000);
            field().setText(QStringLiteral("שלום"));
            EXPECT_GT(drawnPixels(take(name("pointed"))), 1000);
            panel.retyped = [](const std::string&) { return std::optional<std::string>("שלום"); };
            field().setText(QStringLiteral("akuo"));
            EXPECT_GT(drawnPixels(take(name("retyped"))), 1000);
            expectNothingCut();
            panel.retyped = nullptr;
            field().setText(QStringLiteral("אין כזה"));
            EXPECT_GT(drawnPixels(take(name("nothing"))), 300);
            field().clear();
            settle();
            auto& preview = find<QWidget>("preview");
            for (const int row : {1, 2, 3}) {
                emit list().entered(list().model()->index(row, 0));
                queue.advance(std::chrono::milliseconds(700));
                load();
                ASSERT_TRUE(preview.isVisible()) << row;
                EXPECT_TRUE(preview.grab().save(QDir(QStringLiteral(QUILLANE_SCREENSHOTS))
                                                    .filePath(name("preview") + QString::number(row) + ".png")));
            }
            find<QToolButton>("help").click();
            settle();
            EXPECT_TRUE(find<QLabel>("helpCard")
                            .grab()
                            .save(QDir(QStringLiteral(QUILLANE_SCREENSHOTS)).filePath(name("help") + ".png")));
            emit list().customContextMenuRequested(list().visualRect(list().model()->index(1, 0)).center());
            settle();
            auto& menu = find<QMenu>("rowMenu");
            EXPECT_EQ(menu.layoutDirection(), core::isRTL(language) ? Qt::RightToLeft : Qt::LeftToRight);
            EXPECT_TRUE(menu.grab().save(QDir(QStringLiteral(QUILLANE_SCREENSHOTS)).filePath(name("menu") + ".png")));
            menu.close();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            panel.close();
            showNotices();
            EXPECT_GT(drawnPixels(take(name("notices"))), 5000);
            expectNothingCut();
            panel.turnRecordingOn();
            panel.close();
        }
    }
}

} // namespace
} // namespace quillane
