// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Lifetime.hpp"
#include "direction/AX.hpp"
#include "direction/DirectionAdapter.hpp"
#include "direction/DirectionServices.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace quillane {

/// Sets the direction of the paragraph at the cursor, or of the selected cells, in the programs of LibreOffice by
/// pressing the direction button of the formatting toolbar, which works even while the toolbar is too narrow to show
/// it. The title of the window says which program it is.
///
/// Main thread. Each step waits for LibreOffice at most a few times, and the toolbars are read in as many steps as they
/// take. It is often busy, for example while it saves: unanswered requests are tried again for a second and a half.
class LibreOfficeDirectionAdapter final : public DirectionAdapter {
public:
    LibreOfficeDirectionAdapter(DirectionServices services, DirectionReport report);

    /// Takes the place of a running attempt.
    void apply(core::WritingDirection direction, const core::SupportedApplication& libreOffice) override;

    /// Abandons the current attempt, silently. What has been pressed stays pressed.
    void cancelPending() override;

private:
    /// The state that the steps of one attempt share.
    struct Attempt {
        AXElement application;
        pid_t pid;
        core::WritingDirection direction;
        const core::SupportedApplication* program; ///< the first one until the window is known
        std::int64_t operation;
        int run = 0; ///< counts retries
    };

    /// The way to the button: the window is searched for toolbars, and each toolbar separately.
    struct Way {
        AXElement editor;
        ax::TreeSearch window;
        std::vector<AXElement> toolbars; ///< not yet searched
        std::optional<ax::TreeSearch> toolbar;
    };

    void schedule(std::chrono::milliseconds delay, const Attempt& attempt, std::function<void()> step);
    void begin(Attempt attempt);
    void search(const Attempt& attempt, const std::shared_ptr<Way>& way);
    void press(const Attempt& attempt, const AXElement& editor, const AXElement& button);
    void confirm(Attempt attempt);
    void refuse(Attempt attempt, const core::LocalizedText& reason);
    [[nodiscard]] bool answers(const Attempt& attempt) const;

    DirectionServices services_;
    DirectionReport report_;
    std::int64_t operation_ = 0; ///< a step with another number is stale
    core::Lifetime lifetime_;
};

} // namespace quillane
