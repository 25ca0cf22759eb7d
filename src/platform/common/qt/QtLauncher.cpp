// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/common/qt/QtLauncher.hpp"

#include <QProcess>

namespace quillane {

bool QtLauncher::launch(const core::ProcessCommand& command) {
    QProcess process;
    process.setProgram(QString::fromStdString(command.executable));
    QStringList arguments;
    for (const auto& argument : command.arguments) {
        arguments.append(QString::fromStdString(argument));
    }
    process.setArguments(arguments);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    return process.startDetached();
}

} // namespace quillane
