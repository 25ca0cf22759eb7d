// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "soak/Kills.hpp"
#include "soak/Soak.hpp"
#include "support/SmallDisk.hpp"

#include <charconv>
#include <iostream>
#include <optional>
#include <random>
#include <span>
#include <stdexcept>
#include <string_view>

namespace {

using namespace quillane;

struct Options {
    int minutes = 30;
    int kills = 0; ///< 0: no kills, but a soak
    unsigned seed = 0;
    std::filesystem::path folder;
};

template <typename Number>
bool read(std::string_view text, Number& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && number > 0;
}

std::optional<Options> parse(std::span<char*> words) {
    Options options;
    options.seed = std::random_device()();
    for (std::size_t i = 1; i < words.size(); ++i) {
        const std::string_view word = words[i];
        const std::string_view value = i + 1 < words.size() ? words[i + 1] : "";
        if (!word.starts_with("--")) {
            options.folder = std::filesystem::absolute(word); // programs of the desktop write there too
            continue;
        }
        const bool isRead = word == "--minutes" ? read(value, options.minutes)
                            : word == "--kills" ? read(value, options.kills)
                                                : word == "--seed" && read(value, options.seed);
        if (!isRead) {
            return std::nullopt;
        }
        ++i;
    }
    return options.folder.empty() ? std::nullopt : std::optional(options);
}

bool soakFor(const Options& options) {
    // Before there is a second thread.
    const bool hasDisk = live::separateMounts();
    soak::SoakDesktop desktop(hasDisk ? soak::SoakDesktop::Disk::small : soak::SoakDesktop::Disk::shared,
                              soak::SoakDesktop::Clock::adjustable);
    if (!hasDisk) {
        std::cout << "no full disk: the system permits no file system of its own" << std::endl;
    }
    if (desktop.clockFile().empty()) {
        std::cout << "no wrong clock: libfaketime is not installed" << std::endl;
    }
    bool holds = false;
    try {
        holds = soak::Soak(desktop, options.seed, options.folder).run(std::chrono::minutes(options.minutes));
    } catch (const std::exception& problem) {
        std::cout << "PROBLEM: " << problem.what() << std::endl;
    }
    std::error_code error;
    std::filesystem::copy(desktop.desktop().logFolder(), options.folder / "log",
                          std::filesystem::copy_options::recursive, error);
    return holds && !error;
}

bool killFor(const Options& options) {
    soak::SoakDesktop desktop(soak::SoakDesktop::Disk::shared, soak::SoakDesktop::Clock::real);
    return soak::killAtRandom(desktop, options.kills, options.seed);
}

} // namespace

int main(int argc, char** argv) {
    const auto options = parse({argv, static_cast<std::size_t>(argc)});
    if (!options) {
        std::cerr << "usage: quillane_soak [--minutes COUNT | --kills COUNT] [--seed NUMBER] FOLDER\n";
        return 2;
    }
    try {
        std::filesystem::create_directories(options->folder);
        std::cout << "seed " << options->seed << std::endl;
        const bool holds = options->kills > 0 ? killFor(*options) : soakFor(*options);
        std::cout << (holds ? "everything held" : "NOT everything held, seed " + std::to_string(options->seed))
                  << std::endl;
        return holds ? 0 : 1;
    } catch (const std::exception& problem) {
        std::cout << "PROBLEM: " << problem.what() << std::endl;
        return 1;
    }
}
