// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/XkbLayoutReader.hpp"

#include <QString>

#include <array>
#include <clocale>
#include <memory>
#include <string>
#include <string_view>

#include <xkbcommon/xkbcommon-compose.h>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

namespace quillane {

namespace {

struct Unref {
    void operator()(xkb_context* context) const { xkb_context_unref(context); }

    void operator()(xkb_compose_table* table) const { xkb_compose_table_unref(table); }

    void operator()(xkb_compose_state* state) const { xkb_compose_state_unref(state); }
};

bool isDeadKey(std::uint32_t keysym) {
    return keysym >= XKB_KEY_dead_grave && keysym <= XKB_KEY_dead_longsolidusoverlay;
}

/// The locale that names the Compose file. That of "C" holds Latin-1 only, and desktops in it use UTF-8 all the same.
std::string composeLocale() {
    const std::string_view locale = std::setlocale(LC_CTYPE, nullptr);
    return locale == "C" || locale == "POSIX" ? "en_US.UTF-8" : std::string(locale);
}

/// What two key symbols compose, by a table that is loaded when it is first asked.
class Composition {
public:
    std::u32string operator()(std::uint32_t dead, std::uint32_t next) {
        load();
        if (!state_) {
            return {};
        }
        xkb_compose_state_reset(state_.get());
        xkb_compose_state_feed(state_.get(), dead);
        xkb_compose_state_feed(state_.get(), next);
        if (xkb_compose_state_get_status(state_.get()) != XKB_COMPOSE_COMPOSED) {
            return {};
        }
        std::array<char, 64> text{};
        xkb_compose_state_get_utf8(state_.get(), text.data(), text.size());
        return QString::fromUtf8(text.data()).toStdU32String();
    }

private:
    void load() {
        if (isLoaded_) {
            return;
        }
        isLoaded_ = true;
        const std::unique_ptr<xkb_context, Unref> context(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES));
        if (!context) {
            return;
        }
        const std::unique_ptr<xkb_compose_table, Unref> table(
            xkb_compose_table_new_from_locale(context.get(), composeLocale().c_str(), XKB_COMPOSE_COMPILE_NO_FLAGS));
        if (table) {
            state_.reset(xkb_compose_state_new(table.get(), XKB_COMPOSE_STATE_NO_FLAGS));
        }
    }

    bool isLoaded_ = false;
    std::unique_ptr<xkb_compose_state, Unref> state_; ///< null when the locale has no Compose file
};

} // namespace

core::KeyboardLayout readXkbLayout(const std::function<std::uint32_t(const core::KeyStroke&)>& keysym) {
    Composition composition;
    return core::KeyboardLayout::read(
        [&](const core::KeyStroke& stroke) -> core::KeyboardLayout::Output {
            const auto symbol = keysym(stroke);
            if (isDeadKey(symbol)) {
                return {composition(symbol, XKB_KEY_space), true};
            }
            const auto character = static_cast<char32_t>(xkb_keysym_to_utf32(symbol));
            return {character < U' ' ? std::u32string() : std::u32string(1, character), false};
        },
        [&](const core::KeyStroke& dead, const core::KeyStroke& next) {
            return composition(keysym(dead), keysym(next));
        });
}

} // namespace quillane
