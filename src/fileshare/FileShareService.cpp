// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fileshare/FileShareService.hpp"

#include "core/localization/Texts.hpp"
#include "views/MessageBox.hpp"

#include <QPushButton>
#include <QScreen>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace quillane {

namespace texts = core::texts;

namespace {

/// The offset of a window from the one below it: a title bar and part of the left edge stay visible.
constexpr int cascadeStep = 32;

bool isBeside(QPoint first, QPoint second) {
    const auto distance = first - second;
    return std::abs(distance.x()) >= cascadeStep / 2 || std::abs(distance.y()) >= cascadeStep / 2;
}

/// The next free position from the given one, down to the right. At the end of the screen the next row begins at the
/// top.
QPoint freePlace(QPoint place, QSize size, const QRect& screen, const std::vector<QPoint>& taken) {
    constexpr int maximumSteps = 100; // beyond this, windows may cover each other
    int row = 0;
    for (int i = 0; i < maximumSteps; ++i) {
        if (std::ranges::all_of(taken, [&](QPoint other) { return isBeside(place, other); })) {
            break;
        }
        place += QPoint(cascadeStep, cascadeStep);
        if (!screen.contains(QRect(place, size))) {
            place = screen.topLeft() + QPoint(cascadeStep * row++, 0);
        }
    }
    return place;
}

void present(QWidget& window, WindowTraits& windowTraits) {
    window.show();
    window.raise();
    window.activateWindow();
    windowTraits.activateApplication();
}

} // namespace

FileShareService::FileShareService(FileShareServices services)
    : services_(std::move(services)),
      languageChange_(
          services_.preferences.onChanged([this] { services_.platform.filePanel->setTexts(panelTexts()); })) {}

FileShareService::~FileShareService() {
    // Their models must not outlive what they refer to, and no event loop will run any more to delete them.
    for (auto& [id, window] : windows_) {
        window->onClose = nullptr;
        delete window.release();
    }
}

void FileShareService::choose() {
    const auto server = core::FileShareServer::saved(*services_.platform.userDefaults);
    if (server.isPlaceholder()) {
        askForServer();
        return;
    }
    services_.platform.windowTraits->activateApplication();
    services_.platform.filePanel->chooseFile(
        panelTexts(), [this](const std::filesystem::path& file) { show(core::Url::fromFilePath(file)); },
        [this](const std::vector<std::string>& urls) { return share(urls); });
}

FilePanel::Texts FileShareService::panelTexts() const {
    const auto language = services_.preferences.state().language;
    const auto server = core::FileShareServer::saved(*services_.platform.userDefaults);
    return {.title = texts::shareWindowTitle.rendered(language),
            .message = texts::chooseFileToUpload(server.displayName()).rendered(language),
            .prompt = texts::uploadFile.rendered(language),
            .language = language};
}

std::optional<core::LocalizedText> FileShareService::share(const std::vector<std::string>& urls) {
    std::vector<core::Url> files;
    for (const auto& text : urls) {
        if (auto url = core::Url::parse(text); url && url->filePath()) {
            files.push_back(*std::move(url));
        }
    }
    if (files.size() != 1) {
        return message(core::FileShareError::selectOneFile,
                       core::FileShareServer::saved(*services_.platform.userDefaults), services_.platform.desktop);
    }
    show(files.front());
    return std::nullopt;
}

void FileShareService::showMessage(const core::LocalizedText& text) {
    auto* box = new MessageBox(services_.preferences, texts::shareWindowTitle, text);
    box->setModal(false);
    present(*box, *services_.platform.windowTraits);
}

void FileShareService::askForServer() {
    auto* box = new MessageBox(services_.preferences, texts::shareWindowTitle, texts::chooseServerFirst);
    box->setModal(false);
    box->setNote(texts::chooseServerFirstExplanation);
    auto& open = box->addAnswer(texts::openSettings, QMessageBox::AcceptRole);
    box->setEscapeButton(&box->addAnswer(texts::cancel, QMessageBox::RejectRole));
    box->setDefaultButton(&open);
    QObject::connect(&open, &QPushButton::clicked, box, [chooseServer = services_.chooseServer] { chooseServer(); });
    present(*box, *services_.platform.windowTraits);
}

void FileShareService::show(const core::Url& file) {
    std::vector<QPoint> taken;
    std::ranges::transform(windows_, std::back_inserter(taken), [](const auto& entry) { return entry.second->pos(); });
    const auto id = next_++;
    auto& window = windows_[id];
    window.reset(new FileShareWindow(file, services_));
    window->move(freePlace(window->pos(), window->size(), window->screen()->availableGeometry(), taken));
    window->onClose = [this, id] { windows_.erase(id); };
    window->onDrop = [this](const std::vector<std::string>& urls) { return share(urls); };
    present(*window, *services_.platform.windowTraits);
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
