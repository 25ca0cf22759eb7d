// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/agent/AgentTest.hpp"
#include "desktop/direction/LiveOffice.hpp"

namespace quillane::live {
namespace {

#define BEGINNING                                                                                                      \
    R"(<?xml version="1.0" encoding="UTF-8"?><office:document)"                                                        \
    R"( xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0")"                                              \
    R"( xmlns:style="urn:oasis:names:tc:opendocument:xmlns:style:1.0")"                                                \
    R"( xmlns:draw="urn:oasis:names:tc:opendocument:xmlns:drawing:1.0")"                                               \
    R"( xmlns:svg="urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0")"                                         \
    R"( xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0" office:version="1.2")"

#define PAGE                                                                                                           \
    R"(<draw:page draw:name="page"><draw:frame svg:x="2cm" svg:y="2cm" svg:width="9cm" svg:height="3cm">)"             \
    R"(<draw:text-box><text:p>one</text:p></draw:text-box></draw:frame></draw:page>)"

const LiveOffice::Document presentation{
    "document.fodp",
    BEGINNING R"( office:mimetype="application/vnd.oasis.opendocument.presentation">)"
              "<office:body><office:presentation>" PAGE "</office:presentation></office:body></office:document>",
    "Impress"};

const LiveOffice::Document drawing{"document.fodg",
                                   BEGINNING R"( office:mimetype="application/vnd.oasis.opendocument.graphics">)"
                                             "<office:body><office:drawing>" PAGE
                                             "</office:drawing></office:body></office:document>",
                                   "Draw"};

class LiveOfficeProgramTest : public AgentTest, public testing::WithParamInterface<const LiveOffice::Document*> {
protected:
    void open(const LiveOffice::Document& document) {
        require(chooseAgentLanguage(desktop(), "en"), "the language in the settings");
        startAgent();
        office_.emplace(required(LiveOffice::start(desktop(), document, "en-US")));
    }

    void TearDown() override {
        AgentTest::TearDown();
        office_.reset();
    }

    void expectSaid(const std::string& text) {
        EXPECT_TRUE(agent().waitForStatus([&](const auto& status) { return status.at("lastAction") == text; }))
            << agent().status();
    }

    void turnRight() { desktop().keyboard().chord({Key::leftControl, Key::rightShift}); }

    std::optional<LiveOffice> office_;
};

/// With their usual toolbars these programs have the direction buttons in the sidebar only.
TEST_P(LiveOfficeProgramTest, AChordInTheTextOfAShapeAsksForTheToolbarThatHasTheButtons) {
    open(*GetParam());
    const auto program = "LibreOffice " + GetParam()->program;
    desktop().keyboard().tap(Key::tab);
    desktop().keyboard().tap(Key::f2);
    ASSERT_TRUE(waitUntil([&] { return office_->paragraph() == "one"; }));
    turnRight();
    expectSaid("Show the Formatting toolbar with paragraph direction buttons in " + program);
    EXPECT_EQ(office_->paragraph(), "one");
}

INSTANTIATE_TEST_SUITE_P(Programs, LiveOfficeProgramTest, testing::Values(&presentation, &drawing),
                         [](const auto& one) { return one.param->program; });

} // namespace
} // namespace quillane::live
