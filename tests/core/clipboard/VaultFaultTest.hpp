// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/VaultTest.hpp"

#include <functional>
#include <iostream>

#include <sys/wait.h>
#include <unistd.h>

namespace quillane::core::testing {

inline constexpr int notPermitted = 77;

/// Runs the steps in a separate process, which may limit or rearrange itself. They return what went wrong, or nothing.
inline int inChild(const std::function<std::string()>& steps) {
    const pid_t child = fork();
    if (child == 0) {
        const auto problem = steps();
        std::cerr << problem << (problem.empty() ? "" : "\n");
        _exit(problem.empty() ? 0 : problem == "not permitted" ? notPermitted : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

inline std::vector<ClipboardEntry> manyEntries(int count, std::size_t bytes, double copiedAt) {
    std::vector<ClipboardEntry> entries;
    for (int i = 0; i < count; ++i) {
        entries.push_back(textEntry(std::to_string(i), copiedAt));
        entries.back().items = ClipboardItems{{{"public.png", std::vector<std::byte>(bytes)}}};
    }
    return entries;
}

class VaultFaultTest : public VaultTest {
protected:
    /// Everything that a failed save must leave: an error, the history in memory, and what was saved before.
    static std::string checkFailedSave(ClipboardVault& open, const std::vector<ClipboardEntry>& before,
                                       const std::vector<ClipboardEntry>& after, int systemError) {
        const auto copy = after;
        const auto result = open.save(after);
        if (result) {
            return "saving did not fail";
        }
        if (result.error().reason != VaultError::Reason::write || result.error().systemError != systemError) {
            return "another error: " + std::to_string(result.error().systemError);
        }
        if (after != copy) {
            return "the history in memory has changed";
        }
        if (open.load() != before) {
            return "the history on disk has changed";
        }
        return {};
    }
};

} // namespace quillane::core::testing
