// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/ClipboardPrivacy.hpp"
#include "core/clipboard/PasteboardAccess.hpp"
#include "core/clipboard/PasteboardContents.hpp"
#include "core/support/Subscription.hpp"
#include "platform/Workspace.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillane {

using core::PasteboardAccess;

/// The application in front when the pasteboard changed hands.
struct PasteboardSource {
    bool isKnown = true;                           ///< false if nobody can tell any more
    std::optional<RunningApplication> application; ///< none if there was none
};

/// The system's general pasteboard. Main thread. Nothing here waits for another program.
///
/// On a desktop where contents stay with the program that they were copied from, they are fetched in the background
/// when they change hands, and then read from memory. The change count moves when they change hands and not when they
/// have been fetched. Until then, and when there is no interest in them, when they are larger than an entry may be or
/// when their owner does not deliver them, the pasteboard reads as empty. What was on it before the program started is
/// not fetched.
class Pasteboard : public core::PasteboardContents {
public:
    /// Chooses which of the offered types will be read. Called for every change, after its first notice and perhaps
    /// more than once. Where it asks for the source marker, that is fetched before anything else, and the interest is
    /// asked again with its text, which is empty when there is none: what its source decides is then still with its
    /// owner.
    using Interest = std::function<std::vector<std::string_view>(const core::PasteboardTypeSet& types,
                                                                 const std::optional<std::string>& source)>;

    /// Replaces the interest, which exists only while copies are recorded. It applies to changes from now on. At first,
    /// and with an empty function, there is none.
    virtual void setInterest(Interest interest) = 0;

    /// Who was in front at the present change. None where that is whoever is in front when the change is noticed.
    [[nodiscard]] virtual std::optional<PasteboardSource> source() const { return std::nullopt; }

    /// Reads a setting that the system keeps; never asks the user.
    [[nodiscard]] virtual PasteboardAccess access() const { return PasteboardAccess::allowed; }

    /// Shows the page of the system's settings where the access is granted.
    virtual void openAccessSettings() {}

    /// Another program has changed the contents: announced as soon as they change hands, and once more, with the same
    /// change count, when the types of interest can be read or have been given up. A desktop that does not announce
    /// changes, such as macOS, never calls back: there, poll the change count.
    virtual core::Subscription onChanged([[maybe_unused]] std::function<void()> callback) { return {}; }
};

} // namespace quillane
