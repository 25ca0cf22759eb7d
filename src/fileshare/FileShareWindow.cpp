// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fileshare/FileShareWindow.hpp"

#include "core/localization/Texts.hpp"
#include "fileshare/FileShareView.hpp"
#include "views/MessageBox.hpp"
#include "views/Text.hpp"

#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QScreen>
#include <QUrl>
#include <QVBoxLayout>

#include <utility>

namespace quillane {

namespace {

constexpr QSize contentSize(530, 350);

} // namespace

FileShareWindow::FileShareWindow(core::Url file, const FileShareServices& services)
    : QWidget(nullptr, Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                           Qt::WindowCloseButtonHint),
      preferences_(services.preferences),
      model_(std::move(file), services) {
    setWindowTitle(rendered(core::texts::shareWindowTitle, services.preferences.state().language));
    setFixedSize(contentSize);
    setAcceptDrops(true);
    auto* view = new FileShareView(model_, services);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view);
    connect(view, &FileShareView::closeRequested, this, &QWidget::close);
    if (const auto* screen = QGuiApplication::primaryScreen()) {
        move(screen->availableGeometry().center() - rect().center());
    }
}

void FileShareWindow::closeEvent(QCloseEvent* event) {
    event->accept();
    model_.cancel();
    if (const auto callback = std::exchange(onClose, nullptr)) {
        callback();
    }
}

void FileShareWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls()) {
        event->acceptProposedAction();
    }
}

void FileShareWindow::dropEvent(QDropEvent* event) {
    std::vector<std::string> urls;
    for (const auto& url : event->mimeData()->urls()) {
        urls.push_back(url.toEncoded().toStdString());
    }
    event->acceptProposedAction();
    if (const auto refusal = onDrop ? onDrop(urls) : std::nullopt) {
        (new MessageBox(preferences_, core::texts::shareWindowTitle, *refusal, this))->open();
    }
}

} // namespace quillane
