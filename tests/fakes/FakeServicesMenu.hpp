// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ServicesMenu.hpp"
#include "support/Journal.hpp"

#include <stdexcept>
#include <utility>

namespace quillane::fakes {

/// A services menu that a test chooses from.
class FakeServicesMenu final : public ServicesMenu {
public:
    void provideShare(Share share) override {
        note(journal, "provideShare");
        share_ = std::move(share);
    }

    [[nodiscard]] bool isOffered() const { return share_ != nullptr; }

    /// Another program shares its selection; returns the error that it gets.
    std::optional<std::string> chooseShare(const std::vector<std::string>& urls) {
        if (!share_) {
            throw std::logic_error("Nobody provides this service");
        }
        return share_(urls);
    }

    [[nodiscard]] std::optional<bool> hasUserEntry() const override {
        return canHaveUserEntry ? std::optional(userEntry.has_value()) : std::nullopt;
    }

    bool setUserEntry(const std::optional<std::string>& title) override {
        userEntry = title;
        return canHaveUserEntry;
    }

    bool canHaveUserEntry = false;        ///< as where the file manager takes an entry from its user only
    std::optional<std::string> userEntry; ///< its title
    Journal* journal = nullptr;           ///< none: nothing is recorded

private:
    Share share_;
};

} // namespace quillane::fakes
