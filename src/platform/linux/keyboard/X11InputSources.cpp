// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11InputSources.hpp"

#include "platform/common/qt/QtLauncher.hpp"
#include "platform/linux/keyboard/XkbLayoutReader.hpp"
#include "platform/linux/system/AccessibilityPanel.hpp"
#include "platform/linux/x11/X11Xkb.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace quillane {

namespace {

constexpr std::chrono::seconds startTimeout{5};
constexpr std::uint32_t maximumPropertyLength = 1024; ///< in words
constexpr std::size_t maximumGroups = 4;              ///< of an XKB map
constexpr std::size_t layoutField = 2;                ///< of _XKB_RULES_NAMES: rules, model, layout, variant, options
constexpr std::size_t variantField = 3;

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    std::size_t begin = 0;
    while (begin <= text.size() && !text.empty()) {
        const auto end = std::min(text.find(separator, begin), text.size());
        parts.emplace_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

/// The layouts in the value of _XKB_RULES_NAMES, "rules\0model\0us,ara\0,mac\0options\0".
std::vector<X11Layout> parseRulesNames(std::string_view value) {
    const auto fields = split(value, '\0');
    if (fields.size() <= layoutField) {
        return {};
    }
    const auto names = split(fields[layoutField], ',');
    const auto variants = fields.size() > variantField ? split(fields[variantField], ',') : std::vector<std::string>();
    std::vector<X11Layout> layouts;
    for (std::size_t i = 0; i < names.size(); ++i) {
        layouts.push_back({names[i], i < variants.size() ? variants[i] : std::string()});
    }
    return layouts;
}

std::string identifier(const X11Layout& layout) {
    return layout.variant.empty() ? layout.name : layout.name + "(" + layout.variant + ")";
}

} // namespace

X11InputSources::X11InputSources(X11Connection& connection, X11Keyboard& keyboard)
    : connection_(connection),
      keyboard_(keyboard),
      notices_(keyboard.onLayoutNotice([this] { stale_ = true; })),
      readings_(keyboard.onCurrent([this] { loadIfStale(); })),
      groups_(keyboard.onGroupChanged([this](X11Keyboard::Cause cause) {
          switchedByKey_ = cause == X11Keyboard::Cause::key;
          announce();
      })),
      keys_(keyboard.onKey([this](const X11RawEvent&) { handleKey(); })),
      events_(connection.onEvent([this](const xcb_generic_event_t& event) { handleEvent(event); })),
      turns_(connection.onTurnEnd([this] {
          if (std::exchange(announces_, false)) {
              changes_.notify();
          }
      })) {
    constexpr std::array<std::string_view, 1> names{"_XKB_RULES_NAMES"};
    rulesNames_ = connection.internAtoms(names).front();
    connection.selectRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
    loadIfStale();
    connection.settle(startTimeout);
}

void X11InputSources::handleKey() {
    constexpr auto modifiers = ~core::flags::capsLock;
    const bool down = (keyboard_.flags() & modifiers) != 0;
    if (down && !modifiersWereDown_) {
        switchedByKey_ = false;
    }
    modifiersWereDown_ = down;
}

void X11InputSources::handleEvent(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) == XCB_PROPERTY_NOTIFY) {
        const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (property.window == connection_.root() && property.atom == rulesNames_) {
            stale_ = true;
            loadIfStale();
        }
    }
}

void X11InputSources::loadIfStale() {
    const auto groups = std::min<std::size_t>(keyboard_.keymap().groupCount(), maximumGroups);
    // Reading the registry for a map that is about to change would be wasted.
    if (!isLoading_ && keyboard_.isCurrent() && (stale_ || groups != groupNames_.size())) {
        stale_ = false;
        load();
    }
}

/// Once for all changes of a turn: another client may switch groups without end.
void X11InputSources::announce() {
    if (connection_.isDispatching()) {
        announces_ = true;
    } else {
        changes_.notify();
    }
}

void X11InputSources::load() {
    isLoading_ = true;
    const auto cookie = xcb_get_property(connection_.raw(), 0, connection_.root(), rulesNames_, XCB_ATOM_STRING, 0,
                                         maximumPropertyLength);
    connection_.await<xcb_get_property_reply_t>(cookie, lifetime_, [this](const xcb_get_property_reply_t* reply) {
        if (connection_.isLost()) {
            stale_ = true;
            finishLoading();
            return;
        }
        layouts_.clear();
        if (reply != nullptr && reply->format == 8) {
            layouts_ = parseRulesNames({static_cast<const char*>(xcb_get_property_value(reply)),
                                        static_cast<std::size_t>(xcb_get_property_value_length(reply))});
        }
        loadGroupNames();
    });
    connection_.flush();
}

void X11InputSources::loadGroupNames() {
    const auto cookie = xcb_xkb_get_names(connection_.raw(), XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_NAME_DETAIL_GROUP_NAMES);
    connection_.await<xcb_xkb_get_names_reply_t>(cookie, lifetime_, [this](const xcb_xkb_get_names_reply_t* reply) {
        if (connection_.isLost()) {
            stale_ = true;
            finishLoading();
            return;
        }
        groupNames_.assign(std::min<std::size_t>(keyboard_.keymap().groupCount(), maximumGroups), {});
        if (reply == nullptr || groupNames_.empty()) {
            rebuild();
            return;
        }
        xcb_xkb_get_names_value_list_t values{};
        xcb_xkb_get_names_value_list_unpack(xcb_xkb_get_names_value_list(reply), reply->nTypes, reply->indicators,
                                            reply->virtualMods, reply->groupNames, reply->nKeys, reply->nKeyAliases,
                                            reply->nRadioGroups, reply->which, &values);
        const xcb_atom_t* atom = values.groups;
        for (unsigned group = 0; group < groupNames_.size(); ++group) {
            const bool isNamed = (reply->groupNames >> group & 1) != 0;
            const xcb_atom_t name = isNamed ? *atom++ : xcb_atom_t{XCB_ATOM_NONE};
            connection_.await<xcb_get_atom_name_reply_t>(
                xcb_get_atom_name(connection_.raw(), name), lifetime_,
                [this, group](const xcb_get_atom_name_reply_t* atomName) {
                    takeGroupName(group, atomName == nullptr
                                             ? std::string()
                                             : std::string(xcb_get_atom_name_name(atomName),
                                                           static_cast<std::size_t>(atomName->name_len)));
                });
        }
        connection_.flush();
    });
    connection_.flush();
}

void X11InputSources::takeGroupName(unsigned group, std::string name) {
    groupNames_[group] = std::move(name);
    if (group + 1 == groupNames_.size()) {
        stale_ = stale_ || connection_.isLost();
        rebuild();
    }
}

void X11InputSources::finishLoading() {
    isLoading_ = false;
    loadIfStale(); // it may have changed meanwhile
}

X11LayoutQuery X11InputSources::query(std::size_t group) const {
    // A map that was not made from the root window's list may have groups that the list does not contain.
    return group < layouts_.size() ? X11LayoutQuery{layouts_[group], {}} : X11LayoutQuery{{}, groupNames_[group]};
}

void X11InputSources::lookUpNewLayouts() {
    std::vector<X11LayoutQuery> unknown;
    std::map<X11LayoutQuery, X11LayoutFacts> inUse;
    for (std::size_t group = 0; group < groupNames_.size(); ++group) {
        if (const auto known = facts_.find(query(group)); known != facts_.end()) {
            inUse.insert(*known);
        } else {
            unknown.push_back(query(group));
        }
    }
    if (!unknown.empty()) {
        const auto found = lookUpLayouts(unknown);
        for (std::size_t i = 0; i < unknown.size(); ++i) {
            inUse.insert_or_assign(unknown[i], found[i]);
        }
    }
    facts_ = std::move(inUse);
}

void X11InputSources::rebuild() {
    lookUpNewLayouts();
    std::vector<InputSource> sources;
    for (std::size_t group = 0; group < groupNames_.size(); ++group) {
        const auto& facts = facts_.at(query(group));
        const auto& name = groupNames_[group];
        auto id = group < layouts_.size() ? identifier(layouts_[group]) : name;
        if (id.empty()) {
            id = "group" + std::to_string(group + 1);
        }
        const auto isTaken = [&](const std::string& other) {
            return std::ranges::find(sources, other, &InputSource::id) != sources.end();
        };
        auto unique = id;
        for (int number = 2; isTaken(unique); ++number) {
            unique = id + "#" + std::to_string(number);
        }
        const auto& shown = !name.empty() ? name : !facts.description.empty() ? facts.description : unique;
        sources.push_back({unique, shown, facts.languages});
    }
    if (sources != sources_) {
        sources_ = std::move(sources);
        announce();
    }
    finishLoading();
}

std::optional<std::vector<InputSource>> X11InputSources::enabled() const {
    return sources_.empty() ? std::nullopt : std::optional(sources_);
}

std::optional<InputSource> X11InputSources::current() const {
    const auto group = keyboard_.group();
    return group < sources_.size() ? std::optional(sources_[group]) : std::nullopt;
}

std::optional<core::KeyboardLayout> X11InputSources::layout(std::string_view id) const {
    const auto found = std::ranges::find(sources_, id, &InputSource::id);
    if (found == sources_.end()) {
        return std::nullopt;
    }
    const auto& keymap = keyboard_.keymap();
    const auto group = static_cast<unsigned>(found - sources_.begin());
    return readXkbLayout([&](const core::KeyStroke& stroke) -> std::uint32_t {
        const auto keycode = x11KeyCodes::keycode(stroke.keyCode);
        if (!keycode || (stroke.option && !keymap.dependsOn(*keycode, group, keymap.thirdLevel()))) {
            return 0;
        }
        const int bits = (stroke.shift ? XCB_MOD_MASK_SHIFT : 0) | (stroke.capsLock ? XCB_MOD_MASK_LOCK : 0) |
                         (stroke.option ? keymap.thirdLevel() : 0);
        return keymap.keysym(*keycode, group, static_cast<std::uint8_t>(bits));
    });
}

bool X11InputSources::select(std::string_view id) {
    const auto found = std::ranges::find(sources_, id, &InputSource::id);
    if (found == sources_.end() || connection_.isLost()) {
        return false;
    }
    keyboard_.lockGroup(static_cast<unsigned>(found - sources_.begin()));
    return true;
}

bool X11InputSources::hasSettings() const {
    return isInstalled(keyboardPanel(currentDesktop()));
}

bool X11InputSources::openSettings() {
    return hasSettings() && QtLauncher().launch(*keyboardPanel(currentDesktop()));
}

} // namespace quillane
