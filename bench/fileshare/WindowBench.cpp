// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fileshare/WindowBench.hpp"

#include "core/fileshare/FileShareServer.hpp"
#include "fakes/FakeDesktop.hpp"
#include "fakes/FakeProxySettings.hpp"
#include "fileshare/FileShareWindow.hpp"
#include "platform/common/ThreadFileExaminer.hpp"
#include "platform/common/curl/CurlUrlSessions.hpp"
#include "platform/common/qt/QtMainQueue.hpp"

#include <QApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace quillane::bench {

namespace {

using Clock = std::chrono::steady_clock;

/// Notes when a window is drawn.
class Drawings : public QObject {
public:
    std::vector<Clock::time_point> times;

    /// The maximum of them in any one second.
    [[nodiscard]] long maximum() const {
        long result = 0;
        for (auto first = times.begin(); first != times.end(); ++first) {
            const auto end = std::upper_bound(first, times.end(), *first + std::chrono::seconds(1));
            result = std::max(result, static_cast<long>(end - first));
        }
        return result;
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::UpdateRequest) { // one for the whole window, however much of it changes
            times.push_back(Clock::now());
        }
        return false;
    }
};

} // namespace

int uploadInWindow(int argc, char** argv, const std::string& address, const std::string& file) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QApplication application(argc, argv);
    QtMainQueue queue;
    CurlUrlSessions sessions(queue, std::make_shared<fakes::FakeProxySettings>());
    ThreadFileExaminer examiner(queue);
    fakes::FakeDesktop desktop;
    desktop.platform.urlSessions = sessions.factory();
    core::FileShareServer::validating(address).value().save(desktop.userDefaults);
    core::AppPreferences preferences(desktop.userDefaults);
    const FileShareServices services{.platform = desktop.platform,
                                     .preferences = preferences,
                                     .examiner = examiner.examiner(),
                                     .chooseServer = [] {},
                                     .symbol = [](const std::string&, const QColor&) { return QIcon(); }};
    FileShareWindow window(core::Url::fromFilePath(file), services);
    window.show();
    QApplication::processEvents();
    Drawings drawings;
    window.installEventFilter(&drawings);
    auto& model = window.model();
    QObject::connect(&model, &FileShareModel::changed, [&] {
        if (!std::holds_alternative<FileShareModel::Uploading>(model.state())) {
            QCoreApplication::quit();
        }
    });
    const auto begin = Clock::now();
    model.start();
    QCoreApplication::exec();
    const std::chrono::duration<double> time = Clock::now() - begin;
    QCoreApplication::processEvents(); // the last drawing
    std::printf("window       drawn %zu times in %.1f s, at most %ld times in a second\n", drawings.times.size(),
                time.count(), drawings.maximum());
    return std::holds_alternative<FileShareModel::Completed>(model.state()) ? 0 : 1;
}

} // namespace quillane::bench
