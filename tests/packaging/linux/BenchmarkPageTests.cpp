// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "packaging/linux/Tools.hpp"

#include <gmock/gmock.h>

namespace quillane::packaging {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

/// Runs scripts/lib/benchmarks in a folder with programs that print what those of bench/ do.
class BenchmarkPageTest : public ::testing::Test {
protected:
    BenchmarkPageTest() {
        write("docs/benchmarks.md", "# Benchmarks\n\n<!-- figures begin: written by scripts/bench -->\nold\n"
                                    "<!-- figures end -->\nafter\n");
    }

    void write(const std::string& name, const std::string& content) const {
        const auto file = folder_.path() / name;
        std::filesystem::create_directories(file.parent_path());
        ASSERT_TRUE(live::writeFile(file, content));
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    }

    [[nodiscard]] std::string read(const std::string& name) const { return live::readFile(folder_.path() / name); }

    [[nodiscard]] live::CommandResult benchmarks(const std::string& arguments) const {
        return run({"sh", "-c",
                    "cd '" + folder_.path().string() + "' && exec python3 '" +
                        (source / "scripts/lib/benchmarks").string() + "' " + arguments});
    }

private:
    live::TemporaryFolder folder_ = live::TemporaryFolder::create("quillane-benchmarks-").value();
};

TEST_F(BenchmarkPageTest, HasMediansAndSpreadOfEveryRoundAndAChart) {
    // Each round is slower than the one before.
    write("build/release/bench/startup/quillane_startup_bench",
          "#!/bin/sh\necho >> rounds\nn=$(wc -l < rounds)\n"
          "echo \"start to the first answer          quillane   median     1$n.0 ms   best     9.0 ms   runs 3\"\n"
          "echo \"start to the first answer          copyq      median     2$n.0 ms   best    19.0 ms   runs 3\"\n"
          "echo \"start to the first answer          quillane / copyq 0.77\"\n");
    const auto result = benchmarks("--rounds 3 starting");
    ASSERT_TRUE(result.succeeded()) << result.output << result.errors;
    EXPECT_THAT(read("docs/benchmarks.md"),
                AllOf(HasSubstr("| start to the first answer | ms | 12.0 (11.0 to 13.0) | copyq 22.0 (21.0 to 23.0) |"),
                      HasSubstr("3 rounds"), HasSubstr("images/bench-starting.svg"), HasSubstr("\nafter\n"),
                      Not(HasSubstr("old"))));
    EXPECT_THAT(read("docs/images/bench-starting.svg"), AllOf(HasSubstr("12.0 (11.0 to 13.0)"), HasSubstr("copyq")));
}

TEST_F(BenchmarkPageTest, ReadsFiguresOfBothProgramsFromALineAndThoseOfOurs) {
    write(
        "build/release/bench/clipboard/quillane_copying_bench",
        "#!/bin/sh\ncat <<'E'\n"
        "copy of 1 KB to entry, median of 20                        4.2 ms      12.5 ms   goal below 10 ms\n"
        "hot key to painted panel                                  31.0 ms                goal below 50 ms (the first "
        "time: 45.0 ms)\n"
        "peak memory                                                112 MiB      204 MiB   goal below 120 MiB\nE\n");
    ASSERT_TRUE(benchmarks("--rounds 1 copying").succeeded());
    EXPECT_THAT(read("docs/benchmarks.md"),
                AllOf(HasSubstr("| copy of 1 KB to entry, median of 20 | ms | 4.20 | copyq 12.5 |"),
                      HasSubstr("| hot key to painted panel | ms | 31.0 | - |"),
                      HasSubstr("| peak memory | MiB | 112 | copyq 204 |")));
}

TEST_F(BenchmarkPageTest, FailsWhenAProgramPrintsNoFigure) {
    write("build/release/bench/startup/quillane_startup_bench", "#!/bin/sh\necho 'no display' >&2\nexit 1\n");
    const auto result = benchmarks("--rounds 1 starting");
    EXPECT_FALSE(result.succeeded());
    EXPECT_THAT(result.errors, HasSubstr("printed no figure"));
}

} // namespace
} // namespace quillane::packaging
