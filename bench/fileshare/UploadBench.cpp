// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
//
// quillane_upload_bench [MEBIBYTES [ROUNDS]]
//
// Uploads one large file over loopback, alternating between the agent's own upload and `curl -T`, over http and over
// TLS, and prints medians: throughput, CPU time, and the memory that the agent's upload takes beyond an idle process;
// and how often a share window is drawn meanwhile.
#include "core/fileshare/FileShareUpload.hpp"
#include "fakes/FakeProxySettings.hpp"
#include "fileshare/SinkServer.hpp"
#include "fileshare/WindowBench.hpp"
#include "platform/common/ThreadFileExaminer.hpp"
#include "platform/common/curl/CurlUrlSessions.hpp"
#include "platform/common/qt/QtMainQueue.hpp"
#include "servers/NginxServer.hpp"
#include "support/Files.hpp"
#include "support/TemporaryFolder.hpp"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <random>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace quillane;
using Clock = std::chrono::steady_clock;

struct Run {
    double seconds = 0;    ///< of the transfer
    double cpuSeconds = 0; ///< of the process
    double peak = 0;       ///< MiB beyond idle
    bool succeeded = false;
};

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Runs a program to its end, with its output in the file, and measures its processor time.
Run measure(std::vector<std::string> arguments, const std::string& output) {
    std::vector<char*> pointers;
    for (auto& argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        const int file = ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        ::dup2(file, STDOUT_FILENO);
        ::execv(pointers[0], pointers.data());
        ::_exit(127);
    }
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    Run run{.cpuSeconds = seconds(usage.ru_utime) + seconds(usage.ru_stime),
            .succeeded = WIFEXITED(status) && WEXITSTATUS(status) == 0};
    std::ifstream(output) >> run.seconds >> run.peak;
    return run;
}

/// A line of /proc/self/status, in kibibytes.
long processMemory(const char* name) {
    std::ifstream file("/proc/self/status");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(name)) {
            return std::strtol(line.c_str() + std::strlen(name) + 1, nullptr, 10);
        }
    }
    return 0;
}

/// The measured child: one upload as the agent does it. Prints the time that it took, and how much more memory than
/// idle at its peak.
int upload(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QtMainQueue queue;
    CurlUrlSessions sessions(queue, std::make_shared<fakes::FakeProxySettings>());
    ThreadFileExaminer examiner(queue);
    core::UrlSessionConfiguration configuration;
    if (argc > 4) {
        configuration.certificateAuthorities = argv[4];
    }
    std::ofstream("/proc/self/clear_refs") << 5; // resets the peak (proc(5))
    const long idle = processMemory("VmRSS:");
    core::FileShareUpload transfer(sessions.factory(), examiner.examiner());
    int exitCode = 1;
    const auto begin = Clock::now();
    transfer.start(core::Url::fromFilePath(argv[3]), core::FileShareServer::validating(argv[2]).value(), configuration,
                   nullptr, [&](const core::FileShareUpload::Result& result) {
                       exitCode = result ? 0 : 1;
                       QCoreApplication::quit();
                   });
    QCoreApplication::exec();
    const std::chrono::duration<double> time = Clock::now() - begin;
    std::printf("%.6f %.2f\n", time.count(), static_cast<double>(processMemory("VmHWM:") - idle) / 1024);
    return exitCode;
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

std::string largeFile(const std::filesystem::path& folder, std::size_t mebibytes) {
    const auto path = folder / "file.bin";
    std::ofstream file(path, std::ios::binary);
    std::vector<char> block(1U << 20U);
    std::mt19937 random(1);
    for (std::size_t i = 0; i < mebibytes; ++i) {
        std::ranges::generate(block, [&] { return static_cast<char>(random()); });
        file.write(block.data(), static_cast<std::streamsize>(block.size()));
    }
    return path;
}

struct Figures {
    double throughput = 0; ///< MiB/s
    double cpu = 0;        ///< s
};

Figures figures(const std::vector<Run>& runs, std::size_t mebibytes) {
    std::vector<double> time;
    std::vector<double> cpu;
    for (const auto& run : runs) {
        time.push_back(run.seconds);
        cpu.push_back(run.cpuSeconds);
    }
    return {static_cast<double>(mebibytes) / median(time), median(cpu)};
}

/// Both in turn, so that other load affects both; false when an upload failed.
bool compare(const char* title, const std::string& address, const std::string& file, std::size_t mebibytes, int rounds,
             const std::filesystem::path& folder, const std::string& authority) {
    const auto output = folder / "output";
    const std::string self = std::filesystem::read_symlink("/proc/self/exe");
    std::vector<std::string> ours{self, "--upload", address, file};
    std::vector<std::string> theirs{
        "/usr/bin/curl", "--silent",    "--fail",           "--noproxy", "*",  "--output",
        "/dev/null",     "--write-out", "%{time_total}\\n", "-T",        file, address + "/file.bin"};
    if (!authority.empty()) {
        ours.push_back(authority);
        theirs.insert(theirs.end(), {"--cacert", authority});
    }
    std::array<std::vector<Run>, 2> runs;
    for (int round = 0; round < rounds; ++round) {
        runs[0].push_back(measure(ours, output));
        runs[1].push_back(measure(theirs, output));
        if (!runs[0].back().succeeded || !runs[1].back().succeeded) {
            std::printf("%s: an upload failed (%s)\n", title, runs[0].back().succeeded ? "curl" : "quillane");
            return false;
        }
    }
    double peak = 0;
    for (const auto& run : runs[0]) {
        peak = std::max(peak, run.peak);
    }
    const auto mine = figures(runs[0], mebibytes);
    const auto curl = figures(runs[1], mebibytes);
    std::printf("%-12s quillane %6.0f MiB/s, CPU %.2f s | curl -T %6.0f MiB/s, CPU %.2f s | throughput x%.2f, CPU "
                "x%.2f | peak above idle %.1f MiB\n",
                title, mine.throughput, mine.cpu, curl.throughput, curl.cpu, mine.throughput / curl.throughput,
                mine.cpu / curl.cpu, peak);
    return true;
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 3 && std::strcmp(argv[1], "--upload") == 0) {
        return upload(argc, argv);
    }
    if (argc == 4 && std::strcmp(argv[1], "--window") == 0) {
        return bench::uploadInWindow(argc, argv, argv[2], argv[3]);
    }
    const auto mebibytes = static_cast<std::size_t>(argc > 1 ? std::max(1L, std::strtol(argv[1], nullptr, 10)) : 1024);
    const int rounds = argc > 2 ? static_cast<int>(std::max(1L, std::strtol(argv[2], nullptr, 10))) : 5;
    const auto folder = live::TemporaryFolder::create("quillane-upload");
    bench::SinkServer sink;
    const auto nginx = servers::NginxServer::start(sink.port());
    if (!folder || !nginx) {
        std::fprintf(stderr, "%s\n", (folder ? nginx.error() : folder.error()).c_str());
        return 1;
    }
    const auto file = largeFile(folder->path(), mebibytes);
    const auto authority = nginx->authority().string();
    const auto tls = [](std::uint16_t port) { return "https://127.0.0.1:" + std::to_string(port) + "/forget"; };
    std::printf("%zu MiB, medians of %d rounds\n", mebibytes, rounds);
    const bool isDone =
        compare("http", "http://127.0.0.1:" + std::to_string(sink.port()), file, mebibytes, rounds, folder->path(),
                "") &&
        compare("https", tls(nginx->ports().https), file, mebibytes, rounds, folder->path(), authority) &&
        compare("https, h2", tls(nginx->ports().http2), file, mebibytes, rounds, folder->path(), authority);
    std::fflush(stdout);
    const std::string self = std::filesystem::read_symlink("/proc/self/exe");
    const auto output = folder->path() / "window.txt";
    const bool isDrawn =
        measure({self, "--window", "http://127.0.0.1:" + std::to_string(sink.port()), file}, output).succeeded;
    std::printf("%s", live::readFile(output).c_str());
    return isDone && isDrawn ? 0 : 1;
}
