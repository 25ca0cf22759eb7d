// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/direction/LiveBrowser.hpp"
#include "direction/AgentRun.hpp"
#include "direction/CountingAccessibility.hpp"
#include "direction/DirectionCommands.hpp"
#include "direction/Figures.hpp"
#include "keyboard/KeyboardMonitor.hpp"
#include "keyboard/RTLInput.hpp"
#include "platform/Platform.hpp"

#include <QApplication>
#include <QTimer>

#include <cstdlib>
#include <ctime>
#include <thread>

namespace quillane::bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using live::Key;

constexpr auto betweenKeys = 20ms; // of a fast typist

double processorMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// Sleeps in the event loop between events, as the agent does.
bool waitForEvents(const std::function<bool()>& condition) {
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(10s);
    while (!condition() && limit.isActive()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return condition();
}

/// For what no event announces.
bool waitUntil(const std::function<bool()>& condition) {
    const auto deadline = Clock::now() + 10s;
    while (!condition() && Clock::now() < deadline) {
        QCoreApplication::processEvents();
        std::this_thread::sleep_for(1ms);
    }
    return condition();
}

void pause(Clock::duration time) {
    const auto end = Clock::now() + time;
    must(waitUntil([&] { return Clock::now() > end; }), "a pause");
}

/// Adds up the requested delays.
class DelayedQueue final : public MainQueue {
public:
    DelayedQueue(std::unique_ptr<MainQueue> real, CountingAccessibility& accessibility)
        : owned_(std::move(real)), accessibility_(accessibility) {}

    Clock::duration delays{};

    void post(Task task) override { real_.post(std::move(task)); }

    void postAfter(std::chrono::milliseconds delay, Task task) override {
        delays += delay;
        accessibility_.waitsUntil = Clock::now() + delay;
        real_.postAfter(delay, std::move(task));
    }

    core::Subscription repeat(std::chrono::milliseconds interval, Task task) override {
        return real_.repeat(interval, std::move(task));
    }

private:
    std::unique_ptr<MainQueue> owned_;
    MainQueue& real_ = *owned_;
    CountingAccessibility& accessibility_;
};

/// Puts a counting object in the place of a real one, which it owns and passes calls on to.
template <typename Counting, typename Interface, typename... Arguments>
Counting& wrap(std::unique_ptr<Interface>& place, Arguments&... arguments) {
    auto made = std::make_unique<Counting>(std::move(place), arguments...);
    auto& counting = *made;
    place = std::move(made);
    return counting;
}

/// The path of a chord in this process, to be measured: from the event tap to the adapter's report.
class ChordRoad {
public:
    ChordRoad(Platform& platform, live::LiveDesktop& desktop, const live::LiveBrowser& browser)
        : desktop_(desktop),
          browser_(browser),
          accessibility_(wrap<CountingAccessibility>(platform.accessibility)),
          queue_(wrap<DelayedQueue>(platform.mainQueue, accessibility_)),
          input_(*platform.inputSources, accessibility_, *platform.workspace),
          monitor_(platform, input_),
          commands_(
              {accessibility_, *platform.workspace, queue_, *platform.userDefaults, *platform.eventTap},
              [] { return true; },
              [this](const core::LocalizedText& text) { said_ = text.rendered(core::AppLanguage::english); }) {
        monitor_.onDirection = [this](core::WritingDirection direction) {
            delivered_ = Clock::now();
            commands_.apply(direction);
        };
        monitor_.onInterruption = [this](core::UserInput input) { commands_.interrupt(input); };
        monitor_.setOptions({});
        must(monitor_.start(), "the event tap");
        must(waitUntil([this] { return commands_.target() == "org.chromium.Chromium"; }), "Chromium in front");
        must(waitUntil([this] { return isAreaFocused(); }), "the focus on the text area");
    }

    void run(int runs) {
        for (int index = 0; index <= runs; ++index) {
            turn(index % 2 == 0, index > 0); // the first run fills the caches
        }
        for (auto* figure : {&total_, &way_, &inCalls_, &polling_, &own_, &processor_, &seen_, &calls_}) {
            figure->print();
        }
    }

private:
    bool isAreaFocused() {
        const auto focused = accessibility_.attribute(accessibility_.application(browser_.pid()), "AXFocusedUIElement");
        const auto* element = focused ? std::get_if<AXElement>(&*focused) : nullptr;
        return element != nullptr && accessibility_.attribute(*element, "AXRole") == AXValue(std::string("AXTextArea"));
    }

    void turn(bool right, bool counts) {
        const auto shift = right ? Key::rightShift : Key::leftShift;
        const auto& keyboard = desktop_.keyboard();
        must(waitUntil([&] { return !browser_.hasOpenMenu(); }), "no menu");
        pause(300ms);
        keyboard.press(Key::leftControl);
        pause(betweenKeys);
        keyboard.press(shift);
        pause(betweenKeys);
        keyboard.release(shift);
        pause(betweenKeys);
        accessibility_.calls = 0;
        accessibility_.time = {};
        queue_.delays = {};
        said_.clear();
        const auto processor = processorMilliseconds();
        const auto released = Clock::now();
        keyboard.release(Key::leftControl);
        must(waitForEvents([&] { return !said_.empty(); }),
             delivered_ < released ? "the chord is recognised" : "an outcome of the chord");
        const auto reported = Clock::now();
        const auto processorAfter = processorMilliseconds();
        must(said_ == (right ? "Applied RTL in Chromium" : "Applied LTR in Chromium"), said_);
        must(waitUntil([&] {
                 const auto state = browser_.state();
                 return state && state->direction == (right ? "rtl" : "ltr");
             }),
             "the direction");
        const auto arrived = Clock::now();
        if (counts) {
            const auto waited = accessibility_.time;
            total_.values.push_back(milliseconds(reported - released));
            way_.values.push_back(milliseconds(delivered_ - released));
            inCalls_.values.push_back(milliseconds(waited));
            polling_.values.push_back(milliseconds(queue_.delays));
            own_.values.push_back(milliseconds(reported - released - waited - queue_.delays));
            processor_.values.push_back(processorAfter - processor);
            seen_.values.push_back(milliseconds(arrived - reported));
            calls_.values.push_back(accessibility_.calls);
        }
    }

    live::LiveDesktop& desktop_;
    const live::LiveBrowser& browser_;
    CountingAccessibility& accessibility_;
    DelayedQueue& queue_;
    RTLInput input_;
    KeyboardMonitor monitor_;
    DirectionCommands commands_;
    std::string said_;
    Clock::time_point delivered_;
    Figure total_{"release of the chord to the report, ms"};
    Figure way_{"of it from the key to the adapter, ms"};
    Figure inCalls_{"of it the browser's, waiting for its answers, ms"};
    Figure polling_{"of it the documented delay, ms"};
    Figure own_{"of it our own time, the way of the key included, ms"};
    Figure processor_{"on a processor meanwhile, asking and reading answers included, ms"};
    Figure seen_{"the browser's, from the report until the page's script sees it, ms"};
    Figure calls_{"Accessibility calls"};
};

} // namespace
} // namespace quillane::bench

int main(int argc, char** argv) {
    const int runs = argc > 1 ? std::atoi(argv[1]) : 20;
    if (argc > 2 || runs < 1) {
        std::fputs("usage: quillane_direction_bench [RUNS]\n", stderr);
        return 2;
    }
    try {
        using namespace quillane;
        auto desktop = live::LiveDesktop::start();
        bench::must(desktop.has_value(), desktop ? std::string() : desktop.error());
        auto browser = live::LiveBrowser::start(**desktop, "area");
        bench::must(browser.has_value(), browser ? std::string() : browser.error());
        bench::measureAgent(**desktop, *browser, runs);
        (*desktop)->adoptEnvironment();
        const QApplication application(argc, argv);
        auto made = makePlatform({});
        auto* platform = std::get_if<Platform>(&made);
        bench::must(platform != nullptr, "the platform");
        bench::ChordRoad(*platform, **desktop, *browser).run(runs);
        return 0;
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "quillane_direction_bench: %s\n", problem.what());
        return 1;
    }
}
