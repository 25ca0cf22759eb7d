// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
//
// A word retyped in a real editor on a live desktop, with the agent's parts in the program itself.

#include "desktop/fixture/LiveDesktop.hpp"
#include "direction/CountingAccessibility.hpp"
#include "direction/Figures.hpp"
#include "keyboard/KeyboardMonitor.hpp"
#include "keyboard/RTLInput.hpp"
#include "keyboard/RetypingCommand.hpp"
#include "platform/Platform.hpp"

#include <QApplication>
#include <QTimer>

#include <cstdlib>
#include <thread>

namespace quillane::bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using live::Key;

constexpr auto betweenKeys = 20ms; // of a fast typist

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

CountingAccessibility& wrapped(std::unique_ptr<Accessibility>& place) {
    auto made = std::make_unique<CountingAccessibility>(std::move(place));
    auto& counting = *made;
    place = std::move(made);
    return counting;
}

/// The path of a chord: from the event tap to the report that the text has changed.
class RetypingRoad {
public:
    RetypingRoad(Platform& platform, live::LiveDesktop& desktop, pid_t editor)
        : desktop_(desktop),
          editor_(editor),
          accessibility_(wrapped(platform.accessibility)),
          input_(*platform.inputSources, accessibility_, *platform.workspace),
          monitor_(platform, input_),
          retyper_(*platform.inputSources),
          command_(platform, retyper_) {
        retyper_.start();
        command_.report = [this](const core::LocalizedText& text) {
            said_ = text.rendered(core::AppLanguage::english);
        };
        monitor_.onRetyping = [this](const KeyboardMonitor::Retyping& press) {
            delivered_ = Clock::now();
            command_.retype({press.strokes});
        };
        monitor_.setOptions({});
        monitor_.setRetyping(true);
        must(monitor_.start(), "the event tap");
        const auto& workspace = *platform.workspace;
        must(waitUntil([&] {
                 const auto front = workspace.frontmostApplication();
                 return front && front->pid == editor_;
             }),
             "the editor in front");
    }

    void run(int runs) {
        for (int index = 0; index <= runs; ++index) {
            retype(index % 2 == 0, index > 0); // the first run fills the caches
        }
        for (auto* figure : {&total_, &way_, &inCalls_, &own_, &calls_}) {
            figure->print();
        }
    }

private:
    std::string text() {
        std::string result;
        const auto focused = accessibility_.attribute(accessibility_.application(editor_), "AXFocusedUIElement");
        const auto* element = focused ? std::get_if<AXElement>(&*focused) : nullptr;
        const auto count =
            element != nullptr ? accessibility_.attribute(*element, "AXNumberOfCharacters") : std::nullopt;
        const auto* length = count ? std::get_if<std::int64_t>(&*count) : nullptr;
        return length != nullptr ? accessibility_.textIn(*element, {0, *length}).value_or("") : "";
    }

    void retype(bool english, bool counts) {
        const std::string word = english ? "akuo" : "שלום";
        const std::string fixed = english ? "שלום" : "akuo";
        const auto& keyboard = desktop_.keyboard();
        keyboard.type("akuo", betweenKeys);
        must(waitUntil([&] { return text().ends_with(word); }), "the word in the editor");
        keyboard.press(Key::leftAlt);
        must(waitUntil([begin = Clock::now()] { return Clock::now() - begin > betweenKeys; }), "a pause");
        keyboard.press(Key::rightShift);
        must(waitUntil([begin = Clock::now()] { return Clock::now() - begin > betweenKeys; }), "a pause");
        keyboard.release(Key::rightShift);
        must(waitUntil([begin = Clock::now()] { return Clock::now() - begin > betweenKeys; }), "a pause");
        accessibility_.calls = 0;
        accessibility_.time = {};
        said_.clear();
        const auto released = Clock::now();
        keyboard.release(Key::leftAlt);
        must(waitForEvents([&] { return !said_.empty(); }), "an outcome of the chord");
        const auto reported = Clock::now();
        const auto waited = accessibility_.time;
        const auto calls = accessibility_.calls;
        must(said_.starts_with("Keyboard language"), said_);
        must(text().ends_with(fixed), "the word fixed, not " + text());
        keyboard.tap(Key::enter);
        must(waitUntil([&] { return text().ends_with("\n"); }), "another line");
        if (counts) {
            total_.values.push_back(milliseconds(reported - released));
            way_.values.push_back(milliseconds(delivered_ - released));
            inCalls_.values.push_back(milliseconds(waited));
            own_.values.push_back(milliseconds(reported - released - waited));
            calls_.values.push_back(calls);
        }
    }

    live::LiveDesktop& desktop_;
    pid_t editor_;
    CountingAccessibility& accessibility_;
    RTLInput input_;
    KeyboardMonitor monitor_;
    Retyper retyper_;
    RetypingCommand command_;
    std::string said_;
    Clock::time_point delivered_;
    Figure total_{"release of the chord until the changed text has been read back, ms"};
    Figure way_{"of it from the key to the command, ms"};
    Figure inCalls_{"of it the editor's, waiting for its answers, ms"};
    Figure own_{"of it our own time, the way of the key included, ms"};
    Figure calls_{"Accessibility calls"};
};

} // namespace
} // namespace quillane::bench

int main(int argc, char** argv) {
    const int runs = argc > 1 ? std::atoi(argv[1]) : 20;
    if (argc > 2 || runs < 1) {
        std::fputs("usage: quillane_retyping_bench [RUNS]\n", stderr);
        return 2;
    }
    try {
        using namespace quillane;
        auto desktop = live::LiveDesktop::start();
        bench::must(desktop.has_value(), desktop ? std::string() : desktop.error());
        auto editor = (*desktop)->startApplication({"mousepad", "--disable-server"});
        bench::must(editor.has_value(), editor ? std::string() : editor.error());
        (*desktop)->adoptEnvironment();
        const QApplication application(argc, argv);
        auto made = makePlatform({});
        auto* platform = std::get_if<Platform>(&made);
        bench::must(platform != nullptr, "the platform");
        bench::RetypingRoad(*platform, **desktop, editor->pid()).run(runs);
        return 0;
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "quillane_retyping_bench: %s\n", problem.what());
        return 1;
    }
}
