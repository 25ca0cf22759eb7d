// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11LayoutRegistry.hpp"

#include <algorithm>
#include <memory>

#include <malloc.h>
#include <unicode/uloc.h>
#include <xkbcommon/xkbregistry.h>

namespace quillane {

namespace {

struct Unref {
    void operator()(rxkb_context* context) const { rxkb_context_unref(context); }
};

std::string text(const char* value) {
    return value != nullptr ? value : std::string();
}

/// The two-letter code of a language where there is one; ICU knows both ISO 639 lists.
std::string shortLanguage(const std::string& code) {
    char buffer[ULOC_LANG_CAPACITY];
    UErrorCode error = U_ZERO_ERROR;
    uloc_getLanguage(code.c_str(), buffer, sizeof buffer, &error);
    return U_SUCCESS(error) && error != U_STRING_NOT_TERMINATED_WARNING ? buffer : code;
}

/// The layout's own short code first: its list of languages is sometimes in another order, or of a related language.
std::vector<std::string> languages(rxkb_layout* layout) {
    std::vector<std::string> found;
    const auto add = [&](const std::string& code) {
        if (!code.empty() && std::ranges::find(found, code) == found.end()) {
            found.push_back(code);
        }
    };
    add(shortLanguage(text(rxkb_layout_get_brief(layout))));
    for (auto* code = rxkb_layout_get_iso639_first(layout); code != nullptr; code = rxkb_iso639_code_next(code)) {
        add(shortLanguage(text(rxkb_iso639_code_get_code(code))));
    }
    return found;
}

bool matches(const X11LayoutQuery& query, rxkb_layout* layout) {
    if (query.layout.name.empty()) {
        return query.description == text(rxkb_layout_get_description(layout));
    }
    return query.layout.name == text(rxkb_layout_get_name(layout)) &&
           query.layout.variant == text(rxkb_layout_get_variant(layout));
}

std::vector<X11LayoutFacts> readRegistry(std::span<const X11LayoutQuery> queries) {
    std::vector<X11LayoutFacts> facts(queries.size());
    const std::unique_ptr<rxkb_context, Unref> context(rxkb_context_new(RXKB_CONTEXT_LOAD_EXOTIC_RULES));
    if (context && rxkb_context_parse(context.get(), "evdev")) {
        for (auto* layout = rxkb_layout_first(context.get()); layout != nullptr; layout = rxkb_layout_next(layout)) {
            for (std::size_t i = 0; i < queries.size(); ++i) {
                if (facts[i].description.empty() && matches(queries[i], layout)) {
                    facts[i] = {{text(rxkb_layout_get_name(layout)), text(rxkb_layout_get_variant(layout))},
                                text(rxkb_layout_get_description(layout)),
                                languages(layout)};
                }
            }
        }
    }
    return facts;
}

} // namespace

std::vector<X11LayoutFacts> lookUpLayouts(std::span<const X11LayoutQuery> queries) {
    auto facts = readRegistry(queries);
    malloc_trim(0); // otherwise the allocator keeps the 3 MB that the registry used
    return facts;
}

} // namespace quillane
