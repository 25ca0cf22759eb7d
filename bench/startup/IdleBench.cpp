// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "startup/Peer.hpp"
#include "startup/ProcessTree.hpp"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <thread>

namespace quillane::live {
namespace {

struct IdleCost {
    double cpuPercent = 0;
    double wakeUpsPerSecond = 0;
    double memoryMiB = 0;
    int processes = 0;
};

/// All programs idle side by side on one desktop, with an editor in front as on any other.
std::vector<IdleCost> measure(LiveDesktop& desktop, int seconds) {
    std::vector<ChildProcess> processes;
    for (const auto& peer : peers()) {
        auto process = desktop.startProcess(peer.server, {{"QUILLANE_TRACEABLE", "1"}}); // to read its memory's size
        must(process.has_value(), peer.name + " starts");
        processes.push_back(std::move(*process));
        must(waitUntil([&] { return desktop.run(peer.client).succeeded(); }), peer.name + " answers");
    }
    auto editor = desktop.startApplication({"mousepad", "--disable-server"});
    must(editor.has_value(), "an editor");
    desktop.keyboard().type("quillane");
    std::this_thread::sleep_for(std::chrono::seconds{5}); // work that follows the start is not idling

    std::vector<ResourceUse> before;
    for (const auto& process : processes) {
        before.push_back(resourceUseOf(process.pid()));
    }
    const auto start = std::chrono::steady_clock::now();
    std::this_thread::sleep_for(std::chrono::seconds{seconds});
    const double time = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();

    std::vector<IdleCost> costs;
    for (std::size_t i = 0; i < processes.size(); ++i) {
        must(processes[i].isRunning(), peers()[i].name + " still runs");
        const auto after = resourceUseOf(processes[i].pid());
        IdleCost cost;
        cost.cpuPercent = static_cast<double>(after.cpuNanoseconds - before[i].cpuNanoseconds) / 1e9 / time * 100;
        cost.wakeUpsPerSecond = static_cast<double>(after.wakeUps - before[i].wakeUps) / time;
        cost.memoryMiB = static_cast<double>(after.memoryKiB) / 1024;
        cost.processes = after.processes;
        costs.push_back(cost);
    }
    return costs;
}

int run(int seconds) {
    auto desktop = LiveDesktop::start();
    must(desktop.has_value(), desktop ? std::string() : desktop.error());
    const auto costs = measure(**desktop, seconds);
    for (std::size_t i = 0; i < costs.size(); ++i) {
        std::printf("%-10s CPU %7.4f %%   wake-ups %6.2f /s   memory %6.1f MiB in %d process%s   over %d s\n",
                    peers()[i].name.c_str(), costs[i].cpuPercent, costs[i].wakeUpsPerSecond, costs[i].memoryMiB,
                    costs[i].processes, costs[i].processes == 1 ? "" : "es", seconds);
    }
    std::printf("quillane / copyq: CPU %.2f   wake-ups %.2f   memory %.2f\n", costs[0].cpuPercent / costs[1].cpuPercent,
                costs[0].wakeUpsPerSecond / costs[1].wakeUpsPerSecond, costs[0].memoryMiB / costs[1].memoryMiB);
    return 0;
}

} // namespace
} // namespace quillane::live

int main(int argc, char** argv) {
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 60;
    if (argc > 2 || seconds < 1) {
        std::fputs("usage: quillane_idle_bench [SECONDS]\n", stderr);
        return 2;
    }
    try {
        return quillane::live::run(seconds);
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "quillane_idle_bench: %s\n", problem.what());
        return 1;
    }
}
