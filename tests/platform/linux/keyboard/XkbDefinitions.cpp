// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/XkbDefinitions.hpp"

#include "core/keyboard/RTLInputLanguage.hpp"
#include "platform/linux/keyboard/X11KeyCodes.hpp"
#include "platform/linux/keyboard/X11LayoutRegistry.hpp"
#include "platform/linux/keyboard/XkbLayoutReader.hpp"

#include <QString>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>

#include <xkbcommon/xkbcommon-compose.h>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>
#include <xkbcommon/xkbregistry.h>

namespace quillane::testing {

namespace {

template <auto unref>
struct Unref {
    template <typename Object>
    void operator()(Object* object) const {
        unref(object);
    }
};

using Context = std::unique_ptr<xkb_context, Unref<xkb_context_unref>>;
using Keymap = std::unique_ptr<xkb_keymap, Unref<xkb_keymap_unref>>;
using State = std::unique_ptr<xkb_state, Unref<xkb_state_unref>>;
using ComposeTable = std::unique_ptr<xkb_compose_table, Unref<xkb_compose_table_unref>>;
using Compose = std::unique_ptr<xkb_compose_state, Unref<xkb_compose_state_unref>>;
using Registry = std::unique_ptr<rxkb_context, Unref<rxkb_context_unref>>;

std::vector<X11LayoutQuery> allLayouts() {
    std::vector<X11LayoutQuery> all;
    const Registry registry(rxkb_context_new(RXKB_CONTEXT_LOAD_EXOTIC_RULES));
    if (!registry || !rxkb_context_parse(registry.get(), "evdev")) {
        return all;
    }
    for (auto* layout = rxkb_layout_first(registry.get()); layout != nullptr; layout = rxkb_layout_next(layout)) {
        const char* variant = rxkb_layout_get_variant(layout);
        all.push_back({{rxkb_layout_get_name(layout), variant != nullptr ? variant : ""}, {}});
    }
    return all;
}

/// One keyboard with one layout, driven through libxkbcommon.
class XkbKeyboard {
public:
    XkbKeyboard(xkb_context& context, xkb_compose_table& compose, const X11Layout& layout)
        : compose_(xkb_compose_state_new(&compose, XKB_COMPOSE_STATE_NO_FLAGS)) {
        const xkb_rule_names names{"evdev", "pc105", layout.name.c_str(), layout.variant.c_str(), ""};
        keymap_.reset(xkb_keymap_new_from_names(&context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
        if (keymap_) {
            state_.reset(xkb_state_new(keymap_.get()));
        }
    }

    [[nodiscard]] bool isCompiled() const { return state_ != nullptr; }

    /// The key symbol of a stroke; 0 when AltGr makes no difference to the key.
    [[nodiscard]] std::uint32_t keysym(const core::KeyStroke& stroke) const {
        const auto keycode = x11KeyCodes::keycode(stroke.keyCode);
        if (!keycode) {
            return XKB_KEY_NoSymbol;
        }
        const auto bit = [&](const char* name, bool isDown) {
            return isDown ? 1U << xkb_keymap_mod_get_index(keymap_.get(), name) : 0U;
        };
        const auto altGr = bit("Mod5", stroke.option);
        xkb_state_update_mask(state_.get(), bit(XKB_MOD_NAME_SHIFT, stroke.shift) | altGr, 0,
                              bit(XKB_MOD_NAME_CAPS, stroke.capsLock), 0, 0, 0);
        const auto used = xkb_state_key_get_consumed_mods2(state_.get(), *keycode, XKB_CONSUMED_MODE_XKB);
        return (used & altGr) == altGr ? xkb_state_key_get_one_sym(state_.get(), *keycode) : XKB_KEY_NoSymbol;
    }

    [[nodiscard]] std::u32string typed(const core::KeyStroke& stroke) const {
        const auto symbol = keysym(stroke);
        xkb_compose_state_reset(compose_.get());
        xkb_compose_state_feed(compose_.get(), symbol);
        if (xkb_compose_state_get_status(compose_.get()) == XKB_COMPOSE_COMPOSING) {
            xkb_compose_state_feed(compose_.get(), XKB_KEY_space);
        }
        std::array<char, 64> text{};
        if (xkb_compose_state_get_status(compose_.get()) == XKB_COMPOSE_COMPOSED) {
            xkb_compose_state_get_utf8(compose_.get(), text.data(), text.size());
        } else {
            xkb_keysym_to_utf8(symbol, text.data(), text.size());
        }
        return QString::fromUtf8(text.data()).toStdU32String();
    }

private:
    Keymap keymap_;
    State state_;
    Compose compose_;
};

std::string nameOf(const X11Layout& layout) {
    return layout.variant.empty() ? layout.name : layout.name + "(" + layout.variant + ")";
}

XkbDefinition define(const XkbKeyboard& keyboard, const X11Layout& layout) {
    XkbDefinition definition{.name = nameOf(layout)};
    definition.layout = readXkbLayout([&](const core::KeyStroke& stroke) { return keyboard.keysym(stroke); });
    for (const auto key : core::typingKeys()) {
        for (unsigned modifiers = 0; modifiers < 8; ++modifiers) {
            const core::KeyStroke stroke{key, (modifiers & 1U) != 0, (modifiers & 2U) != 0, (modifiers & 4U) != 0};
            if (auto text = keyboard.typed(stroke); !text.empty() && text.front() >= U' ') {
                definition.typed.emplace(stroke, std::move(text));
            }
        }
    }
    return definition;
}

} // namespace

XkbDefinitions readXkbDefinitions(const std::set<std::string>& names) {
    XkbDefinitions definitions;
    const Context context(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    const ComposeTable compose(
        xkb_compose_table_new_from_locale(context.get(), "en_US.UTF-8", XKB_COMPOSE_COMPILE_NO_FLAGS));
    if (!context || !compose) {
        ADD_FAILURE() << "libxkbcommon has no context or no Compose file";
        return definitions;
    }
    for (const auto& [layout, description, languages] : lookUpLayouts(allLayouts())) {
        const bool isRightToLeft = core::rtlInputLanguage::isRightToLeft(languages);
        const bool isMeant = isRightToLeft || std::ranges::find(languages, "en") != languages.end();
        if (!isMeant || (!names.empty() && !names.contains(nameOf(layout)))) {
            continue;
        }
        const XkbKeyboard keyboard(*context, *compose, layout);
        if (!keyboard.isCompiled()) {
            ADD_FAILURE() << description << " does not compile";
            continue;
        }
        (isRightToLeft ? definitions.rightToLeft : definitions.english).push_back(define(keyboard, layout));
    }
    return definitions;
}

} // namespace quillane::testing
