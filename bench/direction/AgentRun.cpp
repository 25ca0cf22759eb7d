// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/AgentRun.hpp"

#include "desktop/agent/LiveAgent.hpp"
#include "desktop/direction/LiveBrowser.hpp"
#include "direction/Figures.hpp"

#include <fstream>

namespace quillane::bench {

using namespace std::chrono_literals;
using live::Key;

namespace {

using Clock = std::chrono::steady_clock;

/// The time on a processor of a process' first thread so far (proc(5), schedstat).
double processorMilliseconds(pid_t pid) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/schedstat");
    double nanoseconds = 0;
    must(static_cast<bool>(file >> nanoseconds), "the agent's time on a processor");
    return nanoseconds / 1e6;
}

} // namespace

void measureAgent(live::LiveDesktop& desktop, const live::LiveBrowser& browser, int runs) {
    must(live::chooseAgentLanguage(desktop, "en"), "the language in the settings");
    auto agent = live::LiveAgent::start(desktop);
    must(agent.has_value(), agent ? std::string() : agent.error());
    Figure seen{"agent: release of the chord until the page's script sees it, ms"};
    Figure processor{"agent: its main thread on a processor, ms"};
    for (int index = 0; index <= runs; ++index) {
        const bool right = index % 2 == 0;
        const auto shift = right ? Key::rightShift : Key::leftShift;
        const auto& keyboard = desktop.keyboard();
        must(live::waitUntil([&] { return !browser.hasOpenMenu(); }), "no menu");
        must(live::holdsFor(300ms, [] { return true; }), "a pause");
        keyboard.press(Key::leftControl);
        keyboard.press(shift);
        keyboard.release(shift);
        const auto before = processorMilliseconds(agent->process().pid());
        const auto begin = Clock::now();
        keyboard.release(Key::leftControl);
        const auto isTurned = [&] {
            const auto state = browser.state();
            return state && state->direction == (right ? "rtl" : "ltr");
        };
        must(live::waitUntil(isTurned, 10s, 1ms), "the direction");
        const auto time = milliseconds(Clock::now() - begin);
        const auto after = processorMilliseconds(agent->process().pid());
        if (index > 0) { // the first run fills the caches
            seen.values.push_back(time);
            processor.values.push_back(after - before);
        }
    }
    seen.print();
    processor.print();
    agent->process().end();
}

} // namespace quillane::bench
