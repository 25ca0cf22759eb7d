// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/FileCache.hpp"
#include "clipboard/Measurement.hpp"

#include "core/clipboard/ClipboardHistory.hpp"
#include "core/clipboard/ClipboardVault.hpp"
#include "support/TemporaryFolder.hpp"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>

#include <fcntl.h>
#include <openssl/evp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillane::bench {

namespace {

using core::ClipboardEntry;
using core::ClipboardVault;

constexpr int entryCount = 200;
constexpr std::size_t entryBytes = 1'310'720; // 250 MiB together
constexpr double wholeBytes = static_cast<double>(entryBytes) * entryCount;

void require(bool condition, const char* problem) {
    if (!condition) {
        throw std::runtime_error(problem);
    }
}

/// On the disk that holds the working folder; the temporary folder may be in memory.
std::filesystem::path parentOnDisk() {
    return std::filesystem::current_path() / "build";
}

core::SecretBytes key() {
    return core::SecretBytes(std::vector(32, std::byte{5}));
}

ClipboardVault vaultIn(const std::filesystem::path& folder) {
    auto vault = ClipboardVault::open(folder, key());
    require(vault.has_value(), "the vault does not open");
    return std::move(*vault);
}

std::vector<std::byte> noise(std::size_t size) {
    static std::mt19937_64 random(1);
    std::vector<std::byte> bytes(size);
    for (auto& byte : bytes) {
        byte = static_cast<std::byte>(random());
    }
    return bytes;
}

ClipboardEntry image(std::size_t bytes, double date) {
    return ClipboardEntry::make(core::ClipboardKind::image, "", "com.example.draw", "Draw",
                                {{{"public.png", noise(bytes)}}}, core::Date{date});
}

struct FreeCipher {
    void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};

/// AES-256-GCM as such over a buffer, in place.
void cipher(std::vector<std::byte>& bytes, bool isEncrypting) {
    const std::unique_ptr<EVP_CIPHER_CTX, FreeCipher> context(EVP_CIPHER_CTX_new());
    const std::array<unsigned char, 32> secret{};
    const std::array<unsigned char, 12> nonce{};
    std::array<unsigned char, 16> tag{};
    int size = 0;
    auto* data = reinterpret_cast<unsigned char*>(bytes.data());
    EVP_CipherInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, secret.data(), nonce.data(), isEncrypting ? 1 : 0);
    EVP_CipherUpdate(context.get(), data, &size, data, static_cast<int>(bytes.size()));
    EVP_CipherFinal_ex(context.get(), data, &size); // an authentic tag is not what is measured
    EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_GET_TAG, isEncrypting ? 16 : 0, tag.data());
}

/// The minimum for writing a vault of this size: encrypting as many files, and flushing them to the disk.
double bareWriting(const std::filesystem::path& folder, std::vector<std::vector<std::byte>>& contents) {
    return secondsOf([&] {
        for (std::size_t i = 0; i < contents.size(); ++i) {
            cipher(contents[i], true);
            const auto name = folder / std::to_string(i);
            const auto temporary = folder / "temporary";
            const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
            require(write(file, contents[i].data(), contents[i].size()) == static_cast<ssize_t>(contents[i].size()) &&
                        fsync(file) == 0,
                    "the disk is full");
            close(file);
            std::filesystem::rename(temporary, name);
        }
    });
}

/// The minimum for reading it: reading the files into memory, and decrypting them.
double bareReading(const std::filesystem::path& folder, std::size_t count) {
    return secondsOf([&] {
        std::vector<std::vector<std::byte>> contents(count);
        for (std::size_t i = 0; i < count; ++i) {
            const int file = open((folder / std::to_string(i)).c_str(), O_RDONLY | O_CLOEXEC);
            struct stat status {};
            require(fstat(file, &status) == 0, "a file has gone");
            contents[i].resize(static_cast<std::size_t>(status.st_size));
            require(read(file, contents[i].data(), contents[i].size()) == status.st_size, "a file is cut short");
            close(file);
            cipher(contents[i], false);
        }
    });
}

/// Resident memory of this process in bytes, of "now" (VmRSS) or at its highest (VmHWM): proc(5).
double memory(const std::string& field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(field + ":")) {
            return std::strtod(line.c_str() + field.size() + 1, nullptr) * 1'024;
        }
    }
    throw std::runtime_error("no " + field);
}

} // namespace

bool measureSaving() {
    const live::TemporaryFolder folder(parentOnDisk());
    auto vault = vaultIn(folder.path());
    std::vector<ClipboardEntry> entries;
    entries.reserve(1'000);
    for (int i = 0; i < 1'000; ++i) {
        entries.push_back(image(2'048, i));
    }
    require(vault.save(entries).has_value(), "saving failed");
    const auto inodes = [&] {
        std::map<std::string, ino_t> found;
        for (const auto& file : std::filesystem::directory_iterator(folder.path())) {
            struct stat status {};
            stat(file.path().c_str(), &status);
            found[file.path().filename()] = status.st_ino;
        }
        return found;
    };
    std::vector<double> times;
    int maximum = 0;
    for (int run = 0; run < 31; ++run) {
        const auto before = inodes();
        entries.erase(entries.begin());
        entries.push_back(image(2'048, 1'000 + run));
        times.push_back(secondsOf([&] { require(vault.save(entries).has_value(), "saving failed"); }) * 1e3);
        int written = 0;
        for (const auto& [name, inode] : inodes()) {
            const auto known = before.find(name);
            written += known == before.end() || known->second != inode ? 1 : 0;
        }
        maximum = std::max(maximum, written);
    }
    const bool isFast = report("saving one new entry into a history of 1,000", median(times), "ms", 10);
    std::ranges::sort(times);
    std::printf("    fastest %.3f ms, slowest %.3f ms\n", times.front(), times.back());
    return report("files written by that", maximum, "", 2) && isFast;
}

bool measureWholeVault() {
    const live::TemporaryFolder folder(parentOnDisk());
    const auto vaultFolder = folder.path() / "vault";
    const auto bareFolder = folder.path() / "bare";
    std::filesystem::create_directory(bareFolder);
    std::vector<ClipboardEntry> entries;
    std::vector<std::vector<std::byte>> contents;
    for (int i = 0; i < entryCount; ++i) {
        entries.push_back(image(entryBytes, i));
        contents.push_back(noise(entryBytes));
    }
    auto vault = vaultIn(vaultFolder);
    std::vector<double> writing;
    std::vector<double> reading;
    for (int round = 0; round < 5; ++round) {
        // A rewrite replaces files that are there, in both.
        const double bareWrite = bareWriting(bareFolder, contents);
        vault.invalidateCache();
        const double write = secondsOf([&] { require(vault.save(entries).has_value(), "saving failed"); });
        sync();
        dropFileCache(bareFolder);
        const double bareRead = bareReading(bareFolder, contents.size());
        dropFileCache(vaultFolder);
        const double read = secondsOf([&] { require(vault.load().has_value(), "loading failed"); });
        std::printf("    rewrite %.3f s, AES-GCM and disk %.3f s; load %.3f s, AES-GCM and disk %.3f s\n", write,
                    bareWrite, read, bareRead);
        if (round > 0) { // the first one makes the files
            writing.push_back(write / bareWrite);
            reading.push_back(read / bareRead);
        }
    }
    const bool isWritingMet = report("full rewrite of 250 MiB beside AES-GCM and the disk", median(writing), "x", 1.5);
    return report("load of 250 MiB beside AES-GCM and the disk", median(reading), "x", 1.5) && isWritingMet;
}

bool measureMemory() {
    const live::TemporaryFolder folder(parentOnDisk());
    {
        // In a process of its own, so that what it has freed does not count for the one that loads.
        const pid_t writer = fork();
        if (writer == 0) {
            auto vault = vaultIn(folder.path());
            std::vector<ClipboardEntry> entries;
            entries.reserve(static_cast<std::size_t>(entryCount));
            for (int i = 0; i < entryCount; ++i) {
                entries.push_back(image(entryBytes, i));
            }
            _exit(vault.save(entries).has_value() ? 0 : 1);
        }
        int status = 0;
        waitpid(writer, &status, 0);
        require(status == 0, "saving failed");
    }
    const double before = memory("VmRSS");
    auto loaded = vaultIn(folder.path()).load();
    require(loaded.has_value(), "loading failed");
    const core::ClipboardHistory history(std::move(*loaded));
    require(static_cast<double>(history.byteCount()) == wholeBytes, "not everything has been loaded");
    const bool isMet = report("memory of a loaded history of 250 MiB beside its bytes",
                              (memory("VmRSS") - before) / wholeBytes, "x", 1.2);
    std::printf("    at its highest while loading: %.3f x\n", (memory("VmHWM") - before) / wholeBytes);
    return isMet;
}

} // namespace quillane::bench
