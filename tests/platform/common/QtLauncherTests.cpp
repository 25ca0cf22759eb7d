// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/common/qt/QtLauncher.hpp"

#include "contracts/LauncherContract.hpp"
#include "support/TemporaryFolder.hpp"

#include <chrono>
#include <fstream>
#include <iterator>
#include <thread>

namespace quillane {
namespace {

class QtLauncherDriver {
public:
    Launcher& launcher() { return launcher_; }

    [[nodiscard]] core::ProcessCommand command(const std::string& word) const {
        return {"/bin/sh", {"-c", "printf %s \"$1\" >\"$2.new\" && mv \"$2.new\" \"$2\"", "sh", word, trace_.string()}};
    }

    [[nodiscard]] static core::ProcessCommand impossible() { return {"/nowhere/at/all", {}}; }

    [[nodiscard]] bool hasRun(const std::string& word) const {
        using namespace std::chrono_literals;
        for (int i = 0; i < 500 && !std::filesystem::exists(trace_); ++i) {
            std::this_thread::sleep_for(10ms);
        }
        std::ifstream in(trace_);
        return std::string(std::istreambuf_iterator<char>(in), {}) == word;
    }

private:
    live::TemporaryFolder files_;
    std::filesystem::path trace_ = files_.path() / "trace";
    QtLauncher launcher_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, LauncherContract, QtLauncherDriver);
} // namespace testing
} // namespace quillane
