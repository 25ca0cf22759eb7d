// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "soak/Copies.hpp"

#include <algorithm>
#include <array>
#include <fstream>
#include <thread>

#include <sys/stat.h>

namespace quillane::soak {
namespace {

using namespace std::chrono_literals;

constexpr auto dueAlone = 1s;
constexpr auto dueInStream = 3s;
constexpr auto writing = 500ms; ///< what the system may take for it
constexpr auto streamGap = 500ms;
constexpr auto toRead = 2s; ///< even by an agent on a busy machine

/// A picture of one pixel (PNG specification). What stands behind its end does not count.
constexpr std::array<unsigned char, 67> onePixel{
    0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0x00, 0x00, 0x0D, 0x49, 0x48, 0x44, 0x52, 0x00,
    0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x08, 0x00, 0x00, 0x00, 0x00, 0x3A, 0x7E, 0x9B, 0x55, 0x00,
    0x00, 0x00, 0x0A, 0x49, 0x44, 0x41, 0x54, 0x78, 0x9C, 0x63, 0x60, 0x00, 0x00, 0x00, 0x02, 0x00, 0x01,
    0x48, 0xAF, 0xA4, 0x71, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4E, 0x44, 0xAE, 0x42, 0x60, 0x82};

std::string markOf(int number) {
    return "copy-" + std::to_string(number) + ".";
}

/// Mostly a line, sometimes a document, seldom a book.
std::string filler(std::mt19937& random) {
    constexpr std::array<std::size_t, 8> sizes{0, 20, 40, 80, 200, 2'000, 40'000, 400'000};
    std::string text = "שלום hello مرحبا ";
    while (text.size() < sizes[random() % sizes.size()]) {
        text += static_cast<char>('a' + random() % 26);
    }
    return text;
}

Offer contentsOf(int number, const std::filesystem::path& home, std::mt19937& random) {
    const auto text = markOf(number) + ' ' + filler(random);
    switch (random() % 6) {
    case 0:
        return {{"text/html", "<p>" + text + "</p>"}, {"text/plain;charset=utf-8", text}, {"text/plain", text}};
    case 1:
        return {{"image/png", std::string(onePixel.begin(), onePixel.end()) + text}};
    case 2: {
        const auto file = home / (markOf(number) + "txt");
        std::ofstream(file) << text;
        return {{"text/uri-list", "file://" + file.string() + "\r\n"}};
    }
    default:
        return {{"text/plain;charset=utf-8", text}, {"text/plain", text}};
    }
}

} // namespace

tl::expected<Copies, std::string> Copies::start(live::LiveDesktop& desktop) {
    const auto pipe = desktop.home() / "copies";
    if (::mkfifo(pipe.c_str(), 0600) != 0) {
        return tl::unexpected(std::string("no named pipe"));
    }
    auto process = desktop.startProcess({QUILLANE_COPIER, pipe});
    if (!process) {
        return tl::unexpected(process.error());
    }
    return Copies(desktop, pipe, std::move(*process));
}

bool Copies::copy(std::mt19937& random) {
    ++number_;
    return record(contentsOf(number_, desktop_->home(), random));
}

bool Copies::copyLine() {
    ++number_;
    return record({{"text/plain;charset=utf-8", markOf(number_)}});
}

bool Copies::record(const Offer& contents) {
    if (!offer(contents)) {
        return false;
    }
    const auto now = Clock::now();
    static_cast<void>(says("read", toRead)); // else it is missing in the end
    made_.push_back({number_, now, suspended_ ? Clock::time_point::max() : now});
    return true;
}

bool Copies::copySecret() {
    ++number_;
    const auto text = "secret-" + std::to_string(number_) + ".";
    return offer({{"text/plain;charset=utf-8", text}, {"x-kde-passwordManagerHint", "secret"}});
}

bool Copies::offer(const Offer& contents) {
    std::this_thread::sleep_until(last_ + streamPause); // the rhythm of a user
    auto line = std::to_string(number_);
    std::vector<std::filesystem::path> files;
    for (const auto& [type, bytes] : contents) {
        files.push_back(desktop_->home() / ("offer-" + std::to_string(files.size())));
        std::ofstream(files.back(), std::ios::binary) << bytes;
        line += '\t' + type + '\t' + files.back().string();
    }
    std::ofstream(pipe_) << line << '\n' << std::flush;
    const bool isCopied = says("copied", live::defaultTimeout);
    last_ = Clock::now();
    return isCopied;
}

bool Copies::says(const std::string& word, std::chrono::milliseconds limit) const {
    const auto output = desktop_->logFolder() / std::filesystem::path(QUILLANE_COPIER).filename();
    const auto line = '\n' + word + ' ' + std::to_string(number_) + '\n';
    return live::waitUntil(
        [&] { return ('\n' + live::readFile(output.string() + ".out")).find(line) != std::string::npos; }, limit,
        std::chrono::milliseconds{2});
}

void Copies::suspend() {
    suspended_ = true;
    for (auto& made : made_) {
        if (Clock::now() - made.at < dueInStream + writing) {
            made.earliest = Clock::time_point::max();
        }
    }
}

void Copies::restore(std::chrono::milliseconds time) {
    suspended_ = false;
    const auto earliest = Clock::now() + time;
    for (auto& made : made_) {
        if (made.earliest == Clock::time_point::max()) {
            made.earliest = earliest;
        }
    }
}

std::vector<int> Copies::due(Clock::time_point now, std::size_t most) const {
    std::vector<int> numbers;
    for (auto i = made_.size() - std::min(most, made_.size()); i < made_.size(); ++i) {
        const bool isInStream = i + 1 < made_.size() && made_[i + 1].at - made_[i].at < streamGap;
        const auto wait = isInStream ? dueInStream : dueAlone;
        if (made_[i].earliest < now && made_[i].at + wait + writing < now) {
            numbers.push_back(made_[i].number);
        }
    }
    return numbers;
}

} // namespace quillane::soak
