// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/WritingDirection.hpp"
#include "direction/DirectionServices.hpp"

#include <cstdint>
#include <memory>
#include <optional>

namespace quillane {

/// Sets the direction of the paragraph at the cursor in Microsoft Word by pressing the direction button on the ribbon.
/// If a tab other than Home is selected, it opens Home first and waits for the button, at most two thirds of a second.
class WordDirectionAdapter {
public:
    WordDirectionAdapter(DirectionServices services, DirectionReport report);

    WordDirectionAdapter(const WordDirectionAdapter&) = delete;
    WordDirectionAdapter& operator=(const WordDirectionAdapter&) = delete;

    /// Starts an attempt; Word must be in front.
    void apply(core::WritingDirection direction);

    /// Abandons the current attempt, silently.
    void cancelPending() { ++operation_; }

private:
    struct Attempt {
        AXElement application;
        AXElement window;
        AXElement editor;
        pid_t pid;
        core::WritingDirection direction;
        std::int64_t operation;
    };

    [[nodiscard]] std::optional<AXElement> directionButton(const Attempt& attempt) const;
    [[nodiscard]] bool openHomeTab(const AXElement& window) const;
    void scheduleSearch(const Attempt& attempt, int run);
    void findAfterOpeningHome(const Attempt& attempt, int run);
    [[nodiscard]] bool isFocused(const Attempt& attempt) const;
    void execute(const AXElement& button, core::WritingDirection direction);

    DirectionServices services_;
    DirectionReport report_;
    std::int64_t operation_ = 0;
    std::shared_ptr<void> alive_ = std::make_shared<int>(); // shared with pending steps
};

} // namespace quillane
