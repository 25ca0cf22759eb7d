// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fileshare/FileShareWindow.hpp"

#include "core/localization/Texts.hpp"
#include "fileshare/FileShareTest.hpp"
#include "support/Contrast.hpp"
#include "support/FocusableNames.hpp"
#include "views/Colors.hpp"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTextDocument>
#include <QToolButton>
#include <QUrl>

#include <cstdio>
#include <filesystem>

namespace quillane {
namespace {

using core::AppLanguage;

class FileShareWindowTest : public FileShareTest {
protected:
    FileShareWindow& open() {
        service_.show(file_);
        return *service_.windows().back();
    }

    [[nodiscard]] static QString text(const FileShareWindow& window, const char* name) {
        const auto* label = window.findChild<QLabel*>(QLatin1String(name));
        return label->isVisibleTo(&window) ? label->text() : QStringLiteral("hidden");
    }

    [[nodiscard]] static QPushButton& button(const FileShareWindow& window, const char* name) {
        return *window.findChild<QPushButton*>(QLatin1String(name));
    }

    /// The names of the buttons that are shown, in no particular order.
    [[nodiscard]] static std::set<std::string> buttons(const FileShareWindow& window) {
        std::set<std::string> names;
        for (const auto* button : window.findChildren<QPushButton*>()) {
            if (button->isVisibleTo(&window)) {
                names.insert(button->objectName().toStdString());
            }
        }
        return names;
    }

    ~FileShareWindowTest() override { useDark(false); }

    /// Draws the window in every language, light and dark, into files to look at. Checks that no text is cut off, that
    /// every button is legible, and that everything that takes the focus has a name.
    void expectFits(FileShareWindow& window, const std::string& name) {
        for (const bool dark : {true, false}) {
            useDark(dark);
            for (const auto language : core::allLanguages) {
                preferences_.choose(language);
                QCoreApplication::processEvents();
                expectFitsNow(window, name + '-' + std::string(languageID(language)) + (dark ? "-dark" : ""));
            }
        }
        preferences_.choose(AppLanguage::english);
    }

    static void expectFitsNow(FileShareWindow& window, const std::string& name) {
        const auto picture = window.grab();
        EXPECT_EQ(picture.size() / picture.devicePixelRatio(), QSize(530, 350));
        EXPECT_TRUE(
            picture.save(QString::fromStdString(std::string(QUILLANE_SCREENSHOTS) + "/share-" + name + ".png")));
        fakes::expectNamedFocusables(window);
        for (const auto* label : window.findChildren<QLabel*>()) {
            if (label->isVisibleTo(&window) && !label->text().isEmpty()) {
                EXPECT_GE(label->height(), label->heightForWidth(label->width()))
                    << name << ' ' << label->text().toStdString();
                EXPECT_TRUE(window.rect().contains(QRect(label->mapTo(&window, QPoint()), label->size())));
            }
        }
        for (auto* each : window.findChildren<QPushButton*>()) {
            if (each->isVisibleTo(&window)) {
                EXPECT_GE(each->width(), each->minimumSizeHint().width()) << each->text().toStdString();
                EXPECT_TRUE(window.rect().contains(QRect(each->mapTo(&window, QPoint()), each->size())));
                EXPECT_GE(fakes::textContrast(*each), 4.5) << name << ' ' << each->text().toStdString();
            }
        }
    }

    /// The text that a reader (zbarimg) decodes from a picture of the window.
    [[nodiscard]] std::string readQrCode(FileShareWindow& window) const {
        const auto picture = files_.path() / "window.png";
        EXPECT_TRUE(window.grab().save(QString::fromStdString(picture)));
        auto* reader = ::popen(("zbarimg --quiet --raw --nodbus '" + picture.string() + "' 2>&1").c_str(), "r");
        std::string seen;
        for (int c = 0; reader != nullptr && (c = std::fgetc(reader)) != EOF;) {
            seen += static_cast<char>(c);
        }
        EXPECT_EQ(reader != nullptr ? ::pclose(reader) : -1, 0) << seen;
        return seen;
    }

    FileShareService service_{services_};
};

TEST_F(FileShareWindowTest, ShowsTheUpload) {
    auto& window = open();
    EXPECT_EQ(window.windowTitle(), "Quillane Share");
    EXPECT_EQ(text(window, "fileName"), "file.txt");
    EXPECT_EQ(text(window, "detail"), "Uploading file…");
    EXPECT_EQ(text(window, "note"),
              "The file is uploaded to files.example:8443/up. Anyone with the link can download it.");
    EXPECT_EQ(buttons(window), std::set<std::string>{"cancel"});
    EXPECT_EQ(symbols_.back(), "icloud.and.arrow.up");
    transfer().send(379, 1000);
    EXPECT_EQ(text(window, "percentage"), "37%");
    EXPECT_EQ(window.findChild<QProgressBar*>()->value(), 379);
    expectFits(window, "uploading");
    transfer().send(1000, 1000);
    EXPECT_EQ(text(window, "detail"), "Waiting for the download link…");
    expectFits(window, "waiting");
}

TEST_F(FileShareWindowTest, ShowsSpeedAndTimeLeft) {
    using namespace std::chrono_literals;
    file_ = files_.url("film.mov", std::string(1000000, 'x'));
    auto& window = open();
    transfer().send(0, 1000000);
    EXPECT_EQ(text(window, "rate"), "");
    now_ += 2s;
    transfer().send(100000, 1000000);
    EXPECT_EQ(text(window, "rate"), "50 kB/s · 0:18 left");
    expectFits(window, "speed");
    transfer().send(1000000, 1000000);
    EXPECT_EQ(text(window, "rate"), "");
}

TEST_F(FileShareWindowTest, AStepOfTheProgressDrawsTheWindowOnce) {
    class Drawings : public QObject {
    public:
        int count = 0;

    protected:
        bool eventFilter(QObject*, QEvent* event) override {
            count += event->type() == QEvent::UpdateRequest ? 1 : 0;
            return false;
        }
    };

    auto& window = open();
    transfer().send(0, 1000);
    QTest::qWait(50);
    Drawings drawings;
    window.installEventFilter(&drawings);
    for (int step = 1; step < 9; ++step) {
        now_ += std::chrono::seconds(1);
        transfer().send(step * 100, 1000);
        QCoreApplication::processEvents();
        EXPECT_EQ(drawings.count, step);
    }
}

TEST_F(FileShareWindowTest, ALongNameIsCutInItsMiddleAndHelpHasThePath) {
    const auto name = std::string(100, 'a') + "ש" + std::string(100, 'b') + ".txt";
    service_.show(files_.url(name));
    auto& window = *service_.windows().back();
    EXPECT_TRUE(text(window, "fileName").contains(QStringLiteral("…")));
    EXPECT_TRUE(text(window, "fileName").endsWith(QStringLiteral(".txt")));
    EXPECT_TRUE(window.findChild<QLabel*>("fileName")->toolTip().endsWith(QString::fromStdString(name)));
    expectFits(window, "long-name");
}

TEST_F(FileShareWindowTest, HelpShowsANameWithMarkupAsItIs) {
    service_.show(files_.url("<b>&lt; R&D.txt"));
    const auto path = QString::fromStdString(files_.path() / "<b>&lt; R&D.txt");
    const auto* name = service_.windows().back()->findChild<QLabel*>("fileName");
    QTextDocument shown;
    ASSERT_TRUE(Qt::mightBeRichText(name->toolTip())); // else it is shown as it is
    shown.setHtml(name->toolTip());
    EXPECT_EQ(shown.toPlainText(), path);
    EXPECT_EQ(name->accessibleDescription(), path);

    service_.show(files_.url("R&D #1.txt"));
    const auto* plain = service_.windows().back()->findChild<QLabel*>("fileName");
    ASSERT_FALSE(Qt::mightBeRichText(plain->toolTip()));
    EXPECT_EQ(plain->toolTip(), QString::fromStdString(files_.path() / "R&D #1.txt"));
}

TEST_F(FileShareWindowTest, FollowsTheAppearanceWhileItIsOpen) {
    using core::Appearance;
    auto& window = open();
    answerWithLink();
    const auto background = [&] { return window.grab().toImage().pixelColor(3, 3); };
    const auto text = [&] { return window.findChild<QLabel*>("title")->palette().color(QPalette::WindowText); };
    const auto symbol = [&] { return window.findChild<QLabel*>("symbol")->pixmap().toImage(); };
    EXPECT_EQ(background(), qColor(core::brandPalette::shades(Appearance::light).window));
    EXPECT_EQ(text(), qColor(core::brandPalette::primary(Appearance::light)));
    const auto lightSymbol = symbol();
    useDark(true);
    EXPECT_EQ(background(), qColor(core::brandPalette::shades(Appearance::dark).window));
    EXPECT_EQ(text(), qColor(core::brandPalette::primary(Appearance::dark)));
    EXPECT_NE(symbol(), lightSymbol);
    useDark(false);
    EXPECT_EQ(background(), qColor(core::brandPalette::shades(Appearance::light).window));
    EXPECT_EQ(symbol(), lightSymbol);
}

TEST_F(FileShareWindowTest, ShowsTheLink) {
    auto& window = open();
    answerWithLink();
    EXPECT_EQ(text(window, "title"), "Your file is ready to share");
    EXPECT_EQ(text(window, "linkLabel"), "Download link");
    const auto* link = window.findChild<QLineEdit*>("link");
    EXPECT_EQ(link->text(), "https://files.example:8443/up/abc/file.txt");
    EXPECT_TRUE(link->isReadOnly());
    EXPECT_EQ(buttons(window), (std::set<std::string>{"close", "copy", "copyAndClose"}));
    EXPECT_EQ(symbols_.back(), "checkmark.circle.fill");
    EXPECT_EQ(button(window, "copy").text(), "Copy link");
    expectFits(window, "completed");
    button(window, "copy").click();
    EXPECT_EQ(button(window, "copy").text(), "Link copied");
    EXPECT_EQ(copiedText(), "https://files.example:8443/up/abc/file.txt");
    expectFits(window, "copied");
}

TEST_F(FileShareWindowTest, TheLinkIsShownAsAQrCodeThatReadersUnderstand) {
    auto& window = open();
    auto& toggle = *window.findChild<QToolButton*>("qrButton");
    auto& code = *window.findChild<QWidget*>("qrCode");
    EXPECT_FALSE(toggle.isVisibleTo(&window));
    answerWithLink();
    EXPECT_TRUE(toggle.isVisibleTo(&window));
    EXPECT_FALSE(code.isVisibleTo(&window));
    EXPECT_EQ(toggle.toolTip(), "Show QR code");
    EXPECT_EQ(toggle.accessibleName(), "Show QR code");
    toggle.click();
    EXPECT_TRUE(code.isVisibleTo(&window));
    EXPECT_EQ(toggle.toolTip(), "Hide QR code");
    EXPECT_EQ(code.accessibleName(), "QR code of the link");
    expectFits(window, "qr");
    EXPECT_EQ(readQrCode(window), "https://files.example:8443/up/abc/file.txt\n");
    toggle.click();
    EXPECT_FALSE(code.isVisibleTo(&window));
    EXPECT_EQ(text(window, "title"), "Your file is ready to share");
}

TEST_F(FileShareWindowTest, ALongLinkStillHasACodeAndOneThatIsTooLongHasNone) {
    for (const std::size_t length : {400U, 480U}) {
        auto& window = open();
        const std::string link = "https://files.example:8443/up/abc/" + std::string(length, 'x');
        transfer().receive(link);
        transfer().complete(core::UrlResponse{201});
        auto& toggle = *window.findChild<QToolButton*>("qrButton");
        EXPECT_EQ(toggle.isVisibleTo(&window), length == 400);
        if (length == 400) {
            toggle.click();
            expectFits(window, "qr-long");
            EXPECT_EQ(readQrCode(window), link + '\n');
        }
        EXPECT_EQ(window.findChild<QLineEdit*>("link")->text().toStdString(), link);
    }
}

TEST_F(FileShareWindowTest, TheLinkRunsLeftToRightInEveryLanguage) {
    auto& window = open();
    answerWithLink();
    for (const auto language : core::allLanguages) {
        preferences_.choose(language);
        EXPECT_EQ(window.findChild<QLineEdit*>("link")->layoutDirection(), Qt::LeftToRight);
        EXPECT_EQ(window.findChild<QLabel*>("title")->layoutDirection(),
                  isRTL(language) ? Qt::RightToLeft : Qt::LeftToRight);
    }
}

TEST_F(FileShareWindowTest, ReturnCopiesAndClosesOnceThereIsALink) {
    auto& window = open();
    window.activateWindow();
    QTest::keyClick(&window, Qt::Key_Return);
    EXPECT_TRUE(window.isVisible());
    answerWithLink();
    QCoreApplication::processEvents();
    EXPECT_TRUE(button(window, "copyAndClose").isDefault());
    QTest::keyClick(&window, Qt::Key_Return);
    EXPECT_EQ(copiedText(), "https://files.example:8443/up/abc/file.txt");
    EXPECT_TRUE(service_.windows().empty());
}

TEST_F(FileShareWindowTest, CopyAndCloseKeepsALinkThatTheClipboardRefuses) {
    auto& window = open();
    answerWithLink();
    pasteboard_.refuseWrites();
    button(window, "copyAndClose").click();
    EXPECT_EQ(service_.windows(), std::vector{&window});
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(button(window, "copy").text(), "Copy link");
    EXPECT_EQ(window.findChild<QLineEdit*>("link")->text(), "https://files.example:8443/up/abc/file.txt");
}

TEST_F(FileShareWindowTest, ShowsAFailureAndTriesAgainWithTheServerSavedThen) {
    auto& window = open();
    transfer().complete(core::UrlResponse{500});
    EXPECT_EQ(text(window, "title"), "Upload did not complete");
    EXPECT_EQ(text(window, "detail"), "Upload failed. The server returned status 500.");
    EXPECT_EQ(buttons(window), (std::set<std::string>{"close", "tryAgain"}));
    EXPECT_EQ(symbols_.back(), "exclamationmark.circle");
    expectFits(window, "failed");
    core::FileShareServer::validating("http://nas")->save(defaults_);
    button(window, "tryAgain").click();
    EXPECT_EQ(text(window, "detail"), "Uploading file…");
    EXPECT_EQ(text(window, "note"), "The file is uploaded to nas. Anyone with the link can download it.");
    EXPECT_EQ(transfer().request->url.absoluteString(), "http://nas/file.txt");
}

TEST_F(FileShareWindowTest, ShowsThatItWasCancelled) {
    auto& window = open();
    transfer().send(500, 1000);
    button(window, "cancel").click();
    EXPECT_EQ(text(window, "title"), "Upload cancelled");
    EXPECT_EQ(text(window, "detail"), "hidden");
    EXPECT_EQ(buttons(window), (std::set<std::string>{"close", "tryAgain"}));
    EXPECT_EQ(symbols_.back(), "xmark.circle");
    expectFits(window, "cancelled");
    button(window, "tryAgain").click();
    EXPECT_EQ(text(window, "percentage"), "0%");
}

TEST_F(FileShareWindowTest, ServerNamesAreTextAndNoMarkup) {
    core::FileShareServer::validating("https://files.example/%3Cb%3Ex")->save(defaults_);
    auto& window = open();
    EXPECT_EQ(window.findChild<QLabel*>("note")->textFormat(), Qt::PlainText);
    EXPECT_TRUE(text(window, "note").contains("files.example/<b>x"));
}

TEST_F(FileShareWindowTest, ClosingCancelsAndForgetsTheWindow) {
    auto& window = open();
    window.close();
    EXPECT_TRUE(transfer().destroyed);
    EXPECT_TRUE(service_.windows().empty());
    runDeferred();
}

TEST_F(FileShareWindowTest, TwoWindowsAreIndependent) {
    auto& first = open();
    auto& second = open();
    ASSERT_EQ(sessions_.transfers.size(), 2U);
    first.close();
    EXPECT_TRUE(sessions_.transfers[0]->destroyed);
    EXPECT_FALSE(sessions_.transfers[1]->destroyed);
    runDeferred();
    answerWithLink();
    EXPECT_EQ(text(second, "title"), "Your file is ready to share");
    EXPECT_EQ(service_.windows(), std::vector{&second});
}

TEST_F(FileShareWindowTest, WithoutAServerTheWindowLeadsToTheSettings) {
    core::FileShareServer::standard().save(defaults_);
    auto& window = open();
    EXPECT_EQ(text(window, "title"), "Upload did not complete");
    EXPECT_EQ(text(window, "detail"), "Choose a server first");
    EXPECT_EQ(buttons(window), (std::set<std::string>{"chooseServer", "close", "tryAgain"}));
    expectFits(window, "no-server");
    button(window, "chooseServer").click();
    EXPECT_EQ(serverSettingsShown_, 1);
    EXPECT_TRUE(sessions_.transfers.empty());
    core::FileShareServer::validating("http://nas")->save(defaults_);
    button(window, "tryAgain").click();
    EXPECT_EQ(text(window, "detail"), "Uploading file…");
    EXPECT_EQ(buttons(window), std::set<std::string>{"cancel"});
}

TEST_F(FileShareWindowTest, CancelAllKeepsTheWindows) {
    open();
    open();
    service_.cancelAll();
    EXPECT_EQ(service_.windows().size(), 2U);
    for (auto* window : service_.windows()) {
        EXPECT_EQ(text(*window, "title"), "Upload cancelled");
    }
}

TEST_F(FileShareWindowTest, ChoosingAFileNamesTheServerAndSharesTheFile) {
    preferences_.choose(AppLanguage::english);
    service_.choose();
    ASSERT_TRUE(panel_.open);
    EXPECT_EQ(panel_.open->title, "Quillane Share");
    EXPECT_EQ(panel_.open->message, "Choose a file to upload to files.example:8443/up");
    EXPECT_EQ(panel_.open->prompt, "Upload file");
    EXPECT_TRUE(service_.windows().empty());
    panel_.confirm(files_.path() / "file.txt");
    ASSERT_EQ(service_.windows().size(), 1U);
    EXPECT_EQ(transfer().file, files_.path() / "file.txt");
}

TEST_F(FileShareWindowTest, AFileDroppedOnThePanelIsSharedAndTwoAreRefused) {
    service_.choose();
    const auto one = file_.absoluteString();
    EXPECT_EQ(panel_.drop({one, one}), core::LocalizedText(core::texts::selectOneFile));
    EXPECT_TRUE(panel_.open);
    EXPECT_TRUE(service_.windows().empty());
    EXPECT_EQ(panel_.drop({one}), std::nullopt);
    EXPECT_FALSE(panel_.open);
    EXPECT_EQ(transfer().file, files_.path() / "file.txt");
}

TEST_F(FileShareWindowTest, AnythingButOneFileIsAnsweredWithTheMessage) {
    const auto other = files_.url("other.txt").absoluteString();
    for (const auto& urls :
         {std::vector<std::string>{}, {file_.absoluteString(), other}, {"https://files.example/a"}}) {
        EXPECT_EQ(service_.share(urls), core::LocalizedText(core::texts::selectOneFile));
    }
    EXPECT_TRUE(service_.windows().empty());
    EXPECT_EQ(service_.share({file_.absoluteString(), "https://files.example/a"}), std::nullopt); // one file
    EXPECT_EQ(service_.windows().size(), 1U);
}

TEST_F(FileShareWindowTest, AFolderOpensAWindowWithItsMessage) {
    EXPECT_EQ(service_.share({core::Url::fromFilePath(files_.path()).absoluteString()}), std::nullopt);
    EXPECT_EQ(text(*service_.windows().back(), "detail"),
              "Select a regular file. To share a folder, compress it to a ZIP first.");
}

TEST_F(FileShareWindowTest, ADroppedFileIsSharedAndTwoAreRefused) {
    auto& window = open();
    const auto drop = [&](const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &event);
    };
    const auto one = QUrl::fromEncoded(QByteArray::fromStdString(files_.url("שלום 1.txt").absoluteString()));
    drop({one});
    EXPECT_EQ(service_.windows().size(), 2U);
    EXPECT_EQ(transfer().file, files_.path() / "שלום 1.txt");
    drop({one, one});
    EXPECT_EQ(service_.windows().size(), 2U);
    const auto* box = window.findChild<QMessageBox*>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), "Select one file to share.");
}

} // namespace
} // namespace quillane
