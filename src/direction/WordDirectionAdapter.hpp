// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Lifetime.hpp"
#include "direction/DirectionAdapter.hpp"
#include "direction/DirectionServices.hpp"

#include <cstdint>
#include <memory>
#include <optional>

namespace quillane {

/// Sets the direction of the paragraph at the cursor in Microsoft Word by pressing the direction button on the ribbon.
/// If a tab other than Home is selected, it opens Home first and waits for the button, at most two thirds of a second.
class WordDirectionAdapter final : public DirectionAdapter {
public:
    WordDirectionAdapter(DirectionServices services, DirectionReport report);

    void apply(core::WritingDirection direction, const core::SupportedApplication& word) override;

    /// Abandons the current attempt, silently.
    void cancelPending() override { ++operation_; }

private:
    struct Attempt {
        AXElement application;
        AXElement window;
        AXElement editor;
        pid_t pid;
        core::WritingDirection direction;
        const core::DirectionLabels& labels;
        std::int64_t operation;
    };

    [[nodiscard]] std::optional<AXElement> directionButton(const Attempt& attempt) const;
    [[nodiscard]] bool openHomeTab(const Attempt& attempt) const;
    void scheduleSearch(const Attempt& attempt, int run);
    void findAfterOpeningHome(const Attempt& attempt, int run);
    [[nodiscard]] bool isFocused(const Attempt& attempt) const;
    void execute(const AXElement& button, core::WritingDirection direction);

    DirectionServices services_;
    DirectionReport report_;
    std::int64_t operation_ = 0;
    core::Lifetime lifetime_;
};

} // namespace quillane
