// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QFormLayout>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>

namespace {

/// Writes one JSON object a line, each at once.
class Report {
public:
    explicit Report(const QString& file) : file_(file) {}

    bool open() { return file_.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered); }

    void write(const QJsonObject& line) { file_.write(QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n'); }

private:
    QFile file_;
};

/// Reports the events of a field, which still handles them.
class FieldObserver : public QObject {
public:
    FieldObserver(Report& report, QString name) : report_(report), name_(std::move(name)) {}

    bool eventFilter(QObject* watched, QEvent* event) override {
        switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease: {
            const auto& key = *static_cast<const QKeyEvent*>(event);
            report_.write({{"event", event->type() == QEvent::KeyPress ? "press" : "release"},
                           {"field", name_},
                           {"code", static_cast<qint64>(key.nativeScanCode())},
                           {"state", static_cast<qint64>(key.nativeModifiers())},
                           {"repeat", key.isAutoRepeat()},
                           {"text", key.text()}});
            break;
        }
        case QEvent::FocusIn:
            report_.write({{"event", "focus"}, {"field", name_}});
            break;
        case QEvent::FocusOut:
            report_.write({{"event", "blur"}, {"field", name_}});
            break;
        case QEvent::MouseButtonPress:
            report_.write({{"event", "click"}, {"field", name_}});
            break;
        case QEvent::Wheel:
            report_.write({{"event", "scroll"}, {"field", name_}});
            break;
        default:
            break;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    Report& report_;
    QString name_;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{"report", "File for what happens.", "file"},
                       {"focus", "Field that has the focus first.", "plain|password|readonly", "plain"},
                       {"window-class", "Class of the window.", "class", "FormStandIn"},
                       {"content", "Place of the window's content, in points.", "x,y,width,height"}});
    parser.process(application);
    QApplication::setApplicationName(parser.value("window-class"));

    Report report(parser.value("report"));
    if (!report.open()) {
        qCritical("cannot write the report file");
        return 1;
    }
    QMainWindow window;
    window.setWindowTitle("Form");
    auto* fileMenu = window.menuBar()->addMenu("&File");
    fileMenu->addAction("&Open");
    QObject::connect(fileMenu, &QMenu::aboutToShow, [&] { report.write({{"event", "menu"}, {"field", "file"}}); });

    auto* form = new QWidget;
    auto* layout = new QFormLayout(form);
    std::vector<std::unique_ptr<FieldObserver>> observers;
    for (const char* name : {"plain", "password", "readonly"}) {
        auto* field = new QLineEdit;
        field->setAccessibleName(name);
        field->setReadOnly(qstrcmp(name, "readonly") == 0);
        field->setEchoMode(qstrcmp(name, "password") == 0 ? QLineEdit::Password : QLineEdit::Normal);
        layout->addRow(name, field);
        observers.push_back(std::make_unique<FieldObserver>(report, name));
        field->installEventFilter(observers.back().get());
        QObject::connect(field, &QLineEdit::textChanged, [&report, name](const QString& text) {
            report.write({{"event", "text"}, {"field", name}, {"text", text}});
        });
        field->setObjectName(name);
    }
    window.setCentralWidget(form);
    if (auto* first = form->findChild<QLineEdit*>(parser.value("focus"))) {
        first->setFocus();
    }
    window.resize(500, 200);
    if (const auto content = parser.value("content").split(','); content.size() == 4) {
        window.setGeometry(content[0].toInt(), content[1].toInt(), content[2].toInt(), content[3].toInt());
    }
    window.show();
    window.raise(); // on a Mac a program that is started by another does not come to the front by itself
    return QApplication::exec();
}
