// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/WritingDirection.hpp"
#include "direction/DirectionServices.hpp"

#include <optional>

namespace quillane {

/// Turns the paragraph at the cursor in LibreOffice Writer by pressing the direction button of its formatting toolbar,
/// which works even while the toolbar is too narrow to show it. All of it happens in one step.
class LibreOfficeDirectionAdapter {
public:
    LibreOfficeDirectionAdapter(DirectionServices services, DirectionReport report);

    LibreOfficeDirectionAdapter(const LibreOfficeDirectionAdapter&) = delete;
    LibreOfficeDirectionAdapter& operator=(const LibreOfficeDirectionAdapter&) = delete;

    /// Makes one attempt; LibreOffice must be in front.
    void apply(core::WritingDirection direction);

private:
    [[nodiscard]] bool isParagraph(const AXElement& element) const;
    [[nodiscard]] std::optional<AXElement> directionButton(const AXElement& window,
                                                           core::WritingDirection direction) const;

    DirectionServices services_;
    DirectionReport report_;
};

} // namespace quillane
