// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "startup/Peer.hpp"

#include "desktop/fixture/XClients.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>

namespace quillane::live {
namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// From the start of the program to the end of the first call of its client that succeeds. Calls follow one another, so
/// that a late answer is found at most one failed call later.
double timeToAnswer(LiveDesktop& desktop, const Peer& peer) {
    const auto start = Clock::now();
    auto process = desktop.startProcess(peer.server);
    must(process.has_value(), peer.name + " starts");
    must(waitUntil([&] { return desktop.run(peer.client).succeeded(); }, defaultTimeout, std::chrono::milliseconds{0}),
         peer.name + " answers");
    const double time = millisecondsSince(start);
    process->end();
    return time;
}

/// From the start of the program until its icon is shown in the tray, looked for every millisecond.
double timeToTrayIcon(LiveDesktop& desktop, const Peer& peer) {
    const auto start = Clock::now();
    auto process = desktop.startProcess(peer.server);
    must(process.has_value(), peer.name + " starts");
    must(waitUntil([&] { return trayIcon(desktop.screen(), peer.windowClass).has_value(); }, defaultTimeout,
                   std::chrono::milliseconds{1}),
         peer.name + " is in the tray");
    const double time = millisecondsSince(start);
    must(waitUntil([&] { return desktop.run(peer.client).succeeded(); }), peer.name + " answers");
    process->end();
    must(waitUntil([&] { return !trayIcon(desktop.screen(), peer.windowClass); }), peer.name + " leaves the tray");
    return time;
}

/// The time of one call that is answered at once: part of every time to the first answer.
double timeOfCall(LiveDesktop& desktop, const Peer& peer) {
    auto process = desktop.startProcess(peer.server);
    must(process.has_value(), peer.name + " starts");
    must(waitUntil([&] { return desktop.run(peer.client).succeeded(); }), peer.name + " answers");
    const auto start = Clock::now();
    must(desktop.run(peer.client).succeeded(), peer.name + " answers again");
    const double time = millisecondsSince(start);
    process->end();
    return time;
}

void compare(LiveDesktop& desktop, const char* title, int runs, double (*measure)(LiveDesktop&, const Peer&)) {
    std::vector<std::vector<double>> times(peers().size());
    for (int run = 0; run <= runs; ++run) {
        for (std::size_t i = 0; i < peers().size(); ++i) { // alternating, so that both meet the same load
            const double time = measure(desktop, peers()[i]);
            if (run > 0) { // the first run of each fills the caches
                times[i].push_back(time);
            }
        }
    }
    for (std::size_t i = 0; i < peers().size(); ++i) {
        std::printf("%-34s %-10s median %7.1f ms   best %7.1f ms   runs %d\n", title, peers()[i].name.c_str(),
                    median(times[i]), *std::ranges::min_element(times[i]), runs);
    }
    std::printf("%-34s quillane / copyq %.2f\n", title, median(times[0]) / median(times[1]));
    std::fflush(stdout);
}

int run(int runs) {
    auto desktop = LiveDesktop::start();
    must(desktop.has_value(), desktop ? std::string() : desktop.error());
    compare(**desktop, "start to the first answer", runs, timeToAnswer);
    compare(**desktop, "start to the icon in the tray", runs, timeToTrayIcon);
    compare(**desktop, "one answered call alone", runs, timeOfCall);
    return 0;
}

} // namespace
} // namespace quillane::live

int main(int argc, char** argv) {
    const int runs = argc > 1 ? std::atoi(argv[1]) : 15;
    if (argc > 2 || runs < 1) {
        std::fputs("usage: quillane_startup_bench [RUNS]\n", stderr);
        return 2;
    }
    try {
        return quillane::live::run(runs);
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "quillane_startup_bench: %s\n", problem.what());
        return 1;
    }
}
