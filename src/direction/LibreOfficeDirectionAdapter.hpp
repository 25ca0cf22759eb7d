// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/WritingDirection.hpp"
#include "direction/AX.hpp"
#include "direction/DirectionServices.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace quillane {

/// Sets the direction of the paragraph at the cursor in LibreOffice Writer by pressing the direction button of its
/// formatting toolbar, which works even while the toolbar is too narrow to show it.
///
/// Main thread. Each step waits for Writer at most a few times, and the toolbars are read in as many steps as they
/// take. Writer is often busy, for example while it saves: unanswered requests are tried again for a second and a half.
class LibreOfficeDirectionAdapter {
public:
    LibreOfficeDirectionAdapter(DirectionServices services, DirectionReport report);

    LibreOfficeDirectionAdapter(const LibreOfficeDirectionAdapter&) = delete;
    LibreOfficeDirectionAdapter& operator=(const LibreOfficeDirectionAdapter&) = delete;

    /// Starts an attempt in place of a running one; LibreOffice must be in front.
    void apply(core::WritingDirection direction);

    /// Abandons the current attempt, silently. What has been pressed stays pressed.
    void cancelPending();

private:
    /// The state that the steps of one attempt share.
    struct Attempt {
        AXElement application;
        pid_t pid;
        core::WritingDirection direction;
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
    void begin(const Attempt& attempt);
    void search(const Attempt& attempt, const std::shared_ptr<Way>& way);
    void press(const Attempt& attempt, const AXElement& editor, const AXElement& button);
    void confirm(Attempt attempt);
    void refuse(Attempt attempt, const core::LocalizedText& reason);
    [[nodiscard]] bool answers(const Attempt& attempt) const;
    [[nodiscard]] bool isParagraph(const AXElement& element) const;

    DirectionServices services_;
    DirectionReport report_;
    std::int64_t operation_ = 0;                            ///< a step with another number is stale
    std::shared_ptr<void> alive_ = std::make_shared<int>(); // shared with pending steps
};

} // namespace quillane
