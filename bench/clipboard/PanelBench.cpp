// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

// The time of the clipboard history's panel from the call that opens it, or from a typed key, until the list has been
// painted, with 1,000 entries of 2 KB. Drawn offscreen: the display server's time comes on top.

#include "clipboard/panel/HistoryPanel.hpp"
#include "fakes/FakeClipboardHistory.hpp"
#include "support/OffscreenApplication.hpp"

#include <QAbstractItemView>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace quillane {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int entries = 1000;
constexpr std::size_t entryBytes = 2048;
constexpr int rounds = 31;

/// In milliseconds; on a busy machine the second is more meaningful.
struct Times {
    double passed = 0;
    double onProcessor = 0;
};

/// Notes when the list has been asked to paint; it has painted when its event is over.
class PaintWatch : public QObject {
public:
    bool painted = false;

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        painted = painted || event->type() == QEvent::Paint;
        return false;
    }
};

struct Bench : fakes::FakeClipboardHistory {
    Bench() {
        manager.start();
        settle();
        auto options = manager.options();
        options.enabled = true;
        options.persist = false;
        options.limit = entries;
        manager.setOptions(options);
        workspace.activate(workspace.open("com.example.editor", "Text Editor"));
        fill();
    }

    void settle() {
        queue.runPosted();
        vaultQueue.wait();
        queue.runPosted();
    }

    void fill() {
        const std::vector<std::string> words{"paper", "river",  "שלום",  "window", "كتاب",  "clipboard",
                                             "מילה",  "report", "green", "مدينة",  "stone", "letter"};
        std::mt19937 random(7); // the same contents in every run
        for (int i = 0; i < entries; ++i) {
            std::string text = std::to_string(i) + ' ';
            while (text.size() < entryBytes) {
                text += words[random() % words.size()] + ' ';
            }
            pasteboard.copyText(text);
            queue.advance(std::chrono::milliseconds(500));
        }
        settle();
    }

    /// From the act until the list has been painted.
    Times measure(const std::function<void()>& act) {
        watch.painted = false;
        const auto begin = Clock::now();
        const auto beginOnProcessor = std::clock();
        act();
        while (!watch.painted) {
            QApplication::processEvents();
        }
        return {Milliseconds(Clock::now() - begin).count(),
                1e3 * static_cast<double>(std::clock() - beginOnProcessor) / CLOCKS_PER_SEC};
    }

    void type(Qt::Key key, const QString& text) {
        QKeyEvent event(QEvent::KeyPress, key, {}, text);
        QCoreApplication::sendEvent(&field(), &event);
    }

    QLineEdit& field() { return *window.findChild<QLineEdit*>(QStringLiteral("search")); }

    fakes::OffscreenApplication application;
    core::AppPreferences preferences{userDefaults};
    PaintWatch watch;
    HistoryPanel window{{.platform = platform,
                         .panel = panel,
                         .preferences = preferences,
                         .symbol = [](const std::string&, const QColor&) { return QIcon(); },
                         .openSettings = [] {}}};
};

double median(const std::vector<Times>& times, double Times::*which) {
    std::vector<double> sorted;
    sorted.reserve(times.size());
    for (const auto& time : times) {
        sorted.push_back(time.*which);
    }
    std::ranges::sort(sorted);
    return sorted[sorted.size() / 2];
}

void report(const char* what, const std::vector<Times>& times, double goal) {
    std::printf("%-36s median %6.2f ms, %6.2f ms on a processor; goal below %.0f ms\n", what,
                median(times, &Times::passed), median(times, &Times::onProcessor), goal);
}

void run() {
    Bench bench;
    bench.window.findChild<QAbstractItemView*>(QStringLiteral("list"))->viewport()->installEventFilter(&bench.watch);
    const auto open = [&] { bench.panel.show(bench.workspace.frontmostApplication()); };
    std::printf("%zu entries of %zu bytes\n", bench.manager.history().entries().size(), entryBytes);
    report("first opening", {bench.measure(open)}, 50);
    std::vector<Times> opening;
    std::vector<Times> narrowing;
    std::vector<Times> keeping;
    for (int i = 0; i < rounds; ++i) {
        bench.panel.close();
        QApplication::processEvents();
        opening.push_back(bench.measure(open));
        keeping.push_back(bench.measure([&] { bench.type(Qt::Key_E, QStringLiteral("e")); }));    // all rows stay
        narrowing.push_back(bench.measure([&] { bench.type(Qt::Key_4, QStringLiteral(" 4")); })); // few rows stay
        narrowing.push_back(bench.measure([&] { bench.type(Qt::Key_Backspace, {}); }));
    }
    report("opening", opening, 50);
    report("a key that keeps every entry", keeping, 16);
    report("a key that changes what is found", narrowing, 16);
}

} // namespace
} // namespace quillane

int main() {
    quillane::run();
    return 0;
}
