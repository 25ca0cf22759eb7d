// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/WritingDirection.hpp"
#include "direction/DirectionServices.hpp"

#include <cstdint>
#include <memory>
#include <optional>

namespace quillane {

/// Turns the paragraph at the cursor in Microsoft Word by pressing the direction button on the ribbon. When another tab
/// than Home shows, it opens Home first and waits for the button, for two thirds of a second at the longest.
class WordDirectionAdapter {
public:
    WordDirectionAdapter(DirectionServices services, DirectionReport report);

    WordDirectionAdapter(const WordDirectionAdapter&) = delete;
    WordDirectionAdapter& operator=(const WordDirectionAdapter&) = delete;

    /// Starts an attempt; Word must be in front.
    void apply(core::WritingDirection direction);

    /// Gives up the attempt that runs, silently.
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
    std::shared_ptr<void> alive_ = std::make_shared<int>(); // shared with steps that are on their way
};

} // namespace quillane
