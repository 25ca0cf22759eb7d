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
        known_.reset();
    });
    noteCurrent();
}

std::optional<std::string> Retyper::retyped(std::string_view text) {
    const auto& sources = byUse().sources;
    const auto way = core::retyping::way(text, sources);
    if (!way) {
        return std::nullopt;
    }
    auto result = core::retyping::retyped(text, sources[way->from].layout, sources[way->to].layout,
                                          core::retyping::CapsLock::off);
    return result == text ? std::nullopt : std::optional(std::move(result));
}

std::optional<Retyper::Way> Retyper::way(std::string_view text) {
    const auto& known = byUse();
    const auto way = core::retyping::way(text, known.sources);
    return way ? std::optional(Way{known.ids[way->from], known.ids[way->to]}) : std::nullopt;
}

const core::KeyboardLayout* Retyper::layout(std::string_view id) {
    const auto& known = byUse();
    const auto found = std::ranges::find(known.ids, id);
    return found != known.ids.end() ? &known.sources[static_cast<std::size_t>(found - known.ids.begin())].layout
                                    : nullptr;
}

const Retyper::Known& Retyper::byUse() {
    if (!known_) {
        known_ = readSources();
    }
    return *known_;
}

void Retyper::noteCurrent() {
    if (const auto current = sources_.current()) {
        std::erase(idsByUse_, current->id);
        idsByUse_.insert(idsByUse_.begin(), current->id);
    }
}

Retyper::Known Retyper::readSources() const {
    auto enabled = sources_.enabled().value_or(std::vector<InputSource>());
    // Sources that have not been used yet follow in the system's order.
    std::ranges::stable_sort(enabled, {}, [this](const InputSource& source) {
        return std::ranges::find(idsByUse_, source.id) - idsByUse_.begin();
    });
    Known known;
    for (const auto& source : enabled) {
        if (auto layout = sources_.layout(source.id)) {
            known.ids.push_back(source.id);
            known.sources.push_back({core::rtlInputLanguage::isRightToLeft(source.languages), std::move(*layout)});
        }
    }
    return known;
}

} // namespace quillane
