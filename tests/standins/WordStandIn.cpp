// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

// A word processor with a ribbon, whose accessible tree is that of Microsoft Word: a document of pages, tabs, and the
// direction buttons of the tab Home, which exist only while that tab is shown. Prints what happens as JSON lines.

#include <QAccessibleWidget>
#include <QApplication>
#include <QCommandLineParser>
#include <QHBoxLayout>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QMainWindow>
#include <QTabBar>
#include <QTextBlock>
#include <QTextEdit>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <cstdio>

namespace {

void tell(const QJsonObject& line) {
    std::puts(QJsonDocument(line).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
}

/// When the buttons of Home come after the tab has been opened.
enum class Coming { soon, afterTheFocusHasLeft, never };

/// Around the tabs: a bar of tabs itself goes by the name of the tab that is shown.
class Ribbon : public QWidget {};

QAccessibleInterface* describeRibbon(const QString&, QObject* object) {
    auto* ribbon = dynamic_cast<Ribbon*>(object);
    return ribbon != nullptr ? new QAccessibleWidget(ribbon, QAccessible::PageTabList) : nullptr; // Qt owns it
}

class WordWindow : public QMainWindow {
public:
    WordWindow(const QStringList& tabs, const QString& shown, bool enabled, Coming coming)
        : enabled_(enabled), coming_(coming) {
        auto* content = new QWidget;
        auto* layout = new QVBoxLayout(content);
        ribbon_ = new QTabBar;
        ribbon_->setFocusPolicy(Qt::NoFocus);
        for (const auto& tab : tabs) {
            ribbon_->addTab(tab);
        }
        ribbon_->setCurrentIndex(static_cast<int>(tabs.indexOf(shown)));
        auto* frame = new Ribbon;
        frame->setAccessibleDescription("ribbon");
        (new QVBoxLayout(frame))->addWidget(ribbon_);
        group_ = new QWidget;
        new QHBoxLayout(group_);
        page_ = new QTextEdit("First paragraph<p>Second paragraph");
        page_->setAccessibleDescription("Page 1 content");
        page_->setTabChangesFocus(true);
        page_->moveCursor(QTextCursor::End);
        page_->installEventFilter(this);
        comment_ = new QLineEdit;
        comment_->setAccessibleName("Comment");
        comment_->installEventFilter(this);
        for (QWidget* widget : std::initializer_list<QWidget*>{frame, group_, page_, comment_}) {
            layout->addWidget(widget);
        }
        setCentralWidget(content);
        if (shown == "Home") {
            showButtons();
        }
        connect(ribbon_, &QTabBar::currentChanged, this, [this](int index) { open(ribbon_->tabText(index)); });
    }

    void makeReadOnly() { page_->setReadOnly(true); }

    void focus(const QString& field) { (field == "comment" ? static_cast<QWidget*>(comment_) : page_)->setFocus(); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::FocusIn) {
            tell({{"event", "focus"}, {"field", watched == page_ ? "page" : "comment"}});
        } else if (event->type() == QEvent::FocusOut && watched == page_ && awaitsLeaving_) {
            showButtons();
        }
        return QMainWindow::eventFilter(watched, event);
    }

private:
    void open(const QString& tab) {
        tell({{"event", "tab"}, {"name", tab}});
        qDeleteAll(group_->findChildren<QToolButton*>());
        awaitsLeaving_ = tab == "Home" && coming_ == Coming::afterTheFocusHasLeft;
        if (tab == "Home" && coming_ == Coming::soon) {
            QTimer::singleShot(100, this, [this] { showButtons(); });
        }
    }

    void showButtons() {
        awaitsLeaving_ = false;
        addButton("Left-to-Right", Qt::LeftToRight);
        addButton("Right-to-Left", Qt::RightToLeft);
        tell({{"event", "buttons"}});
    }

    void addButton(const QString& name, Qt::LayoutDirection direction) {
        auto* button = new QToolButton;
        button->setText(name);
        button->setFocusPolicy(Qt::NoFocus);
        button->setEnabled(enabled_);
        connect(button, &QToolButton::clicked, this, [this, direction] { turn(direction); });
        group_->layout()->addWidget(button);
    }

    void turn(Qt::LayoutDirection direction) {
        auto cursor = page_->textCursor();
        QTextBlockFormat format;
        format.setLayoutDirection(direction);
        cursor.mergeBlockFormat(format);
        QJsonArray paragraphs;
        for (auto block = page_->document()->begin(); block.isValid(); block = block.next()) {
            paragraphs.append(block.textDirection() == Qt::RightToLeft ? "rtl" : "ltr");
        }
        tell({{"event", "direction"}, {"paragraphs", paragraphs}, {"caret", page_->textCursor().position()}});
    }

    bool enabled_;
    Coming coming_;
    bool awaitsLeaving_ = false;
    QTabBar* ribbon_;
    QWidget* group_;
    QTextEdit* page_;
    QLineEdit* comment_;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("com.microsoft.Word"); // the class of its windows
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{"tabs", "Tabs of the ribbon.", "names", "Home,Insert,Layout"},
                       {"shown", "Tab that is shown first.", "name", "Home"},
                       {"focus", "Where the cursor is.", "page|comment", "page"},
                       {"readonly", "The document cannot be edited."},
                       {"disabled", "The direction buttons cannot be pressed."},
                       {"coming", "When the buttons of a tab come.", "soon|left|never", "soon"}});
    parser.process(application);
    QAccessible::installFactory(describeRibbon);
    const auto coming = parser.value("coming");
    WordWindow window(parser.value("tabs").split(','), parser.value("shown"), !parser.isSet("disabled"),
                      coming == "left"    ? Coming::afterTheFocusHasLeft
                      : coming == "never" ? Coming::never
                                          : Coming::soon);
    window.setWindowTitle("Document1");
    if (parser.isSet("readonly")) {
        window.makeReadOnly();
    }
    window.focus(parser.value("focus"));
    window.resize(600, 400);
    window.show();
    return QApplication::exec();
}
