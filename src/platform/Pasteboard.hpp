// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/ClipboardPrivacy.hpp"
#include "core/clipboard/PasteboardAccess.hpp"
#include "core/clipboard/PasteboardContents.hpp"
#include "core/support/Subscription.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillane {

using core::PasteboardAccess;

/// The system's general pasteboard. Main thread. Nothing here waits for another program.
///
/// On a desktop where contents stay with the program that was copied from, they are fetched when they change hands, in
/// the background, and read from memory: the change count moves when they change hands and stays when they have been
/// fetched. Until then, when nobody is interested in them, when they are larger than an entry may be and when their
/// owner does not give them, the pasteboard reads as empty. What was on it before the program started is not fetched.
class Pasteboard : public core::PasteboardContents {
public:
    /// Says which of the types on offer will be read. Called for every change, after its first notice and perhaps more
    /// than once. Where it asks for the source marker, that is fetched before anything else, and the interest is asked
    /// again with its text, which is empty when there is none: what its source decides is then still with its owner.
    using Interest = std::function<std::vector<std::string_view>(const core::PasteboardTypeSet& types,
                                                                 const std::optional<std::string>& source)>;

    /// Replaces the interest, which there is only while copies are recorded. It holds for changes from now on. At
    /// first, and with an empty function, there is none.
    virtual void setInterest(Interest interest) = 0;

    /// Reads a setting that the system keeps; never asks the user.
    [[nodiscard]] virtual PasteboardAccess access() const { return PasteboardAccess::allowed; }

    /// Shows the page of the system's settings that the access is given on.
    virtual void openAccessSettings() {}

    /// Another program has changed the contents: given as soon as they change hands, and once more, with the same
    /// change count, when what is of interest can be read or has been given up. A desktop that does not announce
    /// changes, as macOS, never gives this notice: there the change count has to be looked at from time to time.
    virtual core::Subscription onChanged([[maybe_unused]] std::function<void()> callback) { return {}; }
};

} // namespace quillane
