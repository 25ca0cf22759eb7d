// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

// Copies to the clipboard what it reads from a named pipe, as a Qt application does:
//
//     copier PIPE
//
// Each line is a copy, its fields separated by tabs: NUMBER TYPE FILE [TYPE FILE]… When the contents are on the
// clipboard, it prints "copied NUMBER", and when another program reads them, "read NUMBER".
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMetaType>
#include <QMimeData>
#include <QSocketNotifier>
#include <QTextStream>
#include <QVariant>

#include <array>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace {

class Contents : public QMimeData {
public:
    explicit Contents(QByteArray number) : number_(std::move(number)) {}

protected:
    [[nodiscard]] QVariant retrieveData(const QString& type, QMetaType metaType) const override {
        QTextStream(stdout) << "read " << number_ << Qt::endl;
        return QMimeData::retrieveData(type, metaType);
    }

private:
    QByteArray number_;
};

void copy(const QList<QByteArray>& fields) {
    auto* contents = new Contents(fields.front()); // the clipboard takes it over
    for (qsizetype i = 1; i + 1 < fields.size(); i += 2) {
        QFile file(QString::fromUtf8(fields[i + 1]));
        if (file.open(QIODevice::ReadOnly)) {
            contents->setData(QString::fromLatin1(fields[i]), file.readAll());
        }
    }
    QGuiApplication::clipboard()->setMimeData(contents);
    QTextStream(stdout) << "copied " << fields.front() << Qt::endl;
}

} // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    if (argc != 2) {
        return 2;
    }
    const int pipe = ::open(argv[1], O_RDWR | O_NONBLOCK | O_CLOEXEC); // for writing too, so that it never ends
    if (pipe < 0) {
        return 1;
    }
    QByteArray read;
    QSocketNotifier notifier(pipe, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &application, [&] {
        std::array<char, 4096> buffer{};
        const auto count = ::read(pipe, buffer.data(), buffer.size());
        read.append(buffer.data(), qMax<qsizetype>(count, 0));
        for (auto end = read.indexOf('\n'); end >= 0; end = read.indexOf('\n')) {
            copy(read.left(end).split('\t'));
            read.remove(0, end + 1);
        }
    });
    return QGuiApplication::exec();
}
