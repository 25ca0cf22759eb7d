// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "keyboard/Retyper.hpp"

#include "core/keyboard/RTLInputLanguage.hpp"

#include <algorithm>
#include <utility>

namespace quillane {

Retyper::Retyper(InputSources& sources) : sources_(sources) {}

void Retyper::start() {
    changes_ = sources_.onChanged([this] {
        noteCurrent();
        sourcesByUse_.reset();
    });
    noteCurrent();
}

std::optional<std::string> Retyper::retyped(std::string_view text) {
    if (!sourcesByUse_) {
        sourcesByUse_ = readSources();
    }
    const auto way = core::retyping::way(text, *sourcesByUse_);
    if (!way) {
        return std::nullopt;
    }
    auto result = core::retyping::retyped(text, (*sourcesByUse_)[way->from].layout, (*sourcesByUse_)[way->to].layout,
                                          core::retyping::CapsLock::off);
    return result == text ? std::nullopt : std::optional(std::move(result));
}

void Retyper::noteCurrent() {
    if (const auto current = sources_.current()) {
        std::erase(idsByUse_, current->id);
        idsByUse_.insert(idsByUse_.begin(), current->id);
    }
}

std::vector<core::retyping::Source> Retyper::readSources() const {
    auto enabled = sources_.enabled().value_or(std::vector<InputSource>());
    // Sources that have not been used yet follow in the system's order.
    std::ranges::stable_sort(enabled, {}, [this](const InputSource& source) {
        return std::ranges::find(idsByUse_, source.id) - idsByUse_.begin();
    });
    std::vector<core::retyping::Source> known;
    for (const auto& source : enabled) {
        if (auto layout = sources_.layout(source.id)) {
            known.push_back({core::rtlInputLanguage::isRightToLeft(source.languages), std::move(*layout)});
        }
    }
    return known;
}

} // namespace quillane
