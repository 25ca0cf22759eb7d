// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QProcess>
#include <QTemporaryDir>

#include <csignal>
#include <stdexcept>

#include <unistd.h>

namespace quillane::testing {

/// The program with a text field, a password field and one that cannot be edited, in a process of its own, which ends
/// with the object.
class MacForm {
public:
    explicit MacForm(const QStringList& options = {}) {
        process_.start(QStringLiteral(QUILLANE_FORM),
                       QStringList{QStringLiteral("--report"), folder_.filePath(QStringLiteral("report"))} + options);
        if (!process_.waitForStarted(5000)) {
            throw std::runtime_error("the form did not start");
        }
    }

    ~MacForm() {
        process_.kill(); // it may have been stopped
        process_.waitForFinished(5000);
    }

    MacForm(const MacForm&) = delete;
    MacForm& operator=(const MacForm&) = delete;

    [[nodiscard]] pid_t pid() const { return static_cast<pid_t>(process_.processId()); }

    void stop() const { ::kill(pid(), SIGSTOP); }

private:
    QTemporaryDir folder_;
    QProcess process_;
};

} // namespace quillane::testing
