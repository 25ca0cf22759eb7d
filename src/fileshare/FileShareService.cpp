// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fileshare/FileShareService.hpp"

#include "core/localization/Texts.hpp"

#include <QMessageBox>

#include <algorithm>
#include <utility>

namespace quillane {

namespace texts = core::texts;

FileShareService::FileShareService(FileShareServices services) : services_(std::move(services)) {}

FileShareService::~FileShareService() {
    // Their models must not outlive what they refer to, and no event loop will come for them any more.
    for (auto& [id, window] : windows_) {
        window->onClose = nullptr;
        delete window.release();
    }
}

void FileShareService::choose() {
    services_.windowTraits.activateApplication();
    const auto language = services_.preferences.state().language;
    const auto server = core::FileShareServer::saved(services_.userDefaults);
    services_.filePanel.chooseFile(
        {.title = texts::shareWindowTitle.rendered(language),
         .message = texts::chooseFileToUpload(server.displayName()).rendered(language),
         .prompt = texts::uploadFile.rendered(language),
         .direction = core::isRTL(language) ? LayoutDirection::rightToLeft : LayoutDirection::leftToRight},
        [this](const std::filesystem::path& file) { show(core::Url::fromFilePath(file)); },
        [this](const std::vector<std::string>& urls) -> std::optional<std::string> {
            const auto refusal = share(urls);
            return refusal ? std::optional(refusal->rendered(services_.preferences.state().language)) : std::nullopt;
        });
}

std::optional<core::LocalizedText> FileShareService::share(const std::vector<std::string>& urls) {
    std::vector<core::Url> files;
    for (const auto& text : urls) {
        if (auto url = core::Url::parse(text); url && url->filePath()) {
            files.push_back(*std::move(url));
        }
    }
    if (files.size() != 1) {
        return message(core::FileShareError::selectOneFile, core::FileShareServer::saved(services_.userDefaults),
                       services_.desktop);
    }
    show(files.front());
    return std::nullopt;
}

void FileShareService::tell(const core::LocalizedText& text) {
    const auto language = services_.preferences.state().language;
    auto* box =
        new QMessageBox(QMessageBox::Information, QString::fromStdString(texts::shareWindowTitle.rendered(language)),
                        QString::fromStdString(text.rendered(language)), QMessageBox::Ok);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setLayoutDirection(core::isRTL(language) ? Qt::RightToLeft : Qt::LeftToRight);
    box->setModal(false);
    box->show();
    box->raise();
    box->activateWindow();
    services_.windowTraits.activateApplication();
}

void FileShareService::show(const core::Url& file) {
    const auto id = next_++;
    auto& window = windows_[id];
    window.reset(new FileShareWindow(file, services_));
    window->onClose = [this, id] { windows_.erase(id); };
    window->onDrop = [this](const std::vector<std::string>& urls) { return share(urls); };
    window->show();
    window->raise();
    window->activateWindow();
    services_.windowTraits.activateApplication();
    window->model().start();
}

void FileShareService::cancelAll() {
    for (auto* window : windows()) {
        window->model().cancel();
    }
}

std::vector<FileShareWindow*> FileShareService::windows() const {
    std::vector<FileShareWindow*> result;
    std::ranges::transform(windows_, std::back_inserter(result), [](const auto& entry) { return entry.second.get(); });
    return result;
}

} // namespace quillane
