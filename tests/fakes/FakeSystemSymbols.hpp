// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SystemSymbols.hpp"

#include <set>
#include <string>

namespace quillane::fakes {

/// Symbols that are plain discs, for the names that a test makes available.
class FakeSystemSymbols final : public SystemSymbols {
public:
    explicit FakeSystemSymbols(std::set<std::string, std::less<>> names = {"globe", "icloud.and.arrow.up"})
        : names_(std::move(names)) {}

    [[nodiscard]] std::optional<TemplateImage> image(std::string_view name, int pixels) const override {
        if (!names_.contains(name) || pixels < 1) {
            return std::nullopt;
        }
        TemplateImage result{pixels, pixels, 1, {}};
        for (int i = 0; i < pixels * pixels; ++i) {
            const double x = (i % pixels + 0.5) / pixels - 0.5;
            const double y = (i / pixels + 0.5) / pixels - 0.5;
            result.coverage.push_back(x * x + y * y < 0.2 ? std::byte{255} : std::byte{0});
        }
        return result;
    }

private:
    std::set<std::string, std::less<>> names_;
};

} // namespace quillane::fakes
