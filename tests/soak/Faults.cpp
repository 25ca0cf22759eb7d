// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "soak/Faults.hpp"

#include "desktop/fixture/LiveDesktopTest.hpp"

#include <csignal>
#include <fstream>
#include <string>

namespace quillane::soak {
namespace {

using live::require;
using namespace std::chrono_literals;

constexpr auto retry = 10s;       ///< of a save that has failed
constexpr auto writing = 4s;      ///< until that save has ended
constexpr auto maximumPause = 3s; ///< until a save begins

void mustWork(const std::string& problem) {
    require(problem.empty(), problem);
}

Fault accessibilityBus(SoakDesktop& soak) {
    return {"accessibility bus", [&soak] { soak.desktop().killService("at-spi-bus-launcher"); },
            [&soak] {
                mustWork(soak.desktop().restartAccessibility());
                soak.endEditors(); // toolkits do not connect again
            }};
}

Fault keyring(SoakDesktop& soak) {
    return {"keyring", [&soak] { soak.endKeyring(); }, [&soak] { soak.startKeyring(); }};
}

Fault sessionBus(SoakDesktop& soak) {
    return {"session bus", [&soak] { soak.desktop().killService("dbus-daemon"); },
            [&soak] {
                mustWork(soak.desktop().restartService("dbus-daemon"));
                mustWork(soak.desktop().restartAccessibility());
                soak.startKeyring();
                soak.endEditors();
            }};
}

Fault windowManager(SoakDesktop& soak) {
    return {"window manager", [&soak] { soak.desktop().killService("openbox"); },
            [&soak] { mustWork(soak.desktop().restartService("openbox")); }};
}

Fault stoppedApplication(SoakDesktop& soak, std::mt19937& random) {
    const auto index = random() % 2;
    return {"stopped application",
            [&soak, index] {
                require(soak.desktop().bringToFront(soak.editors().at(index)), "no editor in front");
                soak.editor(index).signal(SIGSTOP);
            },
            [&soak, index] { soak.editor(index).signal(SIGCONT); }};
}

Fault wrongClock(SoakDesktop& soak, const char* name, const char* offset) {
    const auto set = [&soak](const std::string& text) { require(live::writeFile(soak.clockFile(), text), "no clock"); };
    return {name, [set, offset] { set(offset); }, [set] { set("+0"); }};
}

Fault fullDisk(SoakDesktop& soak) {
    const auto ballast = [&soak] { return soak.historyFolder().parent_path() / "ballast"; };
    return {"full disk",
            [&soak, ballast] {
                soak.copies().suspend();
                std::ofstream file(ballast(), std::ios::binary);
                for (const std::size_t size : {std::size_t{65'536}, std::size_t{4'096}, std::size_t{1}}) {
                    for (const std::string bytes(size, '\0'); file << bytes << std::flush;) {
                    }
                    file.clear();
                }
            },
            [&soak, ballast] {
                std::filesystem::remove(ballast());
                const auto isSaved = [](const auto& status) {
                    return status.at("clipboard").at("storageError") == false;
                };
                soak.copies().restore(retry + maximumPause + writing);
                require(soak.agent().waitForStatus(isSaved, retry + maximumPause + writing),
                        "the history is not saved on a disk with room again");
                soak.copies().restore(0s);
            }};
}

} // namespace

std::vector<Fault> faults(SoakDesktop& soak, std::mt19937& random) {
    std::vector<Fault> all{accessibilityBus(soak), keyring(soak), sessionBus(soak), windowManager(soak),
                           stoppedApplication(soak, random)};
    if (!soak.clockFile().empty()) {
        all.push_back(wrongClock(soak, "clock set back", "-1d"));
        all.push_back(wrongClock(soak, "clock set forth", "+1d"));
    }
    if (soak.hasSmallDisk()) {
        all.push_back(fullDisk(soak));
    }
    return all;
}

} // namespace quillane::soak
