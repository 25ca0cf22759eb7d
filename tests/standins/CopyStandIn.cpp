// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

// Copies its arguments to the clipboard, as a Qt application does, and keeps them there until it is ended:
//
//     copy_standin TYPE FILE [TYPE FILE]...
//
// It prints "copied" when the contents are on the clipboard.
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QTextStream>
#include <QTimer>

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    const auto arguments = QCoreApplication::arguments();
    auto* contents = new QMimeData; // the clipboard takes it over
    for (qsizetype i = 1; i + 1 < arguments.size(); i += 2) {
        QFile file(arguments[i + 1]);
        if (!file.open(QIODevice::ReadOnly)) {
            return 1;
        }
        contents->setData(arguments[i], file.readAll());
    }
    QObject::connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, &application, [] {
        if (QGuiApplication::clipboard()->ownsClipboard()) {
            QTextStream(stdout) << "copied" << Qt::endl;
        }
    });
    QTimer::singleShot(0, &application, [&] { QGuiApplication::clipboard()->setMimeData(contents); });
    return QGuiApplication::exec();
}
