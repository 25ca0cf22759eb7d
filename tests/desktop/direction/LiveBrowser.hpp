// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/fixture/LiveDesktop.hpp"

#include <ostream>

namespace quillane::live {

/// The state of the test page's fields, which a script keeps writing to the title of its window.
struct PageState {
    std::string direction; ///< the computed direction of the text area; of "line", or each paragraph of "rich", when
                           ///< that has the focus
    std::string selection; ///< of the text area: "1-3"; of "rich", when that has the focus, the number of characters
    std::string focused;   ///< the id of the element with the focus
    std::string text;      ///< of the text area
    std::string language;  ///< the code of the browser's interface language

    bool operator==(const PageState&) const = default;

    friend std::ostream& operator<<(std::ostream& out, const PageState& state) {
        return out << state.direction << ' ' << state.selection << ' ' << state.focused << ' ' << state.text;
    }
};

/// Debian's Chromium or Firefox in front, with a page of its own: a text area "area" of two lines, a second one
/// "other", a password field "secret", a text field that cannot be edited "fixed", one that can "line", an empty one
/// "blank", three paragraphs "rich" that can be edited, the last in Hebrew, with the cursor in the second, and a script
/// that shows its state.
class LiveBrowser {
public:
    /// When the browser makes its accessibility tree.
    enum class Tree {
        atOnce,
        onDemand, ///< as it does unless it is told otherwise
    };

    /// `focus` is the field that has the focus; with "none", the page itself has it. `language` is the code of the
    /// browser's interface language.
    [[nodiscard]] static tl::expected<LiveBrowser, std::string> start(LiveDesktop& desktop, const std::string& focus,
                                                                      Tree tree = Tree::atOnce,
                                                                      const std::string& language = "en-US");

    /// How Firefox is set up.
    struct FirefoxProfile {
        std::string language = "en-US"; ///< of its interface
        bool hasCommand = true;         ///< the command that swaps the direction of a text
    };

    [[nodiscard]] static tl::expected<LiveBrowser, std::string>
    startFirefox(LiveDesktop& desktop, const std::string& focus, const FirefoxProfile& profile);

    [[nodiscard]] ChildProcess& process() { return process_; }

    [[nodiscard]] pid_t pid() const { return process_.pid(); }

    /// The page's current state; none while there is no such window.
    [[nodiscard]] std::optional<PageState> state() const;

    /// Whether a menu of the browser is open, according to the X server: its window is mapped over all others.
    [[nodiscard]] bool hasOpenMenu() const;

    /// Whether an open menu of the browser is in its accessibility tree, which is a little later.
    [[nodiscard]] bool showsMenu() const;

    /// Sends a signal to the processes that hold the pages. While they are stopped, the browser answers and opens no
    /// context menu.
    void signalPages(int number) const;

private:
    /// Starts the program with the address of the page as its last argument.
    [[nodiscard]] static tl::expected<LiveBrowser, std::string>
    run(LiveDesktop& desktop, const std::string& focus, std::vector<std::string> arguments, const Environment& more);

    LiveBrowser(LiveDesktop& desktop, ChildProcess process) : desktop_(&desktop), process_(std::move(process)) {}

    LiveDesktop* desktop_;
    ChildProcess process_;
};

} // namespace quillane::live
