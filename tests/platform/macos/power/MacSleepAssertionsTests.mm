// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/power/MacSleepAssertions.hpp"

#include "contracts/SleepAssertionsContract.hpp"

#include <array>
#include <cstdio>
#include <memory>
#include <set>
#include <string>

#include <unistd.h>

namespace quillane {
namespace {

/// Looks at the system's list of assertions as pmset(1) prints it: one line for each, with the process that holds it.
class MacSleepAssertionsDriver {
public:
    core::SleepAssertionClient& client() { return client_; }

    [[nodiscard]] static bool holds(const std::multiset<core::SleepAssertionKind>& kinds) { return held() == kinds; }

private:
    static std::multiset<core::SleepAssertionKind> held() {
        std::multiset<core::SleepAssertionKind> kinds;
        const std::unique_ptr<FILE, int (*)(FILE*)> list(popen("/usr/bin/pmset -g assertions", "r"), pclose);
        const auto own = "pid " + std::to_string(getpid()) + "(";
        std::array<char, 1024> buffer{};
        while (list && fgets(buffer.data(), buffer.size(), list.get()) != nullptr) {
            const std::string line(buffer.data());
            if (line.find(own) == std::string::npos) {
                continue;
            }
            if (line.find("PreventUserIdleDisplaySleep") != std::string::npos) {
                kinds.insert(core::SleepAssertionKind::display);
            } else if (line.find("PreventUserIdleSystemSleep") != std::string::npos) {
                kinds.insert(core::SleepAssertionKind::system);
            }
        }
        return kinds;
    }

    MacSleepAssertions client_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, SleepAssertionsContract, MacSleepAssertionsDriver);
} // namespace testing
} // namespace quillane
