// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/Measurement.hpp"

#include "core/clipboard/ClipboardEntry.hpp"
#include "core/clipboard/ClipboardSnapshot.hpp"

#include <array>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace quillane::bench {

namespace {

struct Close {
    void operator()(FILE* pipe) const { pclose(pipe); }
};

/// Bytes a second of `openssl speed`, which prints "+F:<number>:<algorithm>:<bytes a second>" with -mr.
double opensslSpeed() {
    const auto command = "openssl speed -mr -seconds 1 -bytes " +
                         std::to_string(core::clipboardSnapshot::maximumBytes) + " -evp sha256 2>/dev/null";
    const std::unique_ptr<FILE, Close> pipe(popen(command.c_str(), "r"));
    std::array<char, 512> line{};
    while (pipe && std::fgets(line.data(), line.size(), pipe.get())) {
        const std::string_view text(line.data());
        if (text.starts_with("+F:")) {
            return std::strtod(line.data() + text.rfind(':') + 1, nullptr);
        }
    }
    throw std::runtime_error("openssl speed gave no figure");
}

/// Processor time, as `openssl speed` counts it, so that other programs do not matter.
double processorSeconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double digestSpeed() {
    const core::ClipboardItems items{
        {{"public.png", std::vector<std::byte>(core::clipboardSnapshot::maximumBytes, std::byte{1})}}};
    std::size_t bytes = 0;
    const double begin = processorSeconds();
    double seconds = 0;
    while (seconds < 1) {
        static_cast<void>(core::clipboardDigest(core::ClipboardKind::image, items));
        bytes += core::clipboardSnapshot::maximumBytes;
        seconds = processorSeconds() - begin;
    }
    return static_cast<double>(bytes) / seconds;
}

} // namespace

bool measureDigest() {
    std::vector<double> ours;
    std::vector<double> theirs;
    std::vector<double> ratios;
    for (int round = 0; round < 5; ++round) {
        theirs.push_back(opensslSpeed());
        ours.push_back(digestSpeed());
        ratios.push_back(ours.back() / theirs.back());
    }
    std::printf("digest of the largest entry: %.0f MB/s, openssl speed SHA-256: %.0f MB/s\n", median(ours) / 1e6,
                median(theirs) / 1e6);
    return report("digest beside openssl speed SHA-256", median(ratios), "x", 0.9, true);
}

} // namespace quillane::bench
