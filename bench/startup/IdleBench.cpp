// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/HistoryDesktop.hpp"
#include "startup/Peer.hpp"
#include "startup/ProcessTree.hpp"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <thread>

namespace quillane::live {
namespace {

struct IdleCost {
    double cpuPercent = 0;
    double wakeUpsPerSecond = 0;
    double memoryMiB = 0;
    double writtenMiB = 0;
    int processes = 0;
};

/// The programs idle side by side on one desktop, with an editor in front as on any other.
std::vector<IdleCost> measure(LiveDesktop& desktop, const std::vector<Peer>& programs, int seconds) {
    std::vector<ChildProcess> processes;
    for (const auto& peer : programs) {
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
        must(processes[i].isRunning(), programs[i].name + " still runs");
        const auto after = resourceUseOf(processes[i].pid());
        IdleCost cost;
        cost.cpuPercent = static_cast<double>(after.cpuNanoseconds - before[i].cpuNanoseconds) / 1e9 / time * 100;
        cost.wakeUpsPerSecond = static_cast<double>(after.wakeUps - before[i].wakeUps) / time;
        cost.memoryMiB = static_cast<double>(after.memoryKiB) / 1024;
        cost.writtenMiB = static_cast<double>(after.writtenKiB) / 1024;
        cost.processes = after.processes;
        costs.push_back(cost);
    }
    return costs;
}

void print(const std::vector<Peer>& programs, const std::vector<IdleCost>& costs, int seconds) {
    for (std::size_t i = 0; i < costs.size(); ++i) {
        std::printf(
            "%-13s CPU %7.4f %%   wake-ups %6.2f /s   memory %6.1f MiB   written %6.1f MiB in %d process%s   over "
            "%d s\n",
            programs[i].name.c_str(), costs[i].cpuPercent, costs[i].wakeUpsPerSecond, costs[i].memoryMiB,
            costs[i].writtenMiB, costs[i].processes, costs[i].processes == 1 ? "" : "es", seconds);
    }
}

int runTogether(LiveDesktop& desktop, int seconds) {
    const auto costs = measure(desktop, peers(), seconds);
    print(peers(), costs, seconds);
    std::printf("quillane / copyq: CPU %.2f   wake-ups %.2f   memory %.2f\n", costs[0].cpuPercent / costs[1].cpuPercent,
                costs[0].wakeUpsPerSecond / costs[1].wakeUpsPerSecond, costs[0].memoryMiB / costs[1].memoryMiB);
    return 0;
}

/// One program alone, so that no other shares its libraries; the agent with its history on, as the others have theirs.
int runAlone(LiveDesktop& desktop, const std::string& name, int seconds) {
    auto programs = peers();
    programs.insert(programs.end(), smallPeers().begin(), smallPeers().end());
    std::erase_if(programs, [&](const Peer& peer) { return peer.name != name; });
    must(!programs.empty(), "a program named " + name);
    const auto keyring = startKeyring(desktop);
    core::ClipboardOptions history;
    history.enabled = true;
    must(keyring.has_value() && writeHistorySettings(desktop, history), "a keyring and settings");
    print(programs, measure(desktop, programs, seconds), seconds);
    return 0;
}

int run(int seconds, const std::optional<std::string>& alone) {
    auto desktop = LiveDesktop::start();
    must(desktop.has_value(), desktop ? std::string() : desktop.error());
    return alone ? runAlone(**desktop, *alone, seconds) : runTogether(**desktop, seconds);
}

} // namespace
} // namespace quillane::live

int main(int argc, char** argv) {
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 60;
    if (argc > 3 || seconds < 1) {
        std::fputs("usage: quillane_idle_bench [SECONDS [PROGRAM]]\n", stderr);
        return 2;
    }
    try {
        return quillane::live::run(seconds, argc > 2 ? std::optional<std::string>(argv[2]) : std::nullopt);
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "quillane_idle_bench: %s\n", problem.what());
        return 1;
    }
}
