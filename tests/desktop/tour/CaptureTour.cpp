// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/tour/CaptureTour.hpp"

#include "desktop/agent/ColoredWindow.hpp"
#include "desktop/agent/LiveAreaSelection.hpp"
#include "desktop/agent/LiveMenu.hpp"

#include <algorithm>
#include <string_view>

namespace quillane::live {

namespace {

constexpr ScreenArea area{400, 300, 240, 160};

class CaptureTour {
public:
    CaptureTour(Tour& tour, LiveDesktop& desktop) : tour_(tour), desktop_(desktop), selection_(desktop) {}

    void walk() {
        tour_.step("capture an area", [&] { return select(); });
        tour_.step("take the area", [&] { return take(); });
        tour_.step("the captured picture", [&] { return show(); });
        mustSee(agent_->process().end() == ExitStatus{0, 0}, "the agent's orderly end");
    }

private:
    std::string select() {
        mustSee(chooseAgentLanguage(desktop_, "en"), "the language in the settings");
        agent_ = got(LiveAgent::start(desktop_));
        window_.emplace(desktop_.screen(), ScreenArea{300, 240, 400, 300});
        mustSee(waitUntil([&] { return window_->isShown(); }), "a window to capture");
        mustSee(got(LiveMenu::open(desktop_)).choose("Capture Area to Clipboard…"), "the menu's command");
        mustSee(selection_.waitUntilOpen(), "the selection over the screen");
        selection_.beginDrag(area);
        return "the screen is dimmed, and a drag selects 240 × 160 pixels of it";
    }

    std::string take() {
        selection_.release();
        mustSee(selection_.waitUntilClosed(), "the selection gone");
        std::string seen;
        const auto isCopied = [&] {
            const auto copy = "xclip -selection clipboard -t image/png -o >~/captured.png && "
                              "identify -format '%m %wx%h, %k colours' ~/captured.png";
            seen = desktop_.run({"sh", "-c", copy}).output;
            return seen == "PNG 240x160, 4 colours";
        };
        mustSee(waitUntil(isCopied),
                [&] { return "a PNG of 240 × 160 pixels in 4 colours on the clipboard, but: " + seen; });
        return "another program reads from the clipboard: " + seen;
    }

    std::string show() {
        window_.reset();
        viewer_ = got(desktop_.startProcess({"display", "-geometry", "+520+320", "captured.png"}));
        mustSee(waitUntil([&] { return isShown("captured.png"); }), "a window of the image viewer");
        return "an image viewer opens it";
    }

    /// A window has the text in its title.
    [[nodiscard]] bool isShown(std::string_view title) const {
        return std::ranges::any_of(desktop_.screen().managedWindows(), [&](xcb_window_t window) {
            return desktop_.screen().text(window, "WM_NAME").find(title) != std::string::npos;
        });
    }

    Tour& tour_;
    LiveDesktop& desktop_;
    LiveAreaSelection selection_;
    std::optional<LiveAgent> agent_;
    std::optional<ColoredWindow> window_;
    std::optional<ChildProcess> viewer_;
};

} // namespace

void captureTour(Tour& tour, LiveDesktop& desktop) {
    CaptureTour(tour, desktop).walk();
}

} // namespace quillane::live
