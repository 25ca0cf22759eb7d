// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/QtFilePanel.hpp"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QUrl>

#include <utility>

namespace quillane {

class QtFilePanel::Dialog : public QFileDialog {
public:
    Dialog(const Texts& texts, Chosen chosen, Dropped dropped)
        : chosen_(std::move(chosen)), dropped_(std::move(dropped)) {
        setOption(QFileDialog::DontUseNativeDialog); // only Qt's own has room for a message
        setOption(QFileDialog::ReadOnly);            // nothing is renamed or moved here
        setAcceptDrops(true);
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

protected:
    void dragEnterEvent(QDragEnterEvent* event) override {
        if (dropped_ && event->mimeData()->hasUrls()) {
            event->acceptProposedAction();
        }
    }

    void dropEvent(QDropEvent* event) override {
        std::vector<std::string> urls;
        for (const auto& url : event->mimeData()->urls()) {
            urls.push_back(url.toEncoded().toStdString());
        }
        event->acceptProposedAction();
        if (const auto refusal = dropped_(urls)) {
            auto* box = new QMessageBox(QMessageBox::Information, windowTitle(), QString::fromStdString(*refusal),
                                        QMessageBox::Ok, this);
            box->setAttribute(Qt::WA_DeleteOnClose);
            box->open();
        } else {
            reject();
        }
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
    Dropped dropped_;
};

QtFilePanel::QtFilePanel() = default;

QtFilePanel::~QtFilePanel() = default;

void QtFilePanel::chooseFile(const Texts& texts, Chosen chosen, Dropped dropped) {
    if (!dialog_ || !dialog_->isVisible()) {
        dialog_ = std::make_unique<Dialog>(texts, std::move(chosen), std::move(dropped));
        dialog_->open();
    }
    dialog_->raise();
    dialog_->activateWindow();
}

} // namespace quillane
