// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/LauncherContract.hpp"
#include "fakes/FakeLauncher.hpp"

#include <algorithm>

namespace quillane {
namespace {

class FakeLauncherDriver {
public:
    Launcher& launcher() { return fake_; }

    [[nodiscard]] static core::ProcessCommand command(const std::string& word) { return {"/bin/true", {word}}; }

    [[nodiscard]] core::ProcessCommand impossible() {
        fake_.fails = true;
        return {"/nowhere", {}};
    }

    [[nodiscard]] bool hasRun(const std::string& word) const {
        return std::ranges::any_of(fake_.launched,
                                   [&](const auto& command) { return command.arguments == std::vector{word}; });
    }

private:
    fakes::FakeLauncher fake_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, LauncherContract, FakeLauncherDriver);
} // namespace testing
} // namespace quillane
