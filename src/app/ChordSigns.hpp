// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/ChordSign.hpp"
#include "core/preferences/AppPreferences.hpp"
#include "core/support/Lifetime.hpp"
#include "platform/Platform.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace quillane {

/// The sign on the screen.
class ChordSignView {
public:
    virtual ~ChordSignView() = default;

    /// Shows it at the text cursor, or at the pointer where that is not known, and announces it.
    virtual void present(const core::ChordSign& sign, core::AppLanguage language,
                         const std::optional<AXRect>& caret) = 0;

    virtual void dismiss() = 0;
};

/// Shows for a moment beside the text cursor what a chord did, unless the user has switched that off. Main thread.
class ChordSigns {
public:
    using ViewMaker = std::function<std::unique_ptr<ChordSignView>()>;

    /// The view is made on first use.
    ChordSigns(const Platform& platform, const core::AppPreferences& preferences, ViewMaker makeView)
        : platform_(platform), preferences_(preferences), makeView_(std::move(makeView)) {}

    /// Replaces what is shown. Returns at once: where the cursor is, is asked afterwards.
    void show(const core::ChordOutcome& outcome);

    /// Nothing is shown any more, nor what was about to be.
    void dismiss();

    /// The same, for good: views end before the application object.
    void end();

private:
    void present(const core::ChordSign& sign);

    const Platform& platform_;
    const core::AppPreferences& preferences_;
    ViewMaker makeView_;
    std::unique_ptr<ChordSignView> view_;
    std::uint64_t current_ = 0; ///< number of the latest sign; what waits for another one is stale
    core::Lifetime lifetime_;
};

} // namespace quillane
