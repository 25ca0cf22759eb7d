// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FilePanel.hpp"

#include <optional>
#include <utility>

namespace quillane::fakes {

/// A panel in which a test confirms or cancels.
class FakeFilePanel final : public FilePanel {
public:
    void chooseFile(const Texts& texts, Chosen chosen, Dropped dropped) override {
        ++requests;
        if (!open) {
            open = texts;
            chosen_ = std::move(chosen);
            dropped_ = std::move(dropped);
        }
    }

    void setTexts(const Texts& texts) override {
        if (open) {
            open = texts;
        }
    }

    void confirm(const std::filesystem::path& file) {
        open.reset();
        std::exchange(chosen_, nullptr)(file);
    }

    /// Drops URLs on the panel; what it shows then.
    std::optional<core::LocalizedText> drop(const std::vector<std::string>& urls) {
        const auto accepted = dropped_(urls);
        if (!accepted) {
            cancel();
        }
        return accepted;
    }

    void cancel() {
        open.reset();
        chosen_ = nullptr;
        dropped_ = nullptr;
    }

    std::optional<Texts> open; ///< the texts of the open panel
    int requests = 0;          ///< calls of chooseFile

private:
    Chosen chosen_;
    Dropped dropped_;
};

} // namespace quillane::fakes
