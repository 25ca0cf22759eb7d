// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/HistoryDesktop.hpp"
#include "desktop/fixture/XFlood.hpp"
#include "platform/common/control/ControlSocket.hpp"
#include "startup/Peer.hpp"
#include "support/ProcessFacts.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string_view>

namespace quillane::live {
namespace {

using Clock = std::chrono::steady_clock;

constexpr double mebibyte = 1024 * 1024;

/// Asks for the status again and again, and prints how it was answered.
void measure(std::string_view name, const std::filesystem::path& socket, pid_t agent, std::chrono::seconds time,
             const XFlood* flood) {
    std::vector<double> answers;
    std::uint64_t memory = 0;
    const auto before = flood != nullptr ? flood->made() : 0;
    const auto begin = Clock::now();
    while (Clock::now() < begin + time) {
        const auto asked = Clock::now();
        must(sendControlRequest(socket, {"status", {}}, std::chrono::seconds{60}).has_value(), "an answer");
        answers.push_back(std::chrono::duration<double, std::milli>(Clock::now() - asked).count());
        memory = std::max(memory, residentMemoryOf(agent));
        std::this_thread::sleep_for(std::chrono::milliseconds{10});
    }
    const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    const auto made = flood != nullptr ? flood->made() - before : 0;
    std::ranges::sort(answers);
    std::printf("%-15s %8.0f events/s   answer: median %6.1f ms, 95 %% %6.1f ms, longest %7.1f ms   memory %6.1f MiB\n",
                std::string(name).c_str(), static_cast<double>(made) / seconds, answers[answers.size() / 2],
                answers[answers.size() * 95 / 100], answers.back(), static_cast<double>(memory) / mebibyte);
    std::fflush(stdout);
}

int run(std::chrono::seconds time, int perSecond) {
    for (const auto kind : allXFloods) { // a desktop each: some programs do not survive every flood
        auto desktop = LiveDesktop::start();
        must(desktop.has_value(), desktop ? std::string() : desktop.error());
        core::ClipboardOptions options;
        options.enabled = true;
        must(writeHistorySettings(**desktop, options), "settings");
        const auto keyring = startKeyring(**desktop);
        must(keyring.has_value(), "a keyring");
        auto agent = LiveAgent::start(**desktop);
        must(agent.has_value(), agent ? std::string() : agent.error());
        must(agent->useGroup(1, true), "a right-to-left source");
        const auto socket = (*desktop)->runtimeFolder() / "quillane.sock";
        const auto pid = agent->process().pid();
        if (kind == allXFloods[0]) {
            measure("(none)", socket, pid, time, nullptr);
        }
        const XFlood flood((*desktop)->display(), kind, perSecond);
        must(waitUntil([&] { return flood.made() > 0; }), "a flood");
        measure(nameOf(kind), socket, pid, time, &flood);
    }
    return 0;
}

} // namespace
} // namespace quillane::live

int main(int argc, char** argv) {
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 5;
    const int perSecond = argc > 2 ? std::atoi(argv[2]) : 100'000;
    if (argc > 3 || seconds < 1 || perSecond < 1) {
        std::fputs("usage: quillane_flood_bench [SECONDS [PER_SECOND]]\n", stderr);
        return 2;
    }
    try {
        return quillane::live::run(std::chrono::seconds{seconds}, perSecond);
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "quillane_flood_bench: %s\n", problem.what());
        return 1;
    }
}
