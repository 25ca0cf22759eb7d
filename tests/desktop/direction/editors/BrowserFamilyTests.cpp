// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/direction/editors/EditorTest.hpp"

namespace quillane::live {
namespace {

/// A browser of the Chromium family under its own name: the class of its windows, and what the agent calls it.
struct Browser {
    std::string windowClass;
    std::string name;
};

void PrintTo(const Browser& browser, std::ostream* out) {
    *out << browser.windowClass;
}

class BrowserFamilyTest : public EditorTest, public testing::WithParamInterface<Browser> {};

TEST_P(BrowserFamilyTest, AChordTurnsTheFieldOfAPageAndTurnsItBack) {
    startIn({GetParam().name, "org.chromium.Chromium", "Writing Direction", ""}, {"--class", GetParam().windowClass});
    turnRight();
    expectSaid("Applied RTL in " + GetParam().name);
    expectState("directions", {"ltr", "rtl", "ltr"});
    expectState("menu", false);
    turnLeft();
    expectSaid("Applied LTR in " + GetParam().name);
    expectState("directions", {"ltr", "ltr", "ltr"});
    expectState("chosen", {"Writing Direction/Paragraph/Right to Left", "Writing Direction/Paragraph/Left to Right"});
}

INSTANTIATE_TEST_SUITE_P(Browsers, BrowserFamilyTest,
                         testing::Values(Browser{"Google-chrome", "Chrome"}, Browser{"Microsoft-edge", "Edge"},
                                         Browser{"Brave-browser", "Brave"}, Browser{"Vivaldi-stable", "Vivaldi"},
                                         Browser{"Opera", "Opera"}),
                         [](const auto& one) { return one.param.name; });

} // namespace
} // namespace quillane::live
