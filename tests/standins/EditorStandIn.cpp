// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

// An application with a field whose context menu sets paragraph direction: with one section, as web content has it, or
// with a section for the paragraph and one for the selection. It reports its state as JSON lines whenever that changes.

#include "AccessibleField.hpp"
#include "WrongAnswers.hpp"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>
#include <QMenu>
#include <QTextBlock>
#include <QThread>
#include <QTimer>
#include <QVBoxLayout>

#include <cstdlib>
#include <memory>
#include <vector>

namespace {

using namespace std::chrono_literals;

constexpr auto writingDirection = "Writing Direction";
constexpr auto paragraphDirection = "Paragraph Direction";

/// Where an application has its fields and what it calls its commands.
struct Application {
    QString bundleID;
    QString bodyName;
    QString bodyDescription;
    QString bodyMenu;
    bool bodyIsWebContent = false;
    bool bodyIsOnPage = false;
    QString otherName; ///< of the second field, of one line
};

const std::vector<Application> applications{
    {"org.chromium.Chromium", "", "", writingDirection, false, true, "Address"},
    {"com.apple.Safari", "", "", paragraphDirection, false, true, "Address"},
    {"com.apple.TextEdit", "First Text View", "", writingDirection, false, false, "Search"},
    {"com.apple.Notes", "Note Body Text View", "", writingDirection, false, false, "Search"},
    {"com.apple.mail", "", "message body", paragraphDirection, true, false, "Mail.subjectField"},
};

QString nameOf(Qt::LayoutDirection direction) {
    return direction == Qt::RightToLeft ? "rtl" : "ltr";
}

class EditorWindow : public MenuOwner {
public:
    EditorWindow(const Application& application, const QString& menuMode, bool slowToClose, QFile& report)
        : application_(application),
          mode_(menuMode),
          slowToClose_(slowToClose),
          report_(report),
          body_(new Field(application.bodyName, traits(application.bodyIsWebContent, true))),
          other_(new Field(application.otherName, traits(false, false))) {
        body_->setAccessibleDescription(application.bodyDescription);
        body_->setPlainText("first line\nsecond line");
        other_->setPlainText("subject");
        auto* page = application.bodyIsOnPage ? static_cast<QWidget*>(new WebPage) : new QWidget;
        (new QVBoxLayout(page))->addWidget(body_);
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(other_);
        layout->addWidget(page);
        other_->setMaximumHeight(40);
        selectWord();
        for (auto* field : {body_, other_}) {
            connect(field, &QTextEdit::selectionChanged, this, [this] { write(); });
            connect(field, &QTextEdit::textChanged, this, [this] { write(); });
        }
        connect(qApp, &QApplication::focusChanged, this, [this] { write(); });
        qApp->installEventFilter(this);
    }

    [[nodiscard]] Field& body() { return *body_; }

    [[nodiscard]] Field& other() { return *other_; }

    [[nodiscard]] QMenu* menu() const override { return menu_.get(); }

    void write() {
        QJsonArray directions;
        for (const auto* field : {body_, other_}) {
            for (auto block = field->document()->begin(); block.isValid(); block = block.next()) {
                directions.append(nameOf(block.blockFormat().layoutDirection()));
            }
        }
        const auto cursor = body_->textCursor();
        report_.write(QJsonDocument({{"directions", directions},
                                     {"selection", QJsonArray{cursor.selectionStart(), cursor.selectionEnd()}},
                                     {"text", body_->toPlainText()},
                                     {"focus", body_->hasFocus()    ? "body"
                                               : other_->hasFocus() ? "other"
                                                                    : "none"},
                                     {"asked", asked_},
                                     {"opened", opened_},
                                     {"escapes", escapes_},
                                     {"menu", menu_ != nullptr && menu_->isVisible()},
                                     {"chosen", QJsonArray::fromStringList(chosen_)}})
                          .toJson(QJsonDocument::Compact) +
                      '\n');
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
            if (slowToClose_ && qobject_cast<QMenu*>(watched) != nullptr) {
                QThread::msleep(60);
            } else if (watched == body_ || watched == other_) {
                ++escapes_;
                write();
            }
        }
        return MenuOwner::eventFilter(watched, event);
    }

private:
    Field::Traits traits(bool webContent, bool multiLine) {
        return {.multiLine = multiLine,
                .webContent = webContent,
                .keepsSelection = mode_ == "stubborn",
                .hidesCursor = mode_ == "cursorless",
                .hidesMenu = mode_ == "hidden",
                .showMenu = [this] { showMenu(); }};
    }

    void selectWord() {
        auto cursor = body_->textCursor();
        cursor.setPosition(13);
        cursor.setPosition(15, QTextCursor::KeepAnchor);
        body_->setTextCursor(cursor);
    }

    void showMenu() {
        ++asked_;
        write();
        if (mode_ == "exits") {
            std::_Exit(1);
        }
        if (mode_ == "busy") { // longer than any caller waits
            QThread::msleep(400);
        }
        if (mode_ != "never") {
            QTimer::singleShot(mode_ == "late" ? 1400ms : 0ms, this, [this] { openMenu(); });
        }
    }

    void openMenu() {
        ++opened_;
        auto& field = other_->hasFocus() ? *other_ : *body_;
        menu_ = std::make_unique<QMenu>(this);
        menu_->addAction("Cut");
        menu_->addAction("Copy");
        menu_->addSeparator();
        for (const auto* title : {writingDirection, paragraphDirection}) {
            const auto wanted = &field == other_ ? QString(writingDirection) : application_.bodyMenu;
            if (title == wanted) {
                addDirections(field, title);
            } else { // a submenu of the other name, whose commands are not those
                addSection(field, *menu_->addMenu(title), QString(title) + "/Other/");
            }
        }
        connect(menu_.get(), &QMenu::aboutToHide, this, [this] {
            QMetaObject::invokeMethod(
                this, [this] { write(); }, Qt::QueuedConnection);
        });
        if (mode_ == "selects" || mode_ == "stubborn") {
            field.selectAll();
        }
        menu_->popup(field.mapToGlobal(QPoint(10, 10)));
        write();
        if (mode_ == "vanishes") {
            QTimer::singleShot(20ms, this, [] { std::_Exit(1); });
        }
    }

    void addDirections(Field& field, const QString& title) {
        auto& submenu = *menu_->addMenu(title);
        if (mode_ == "focus") {
            connect(&submenu, &QMenu::aboutToShow, this,
                    [this, &field] { (&field == body_ ? other_ : body_)->setFocus(); });
        }
        const bool isOnPage = &field == body_ && application_.bodyIsOnPage;
        const bool hasSections = (title == writingDirection && !isOnPage) || mode_ == "selection";
        if (mode_ != "selection") {
            if (hasSections) {
                submenu.addAction("Paragraph")->setEnabled(false);
            }
            addSection(field, submenu, title + "/Paragraph/");
        }
        if (hasSections) {
            submenu.addAction("Selection")->setEnabled(false);
            addSection(field, submenu, title + "/Selection/");
        }
    }

    void addSection(Field& field, QMenu& menu, const QString& path) {
        for (const auto& title : {"Default", "Left to Right", "Right to Left"}) {
            auto* command = menu.addAction(title);
            command->setEnabled(mode_ != "disabled");
            connect(command, &QAction::triggered, this, [this, &field, path, title = QString(title)] {
                chosen_.append(path + title);
                if (path.endsWith("/Paragraph/")) {
                    turn(field, title == "Right to Left" ? Qt::RightToLeft : Qt::LeftToRight);
                }
                menu_->close();
                write();
            });
        }
    }

    static void turn(Field& field, Qt::LayoutDirection direction) {
        QTextBlockFormat format;
        format.setLayoutDirection(direction);
        field.textCursor().mergeBlockFormat(format);
    }

    const Application& application_;
    QString mode_;
    bool slowToClose_;
    QFile& report_;
    Field* body_;
    Field* other_;
    std::unique_ptr<QMenu> menu_;
    QStringList chosen_;
    int asked_ = 0;   ///< requests for the menu
    int opened_ = 0;  ///< menus that opened
    int escapes_ = 0; ///< that came to a field
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{"report", "File for what happens.", "file"},
                       {"application", "Identifier of the application it is like.", "identifier"},
                       {"class", "Class of its windows, unless it is the identifier.", "class"},
                       {"focus", "Field that has the focus.", "body|other", "body"},
                       {"menu", "What becomes of the menu.",
                        "opens|late|busy|never|hidden|cursorless|focus|selects|stubborn|selection|disabled|exits|"
                        "vanishes",
                        "opens"},
                       {"answers", "What is answered wrongly.", "field|cursor|ranges|focus|items|titles"},
                       {"slow-to-close", "The menus take their time over an Escape."},
                       {"read-only", "Nothing can be edited."},
                       {"reads", "The field of one line is for searching, whatever the application is."}});
    parser.process(application);
    const auto found = std::find_if(applications.begin(), applications.end(), [&](const Application& one) {
        return one.bundleID == parser.value("application");
    });
    QFile report(parser.value("report"));
    if (found == applications.end() ||
        !report.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        qCritical("no such application, or the report cannot be written");
        return 1;
    }
    // The class of its windows.
    QApplication::setApplicationName(parser.isSet("class") ? parser.value("class") : found->bundleID);
    QAccessible::installFactory(describeField);
    EditorWindow window(*found, parser.value("menu"), parser.isSet("slow-to-close"), report);
    window.body().setReadOnly(parser.isSet("read-only"));
    window.other().setReadOnly(parser.isSet("read-only"));
    if (parser.isSet("reads")) {
        window.other().setObjectName("Search");
    }
    (parser.value("focus") == "other" ? window.other() : window.body()).setFocus();
    window.resize(500, 300);
    WrongAnswers identifiers(parser.value("answers"));
    QTimer untilInstalled; // Qt opens its connection on demand
    QObject::connect(&untilInstalled, &QTimer::timeout, &window, [&] {
        if (identifiers.install()) {
            untilInstalled.stop();
            window.setWindowTitle("Editor");
            window.show();
        }
    });
    untilInstalled.start(5ms);
    return QApplication::exec();
}
