// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "CountingAccessibility.hpp"
#include "desktop/direction/LiveBrowser.hpp"
#include "direction/DirectionCommands.hpp"
#include "platform/Platform.hpp"

#include <QApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace quillane::bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

void must(bool condition, const std::string& what) {
    if (!condition) {
        throw std::runtime_error(what);
    }
}

bool letEventsRunUntil(const std::function<bool()>& condition) {
    const auto deadline = Clock::now() + 10s;
    while (!condition() && Clock::now() < deadline) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 1);
    }
    return condition();
}

double milliseconds(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

/// The figures of all runs, by name.
struct Figure {
    const char* name;
    std::vector<double> values = {};

    void print() {
        std::ranges::sort(values);
        std::printf("%-44s median %7.2f   best %7.2f   worst %7.2f\n", name, values[values.size() / 2], values.front(),
                    values.back());
    }
};

int run(live::LiveDesktop& desktop, int runs) {
    auto made = makePlatform({});
    auto* platform = std::get_if<Platform>(&made);
    must(platform != nullptr, "the platform");
    CountingAccessibility accessibility(*platform->accessibility);
    std::string said;
    DirectionCommands commands(
        {accessibility, *platform->workspace, *platform->mainQueue, *platform->userDefaults}, [] { return true; },
        [&](const core::LocalizedText& text) { said = text.rendered(core::AppLanguage::english); });
    auto browser = live::LiveBrowser::start(desktop, "area");
    must(browser.has_value(), browser ? std::string() : browser.error());
    must(letEventsRunUntil([&] { return commands.target() == "com.google.Chrome"; }), "Chromium in front");
    const auto isFocused = [&] {
        const auto focused = accessibility.attribute(accessibility.application(browser->pid()), "AXFocusedUIElement");
        const auto* element = focused ? std::get_if<AXElement>(&*focused) : nullptr;
        return element != nullptr && accessibility.attribute(*element, "AXRole") == AXValue(std::string("AXTextArea"));
    };
    must(letEventsRunUntil(isFocused), "the focus on the text area");

    Figure total{"release of the chord to the report, ms"};
    Figure inCalls{"of it waiting for answers, ms"};
    Figure polling{"of it the documented step, ms"};
    Figure own{"of it our own time, ms"};
    Figure seen{"release of the chord to the page's script, ms"};
    Figure calls{"Accessibility calls of one attempt"};
    for (int index = 0; index <= runs; ++index) {
        const bool right = index % 2 == 0;
        accessibility.calls = 0;
        accessibility.time = {};
        said.clear();
        const auto begin = Clock::now();
        commands.apply(right ? core::WritingDirection::rightToLeft : core::WritingDirection::leftToRight);
        const auto started = Clock::now();
        const auto spentBefore = accessibility.time;
        Clock::time_point reported;
        Clock::time_point stepEnd = started + 60ms;
        must(letEventsRunUntil([&] { return !said.empty(); }), "an outcome");
        reported = Clock::now();
        must(said == (right ? "Applied RTL in Chrome" : "Applied LTR in Chrome"), said);
        must(letEventsRunUntil([&] { return browser->state()->direction == (right ? "rtl" : "ltr"); }),
             "the direction");
        const auto arrived = Clock::now();
        if (index == 0) {
            continue; // the first run fills the caches
        }
        const double late = std::max(0.0, milliseconds(reported - stepEnd - (accessibility.time - spentBefore)));
        total.values.push_back(milliseconds(reported - begin));
        inCalls.values.push_back(milliseconds(accessibility.time));
        polling.values.push_back(60.0);
        own.values.push_back(milliseconds(started - begin - spentBefore) + late);
        seen.values.push_back(milliseconds(arrived - begin));
        calls.values.push_back(accessibility.calls);
    }
    for (auto* figure : {&total, &inCalls, &polling, &own, &seen, &calls}) {
        figure->print();
    }
    return 0;
}

} // namespace
} // namespace quillane::bench

int main(int argc, char** argv) {
    const int runs = argc > 1 ? std::atoi(argv[1]) : 20;
    if (argc > 2 || runs < 1) {
        std::fputs("usage: quillane_direction_bench [RUNS]\n", stderr);
        return 2;
    }
    try {
        auto desktop = quillane::live::LiveDesktop::start();
        if (!desktop) {
            throw std::runtime_error(desktop.error());
        }
        (*desktop)->adoptEnvironment();
        const QApplication application(argc, argv);
        return quillane::bench::run(**desktop, runs);
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "quillane_direction_bench: %s\n", problem.what());
        return 1;
    }
}
