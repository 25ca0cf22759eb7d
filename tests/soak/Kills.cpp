// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "soak/Kills.hpp"

#include "desktop/fixture/LiveDesktopTest.hpp"

#include <csignal>
#include <iostream>
#include <stdexcept>
#include <thread>

namespace quillane::soak {
namespace {

using namespace std::chrono_literals;
using Milliseconds = std::chrono::milliseconds;

constexpr int linesEvery = 50;

/// Copies, some of them in streams, and types until the moment has come.
void useUntil(SoakDesktop& soak, Copies::Clock::time_point end, std::mt19937& random) {
    while (Copies::Clock::now() < end) {
        live::require(soak.copies().copy(random), "the program that copies does not answer");
        soak.desktop().keyboard().press(live::Key::leftShift);
        soak.desktop().keyboard().type("abc");
        soak.desktop().keyboard().release(live::Key::leftShift);
        const auto pause = random() % 3 == 0 ? Milliseconds(600 + random() % 800) : Copies::streamPause;
        std::this_thread::sleep_until(std::min(end, Copies::Clock::now() + pause));
    }
}

} // namespace

bool killAtRandom(SoakDesktop& soak, int kills, unsigned seed) {
    std::mt19937 random(seed);
    int starting = 0;
    int problems = 0;
    soak.startAgent();
    static_cast<void>(soak.editors());
    soak.agent().process().end();
    for (int kill = 1; kill <= kills && problems < 10; ++kill) {
        try {
            if (random() % 4 == 0) {
                auto agent = soak.launchAgent();
                std::this_thread::sleep_for(Milliseconds(random() % 600));
                agent.signal(SIGKILL);
                static_cast<void>(agent.waitForExit(live::defaultTimeout));
                ++starting;
            } else {
                soak.startAgent();
                useUntil(soak, Copies::Clock::now() + Milliseconds(random() % 3'000), random);
                soak.agent().process().signal(SIGKILL);
                static_cast<void>(soak.agent().process().waitForExit(live::defaultTimeout));
            }
            soak.checkHistory();
            live::require(soak.desktop().screen().keysDown().none(), "a key is down");
        } catch (const std::exception& problem) {
            ++problems;
            std::cout << "PROBLEM " << problems << ", kill " << kill << ": " << problem.what() << std::endl;
        }
        soak.copies().forget(); // what was not due may be lost with a kill
        if (kill % linesEvery == 0 || kill == kills) {
            std::cout << kill << " kills, " << starting << " of them while it started, " << soak.copies().count()
                      << " copies, " << problems << " problems" << std::endl;
        }
    }
    try {
        soak.startAgent();
        soak.checkKeyboard(0);
    } catch (const std::exception& problem) {
        ++problems;
        std::cout << "PROBLEM " << problems << ", after the kills: " << problem.what() << std::endl;
    }
    return problems == 0;
}

} // namespace quillane::soak
