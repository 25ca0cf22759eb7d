// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/tour/DirectionTour.hpp"

#include "desktop/direction/LiveBrowser.hpp"
#include "desktop/direction/LiveWriter.hpp"

namespace quillane::live {

namespace {

class DirectionTour {
public:
    DirectionTour(Tour& tour, LiveDesktop& desktop) : tour_(tour), desktop_(desktop) {}

    void walk() {
        mustSee(chooseAgentLanguage(desktop_, "en"), "the language in the settings");
        agent_ = got(LiveAgent::start(desktop_));
        tour_.step("Chromium opens in Hebrew", [&] {
            browser_ = got(LiveBrowser::start(desktop_, "area", LiveBrowser::Tree::atOnce, "he"));
            return "a text area has the focus, its direction is " + browser_->state().value_or(PageState()).direction;
        });
        tour_.step("Chromium Control with right Shift", [&] { return turnTextArea(Key::rightShift, "rtl"); });
        tour_.step("Chromium Control with left Shift", [&] { return turnTextArea(Key::leftShift, "ltr"); });
        browser_.reset();
        tour_.step("Writer opens in Arabic", [&] {
            writer_ = got(LiveWriter::start(desktop_, "ar"));
            return std::string("a document of three paragraphs, the cursor in the first");
        });
        tour_.step("Writer Control with right Shift", [&] { return turnParagraph(Key::rightShift, "RTL", "rl-tb"); });
        tour_.step("Writer Control with left Shift", [&] { return turnParagraph(Key::leftShift, "LTR", "lr-tb"); });
        writer_.reset();
        mustSee(agent_->process().end() == ExitStatus{0, 0}, "the agent's orderly end");
    }

private:
    std::string turnTextArea(Key shift, const std::string& direction) {
        desktop_.keyboard().chord({Key::leftControl, shift});
        std::string last;
        const auto turned = [&] {
            last = browser_->state().value_or(PageState()).direction;
            return last == direction && !browser_->hasOpenMenu();
        };
        mustSee(waitUntil(turned), [&] { return "the computed direction " + direction + ", but: " + last; });
        return "the text area's computed direction is " + last + ", and no menu is open";
    }

    std::string turnParagraph(Key shift, const std::string& raw, const std::string& mode) {
        desktop_.keyboard().chord({Key::leftControl, shift});
        std::string said;
        const auto says = [&](const nlohmann::json& status) {
            said = status.at("lastAction");
            return said == "Applied " + raw + " in LibreOffice Writer";
        };
        mustSee(agent_->waitForStatus(says), [&] { return "the direction applied, but: " + said; });
        std::string saved;
        for (const auto& paragraph : writer_->savedDirections()) {
            saved += (saved.empty() ? "" : ", ") + paragraph;
        }
        mustSee(saved == "one " + mode + ", two lr-tb, three lr-tb", "the first paragraph turned, but: " + saved);
        return "the saved document has " + saved;
    }

    Tour& tour_;
    LiveDesktop& desktop_;
    std::optional<LiveAgent> agent_;
    std::optional<LiveBrowser> browser_;
    std::optional<LiveWriter> writer_;
};

} // namespace

void directionTour(Tour& tour, LiveDesktop& desktop) {
    DirectionTour(tour, desktop).walk();
}

} // namespace quillane::live
