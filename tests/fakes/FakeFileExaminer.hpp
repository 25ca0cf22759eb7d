// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/FileShareProtocol.hpp"

#include <utility>
#include <vector>

namespace quillane::fakes {

/// Asks the real disk inside the call or, while a test makes it unreachable, when it is back.
class FakeFileExaminer {
public:
    [[nodiscard]] core::FileExaminer examiner() {
        return [this](const core::Url& file, const std::function<void(const core::ExaminedFile&)>& completion) {
            if (isAway_) {
                waiting_.emplace_back(file, completion);
            } else {
                completion(core::fileShareProtocol::examine(file));
            }
        };
    }

    void goAway() { isAway_ = true; }

    /// Answers everything that was asked meanwhile.
    void comeBack() {
        isAway_ = false;
        for (const auto& [file, completion] : std::exchange(waiting_, {})) {
            completion(core::fileShareProtocol::examine(file));
        }
    }

private:
    bool isAway_ = false;
    std::vector<std::pair<core::Url, std::function<void(const core::ExaminedFile&)>>> waiting_;
};

} // namespace quillane::fakes
