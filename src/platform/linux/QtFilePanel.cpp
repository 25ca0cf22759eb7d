// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/QtFilePanel.hpp"

#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>

#include <utility>

namespace quillane {

class QtFilePanel::Dialog : public QFileDialog {
public:
    Dialog(const Texts& texts, Chosen chosen) : chosen_(std::move(chosen)) {
        setOption(QFileDialog::DontUseNativeDialog); // only Qt's own has room for a message
        setFileMode(QFileDialog::ExistingFile);
        setAcceptMode(QFileDialog::AcceptOpen);
        setWindowTitle(QString::fromStdString(texts.title));
        setLabelText(QFileDialog::Accept, QString::fromStdString(texts.prompt));
        setLayoutDirection(texts.direction == LayoutDirection::rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
        addMessage(QString::fromStdString(texts.message));
        connect(this, &QFileDialog::fileSelected, this, [this](const QString& file) {
            if (const auto told = std::exchange(chosen_, nullptr)) {
                told(QFile::encodeName(file).toStdString());
            }
        });
    }

private:
    void addMessage(const QString& text) {
        if (auto* grid = qobject_cast<QGridLayout*>(layout())) {
            auto* label = new QLabel(text, this);
            label->setTextFormat(Qt::PlainText);
            label->setWordWrap(true);
            grid->addWidget(label, grid->rowCount(), 0, 1, grid->columnCount());
        }
    }

    Chosen chosen_;
};

QtFilePanel::QtFilePanel() = default;

QtFilePanel::~QtFilePanel() = default;

void QtFilePanel::chooseFile(const Texts& texts, Chosen chosen) {
    if (!dialog_ || !dialog_->isVisible()) {
        dialog_ = std::make_unique<Dialog>(texts, std::move(chosen));
        dialog_->open();
    }
    dialog_->raise();
    dialog_->activateWindow();
}

} // namespace quillane
