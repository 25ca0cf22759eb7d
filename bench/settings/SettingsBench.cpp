// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

// How long the settings window keeps the user waiting: from the call that shows it (or another page of it) until it is
// drawn, on a private desktop with its window manager and accessibility. Each first opening is in a new process.

#include "core/settings/SettingsPage.hpp"
#include "desktop/fixture/LiveDesktop.hpp"
#include "fakes/FakeDesktop.hpp"
#include "platform/linux/shell/LineArtSymbols.hpp"
#include "settings/SettingsPageView.hpp"
#include "settings/SettingsView.hpp"
#include "settings/SettingsWindow.hpp"
#include "views/SymbolIcons.hpp"

#include <QApplication>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace quillane::bench {

namespace {

using Clock = std::chrono::steady_clock;

/// The processor time of this thread, which other programs hardly affect.
double work() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// How long something took, in milliseconds.
struct Figure {
    double time = 0;
    double work = 0;
};

/// Notes that the page in front has been drawn.
class Drawing : public QObject {
public:
    explicit Drawing(SettingsWindow& window) : window_(window) {
        QCoreApplication::instance()->installEventFilter(this);
    }

    /// The time from the start of the action until the page is on the screen.
    Figure after(const std::function<void()>& action) {
        drawn_ = false;
        const auto start = Clock::now();
        const double before = work();
        action();
        while (!drawn_) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        QGuiApplication::sync();
        const std::chrono::duration<double, std::milli> time = Clock::now() - start;
        return {time.count(), work() - before};
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        drawn_ = drawn_ || (event->type() == QEvent::Paint && watched == &window_.view().currentPage());
        return false;
    }

private:
    SettingsWindow& window_;
    bool drawn_ = false;
};

void rest() {
    bool over = false;
    QTimer::singleShot(std::chrono::milliseconds(100), [&] { over = true; });
    while (!over) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

void print(const char* name, Figure figure) {
    std::printf("%s %.2f %.2f\n", name, figure.time, figure.work);
}

/// One process of the agent's window, over models without a desktop. Prints a figure a line.
int showOnce(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    fakes::FakeDesktop desktop;
    core::AppPreferences preferences(desktop.userDefaults);
    SettingsModel model(desktop.userDefaults, desktop.sleepAssertions);
    PermissionController permissions(desktop.platform, {"/usr/bin/quillane", true});
    LoginItemController loginItem(desktop.loginItem, true);
    AppUpdater updater(nullptr, desktop.windowTraits, "1.2");
    const LineArtSymbols symbols;
    SymbolIcons icons(symbols);
    core::ClipboardOptions options;
    ClipboardSettings clipboard;
    clipboard.options = [&] { return options; };
    clipboard.setOptions = [&](const core::ClipboardOptions& changed) { options = changed; };
    rest(); // the agent has long been idle when its window is opened
    std::unique_ptr<SettingsWindow> window;
    const auto start = Clock::now();
    const double before = work();
    window = std::make_unique<SettingsWindow>(SettingsServices{
        .platform = desktop.platform,
        .model = model,
        .preferences = preferences,
        .permissions = permissions,
        .loginItem = loginItem,
        .updater = updater,
        .clipboard = std::move(clipboard),
        .symbol = [&](const std::string& name, const QColor& color) { return icons.icon(name, color); },
        .applicationIcon = applicationIcon()});
    const std::chrono::duration<double, std::milli> making = Clock::now() - start;
    const double made = work() - before;
    Drawing drawing(*window);
    const auto shown = drawing.after([&] { window->present(core::SettingsPage::general); });
    print("first", {making.count() + shown.time, made + shown.work});
    rest();
    for (int i = 0; i < 5; ++i) {
        window->close();
        rest();
        print("again", drawing.after([&] { window->present(core::SettingsPage::general); }));
        rest();
    }
    for (const auto* name : {"page", "switch", "switch"}) { // a page is made on first use
        for (const auto page : core::allSettingsPages) {
            if (page == model.page()) {
                continue;
            }
            print(name, drawing.after([&] { model.setPage(page); }));
            rest();
        }
        print("switch", drawing.after([&] { model.setPage(core::SettingsPage::general); }));
        rest();
    }
    return 0;
}

int measure(const std::string& program, int runs) {
    auto desktop = live::LiveDesktop::start();
    if (!desktop) {
        std::fprintf(stderr, "%s\n", desktop.error().c_str());
        return 1;
    }
    std::map<std::string, std::vector<Figure>> figures;
    for (int run = 0; run < runs; ++run) {
        const auto result = (*desktop)->run({program, "--once"}, std::chrono::seconds(60));
        if (!result.succeeded()) {
            std::fprintf(stderr, "%s\n", result.errors.c_str());
            return 1;
        }
        std::istringstream lines(result.output);
        std::string name;
        for (Figure figure; lines >> name >> figure.time >> figure.work;) {
            figures[name].push_back(figure);
        }
    }
    const auto tell = [&](const char* name, const char* meaning, double goal) {
        auto& all = figures[name];
        const auto middle = [&](double Figure::*part) {
            std::ranges::sort(all, {}, part);
            return all.at(all.size() / 2).*part;
        };
        const double spent = middle(&Figure::work);
        const double median = middle(&Figure::time);
        std::printf("%-28s median %6.1f ms, worst %6.1f ms, on a processor %5.1f ms   goal below %.0f ms%s\n", meaning,
                    median, all.back().time, spent, goal, median < goal ? "" : "   MISSED");
        return median < goal;
    };
    bool met = tell("first", "opened for the first time", 120);
    met = tell("again", "opened again", 30) && met;
    met = tell("switch", "another page", 16) && met;
    met = tell("page", "a page for the first time", 50) && met;
    return met ? 0 : 1;
}

} // namespace

} // namespace quillane::bench

int main(int argc, char** argv) {
    if (argc > 1 && std::string(argv[1]) == "--once") {
        return quillane::bench::showOnce(argc, argv);
    }
    return quillane::bench::measure(std::filesystem::canonical("/proc/self/exe"), argc > 1 ? std::atoi(argv[1]) : 7);
}
