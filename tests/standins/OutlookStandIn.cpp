// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

// A window for writing a message, whose accessible tree is that of Microsoft Outlook: a subject with a context menu, a
// body in a web area, and a formatting toolbar, which may keep its direction buttons in a popover. Prints what happens
// as JSON lines.

#include "AccessibleIdentifiers.hpp"

#include <QAccessibleWidget>
#include <QApplication>
#include <QCommandLineParser>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QHBoxLayout>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QTextBlock>
#include <QTextEdit>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include <cstdio>
#include <memory>

namespace {

void tell(const QJsonObject& line) {
    std::puts(QJsonDocument(line).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
}

void reportDirection(const char* field, Qt::LayoutDirection direction) {
    tell({{"event", "direction"}, {"field", field}, {"value", direction == Qt::RightToLeft ? "rtl" : "ltr"}});
}

/// What the body is in.
class WebPage : public QWidget {
public:
    explicit WebPage(QString address) : address_(std::move(address)) {}

    [[nodiscard]] const QString& address() const { return address_; }

private:
    QString address_;
};

class Popover : public QWidget {
public:
    using QWidget::QWidget;
};

class Subject : public QLineEdit {
public:
    Subject() { setObjectName("subjectTextField"); }

    void showMenu() {
        menu_ = std::make_unique<QMenu>();
        menu_->addAction("Cut");
        auto* directions = menu_->addMenu("Writing Direction");
        for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
            const auto* title = direction == Qt::RightToLeft ? "Right to Left" : "Left to Right";
            connect(directions->addAction(title), &QAction::triggered, this, [this, direction] {
                setLayoutDirection(direction);
                reportDirection("subject", direction);
                menu_->close(); // Qt leaves it open when the command has been pressed from outside
            });
        }
        connect(menu_.get(), &QMenu::aboutToHide, this, [] { tell({{"event", "menu closed"}}); });
        menu_->popup(mapToGlobal(QPoint(10, 10)));
        tell({{"event", "menu"}});
    }

private:
    std::unique_ptr<QMenu> menu_;
};

QAccessibleInterface* describe(const QString&, QObject* object) { // Qt owns what this returns
    if (auto* page = dynamic_cast<WebPage*>(object)) {
        return new QAccessibleWidget(page, QAccessible::WebDocument);
    }
    auto* popover = dynamic_cast<Popover*>(object);
    return popover != nullptr ? new QAccessibleWidget(popover, QAccessible::Window) : nullptr;
}

/// Adds what Qt leaves out: the address of a page, and that the subject's context menu can be opened.
class OutlookTree : public AccessibleIdentifiers {
public:
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        auto* interface = QAccessible::accessibleInterface(message.path().section('/', -1).toUInt());
        auto* object = interface != nullptr ? interface->object() : nullptr;
        if (auto* page = dynamic_cast<WebPage*>(object); page != nullptr &&
                                                         message.interface() == "org.a11y.atspi.Document" &&
                                                         message.member() == "GetAttributes") {
            const QMap<QString, QString> attributes{{"DocURL", page->address()}};
            return connection.send(message.createReply(QVariant::fromValue(attributes)));
        }
        auto* subject = dynamic_cast<Subject*>(object);
        return (subject != nullptr && message.interface() == "org.a11y.atspi.Action" &&
                handleMenuAction(*subject, *interface, message, connection)) ||
               AccessibleIdentifiers::handleMessage(message, connection);
    }

private:
    /// The action behind those that Qt has for the field.
    static bool handleMenuAction(Subject& subject, QAccessibleInterface& interface, const QDBusMessage& message,
                                 const QDBusConnection& connection) {
        if (message.arguments().value(0) != interface.actionInterface()->actionNames().size()) {
            return false;
        }
        if (message.member() == "GetName") {
            return connection.send(message.createReply("ShowMenu"));
        }
        if (message.member() == "DoAction") {
            QTimer::singleShot(0, &subject, [&subject] { subject.showMenu(); });
            return connection.send(message.createReply(true));
        }
        return false;
    }
};

/// The state of the message window.
struct Layout {
    QString address;  ///< of the body's page
    QString toolbar;  ///< "wide", "narrow", "bare" (no direction buttons at all) or "none"
    QString popover;  ///< "shown", "focused" or "never"
    QString disabled; ///< "direction" or "overflow", the buttons that cannot be pressed
    bool subjectIsFixed = false;
};

class MessageWindow : public QMainWindow {
public:
    explicit MessageWindow(Layout layout) : layout_(std::move(layout)) {
        setWindowTitle("Message");
        auto* page = new WebPage(layout_.address);
        (new QVBoxLayout(page))->addWidget(&body_);
        body_.setTabChangesFocus(true);
        body_.setPlainText("message");
        subject_.setText("subject");
        subject_.setReadOnly(layout_.subjectIsFixed);
        auto* content = new QWidget;
        auto* rows = new QVBoxLayout(content);
        rows->addWidget(&subject_);
        rows->addWidget(page);
        setCentralWidget(content);
        subject_.installEventFilter(this);
        body_.installEventFilter(this);
        if (layout_.toolbar != "none") {
            addFormattingToolbar();
        }
    }

    void focus(const QString& field) { (field == "subject" ? static_cast<QWidget&>(subject_) : body_).setFocus(); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::FocusIn) {
            tell({{"event", "focus"}, {"field", watched == &body_ ? "body" : "subject"}});
        }
        return QMainWindow::eventFilter(watched, event);
    }

private:
    void addFormattingToolbar() {
        auto* toolbar = addToolBar("Formatting Toolbar");
        toolbar->setAccessibleName("Formatting Toolbar");
        toolbar->addWidget(makeButton("Bold"));
        if (layout_.toolbar == "wide") {
            toolbar->addWidget(makeDirectionButton(Qt::LeftToRight));
            toolbar->addWidget(makeDirectionButton(Qt::RightToLeft));
        } else if (layout_.toolbar == "narrow") {
            auto* more = makeButton("See more items");
            more->setEnabled(layout_.disabled != "overflow");
            connect(more, &QPushButton::clicked, this, [this] { openPopover(); });
            toolbar->addWidget(more);
        }
    }

    [[nodiscard]] static QPushButton* makeButton(const QString& name) {
        auto* button = new QPushButton(name);
        button->setFocusPolicy(Qt::NoFocus);
        return button;
    }

    [[nodiscard]] QPushButton* makeDirectionButton(Qt::LayoutDirection direction) {
        auto* button = makeButton(direction == Qt::RightToLeft ? "Right to Left" : "Left to Right");
        button->setEnabled(layout_.disabled != "direction");
        connect(button, &QPushButton::clicked, this, [this, direction] {
            auto cursor = body_.textCursor();
            QTextBlockFormat format;
            format.setLayoutDirection(direction);
            cursor.mergeBlockFormat(format);
            reportDirection("body", body_.document()->begin().textDirection());
            QTimer::singleShot(0, this, [this] { popover_.reset(); });
        });
        return button;
    }

    void openPopover() {
        tell({{"event", "overflow"}});
        if (layout_.popover != "never") {
            QTimer::singleShot(100, this, [this] { showPopover(); });
        }
    }

    void showPopover() {
        popover_ = std::make_unique<Popover>(nullptr, Qt::Tool | Qt::FramelessWindowHint);
        popover_->setObjectName("RoosterToolbarPopoverWindow(" + QString::number(++popovers_) + ")");
        popover_->setAttribute(Qt::WA_ShowWithoutActivating, layout_.popover != "focused");
        auto* row = new QHBoxLayout(popover_.get());
        row->addWidget(makeDirectionButton(Qt::LeftToRight));
        auto* last = makeDirectionButton(Qt::RightToLeft);
        row->addWidget(last);
        if (layout_.popover == "focused") {
            last->setFocusPolicy(Qt::StrongFocus);
            last->setFocus();
        }
        popover_->move(mapToGlobal(QPoint(100, 100)));
        popover_->show();
        tell({{"event", "popover"}});
    }

    Layout layout_;
    Subject subject_;
    QTextEdit body_;
    std::unique_ptr<Popover> popover_;
    int popovers_ = 0;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("com.microsoft.Outlook"); // the class of its windows
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{"address", "Address of the page of the body.", "address", "outlook-mobile-compose:1"},
                       {"toolbar", "Formatting toolbar.", "wide|narrow|bare|none", "wide"},
                       {"popover", "What comes of the overflow button.", "shown|focused|never", "shown"},
                       {"disabled", "Buttons that cannot be pressed.", "direction|overflow"},
                       {"fixed-subject", "The subject cannot be edited."},
                       {"focus", "Where the cursor is.", "body|subject", "body"}});
    parser.process(application);
    qDBusRegisterMetaType<QMap<QString, QString>>();
    QAccessible::installFactory(describe);
    MessageWindow window({.address = parser.value("address"),
                          .toolbar = parser.value("toolbar"),
                          .popover = parser.value("popover"),
                          .disabled = parser.value("disabled"),
                          .subjectIsFixed = parser.isSet("fixed-subject")});
    window.focus(parser.value("focus"));
    window.resize(600, 400);
    OutlookTree tree;
    QTimer untilInstalled; // Qt opens its connection on demand
    QObject::connect(&untilInstalled, &QTimer::timeout, &window, [&] {
        if (tree.install()) {
            untilInstalled.stop();
            window.show();
        }
    });
    untilInstalled.start(5);
    return QApplication::exec();
}
