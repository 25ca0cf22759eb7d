// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/InputSources.hpp"
#include "platform/linux/keyboard/X11Keyboard.hpp"
#include "platform/linux/keyboard/X11LayoutRegistry.hpp"
#include "platform/linux/x11/X11Connection.hpp"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace quillane {

/// The groups of the keyboard map as input sources. Their identifiers are those of xkeyboard-config, as "us" or
/// "ara(mac)", which the server keeps on its root window; a group without one uses its name in the map.
class X11InputSources final : public InputSources {
public:
    /// Waits for the server: use it at start-up only.
    X11InputSources(X11Connection& connection, X11Keyboard& keyboard);

    [[nodiscard]] std::optional<std::vector<InputSource>> enabled() const override;
    [[nodiscard]] std::optional<InputSource> current() const override;
    [[nodiscard]] std::optional<core::KeyboardLayout> layout(std::string_view id) const override;
    [[nodiscard]] bool select(std::string_view id) override;

    [[nodiscard]] bool switchedBySystemShortcut() const override { return switchedByKey_; }

    /// The keyboard page of the running desktop, if its program is installed.
    [[nodiscard]] bool hasSettings() const override;
    bool openSettings() override;

    core::Subscription onChanged(std::function<void()> callback) override {
        return changes_.subscribe(std::move(callback));
    }

private:
    void loadIfStale();
    void load();
    void finishLoading();
    void announce();
    void loadGroupNames();
    void takeGroupName(unsigned group, std::string name);
    void rebuild();
    [[nodiscard]] X11LayoutQuery query(std::size_t group) const;
    void lookUpNewLayouts();
    void handleKey();
    void handleEvent(const xcb_generic_event_t& event);

    X11Connection& connection_;
    X11Keyboard& keyboard_;
    std::vector<X11Layout> layouts_;                 ///< as listed on the root window
    std::vector<std::string> groupNames_;            ///< as named by the map
    std::vector<InputSource> sources_;               ///< by group
    std::map<X11LayoutQuery, X11LayoutFacts> facts_; ///< of the layouts in use
    bool stale_ = true;
    bool modifiersWereDown_ = false;
    bool switchedByKey_ = false;
    bool isLoading_ = false;
    bool announces_ = false; ///< at the end of this turn
    core::Lifetime lifetime_;
    core::Listeners<> changes_;
    core::Subscription notices_;
    core::Subscription readings_;
    core::Subscription groups_;
    core::Subscription keys_;
    core::Subscription events_;
    core::Subscription turns_;
    xcb_atom_t rulesNames_;
};

} // namespace quillane
