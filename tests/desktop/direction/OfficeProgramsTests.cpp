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
    R"( xmlns:table="urn:oasis:names:tc:opendocument:xmlns:table:1.0")"                                                \
    R"( xmlns:draw="urn:oasis:names:tc:opendocument:xmlns:drawing:1.0")"                                               \
    R"( xmlns:svg="urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0")"                                         \
    R"( xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0" office:version="1.2")"

#define PAGE                                                                                                           \
    R"(<draw:page draw:name="page"><draw:frame svg:x="2cm" svg:y="2cm" svg:width="9cm" svg:height="3cm">)"             \
    R"(<draw:text-box><text:p>one</text:p></draw:text-box></draw:frame></draw:page>)"

const LiveOffice::Document spreadsheet{
    "document.fods",
    BEGINNING
    R"( office:mimetype="application/vnd.oasis.opendocument.spreadsheet">)"
    R"(<office:body><office:spreadsheet><table:table table:name="sheet">)"
    R"(<table:table-row><table:table-cell office:value-type="string"><text:p>one</text:p></table:table-cell>)"
    R"(</table:table-row><table:table-row><table:table-cell office:value-type="string"><text:p>two</text:p>)"
    R"(</table:table-cell></table:table-row></table:table></office:spreadsheet></office:body></office:document>)",
    "Calc"};

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

class LiveOfficeProgramTest : public AgentTest {
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

    void turnLeft() { desktop().keyboard().chord({Key::leftControl, Key::leftShift}); }

    std::optional<LiveOffice> office_;
};

TEST_F(LiveOfficeProgramTest, AChordTurnsTheSelectedCellInCalcAndNoOther) {
    open(spreadsheet);
    const auto modeOf = [&](const std::string& document, const std::string& text) {
        return writingModeOf(document, "<table:table-cell table:style-name=\"([^\"]*)\"[^>]*><text:p>" + text + "<");
    };
    desktop().keyboard().tap(Key::down);
    turnRight();
    expectSaid("Applied RTL in LibreOffice Calc");
    auto saved = office_->saved();
    EXPECT_EQ(modeOf(saved, "one"), "lr-tb");
    EXPECT_EQ(modeOf(saved, "two"), "rl-tb");
    turnLeft();
    expectSaid("Applied LTR in LibreOffice Calc");
    EXPECT_EQ(modeOf(office_->saved(), "two"), "lr-tb");
}

class LiveOfficeShapeTest : public LiveOfficeProgramTest,
                            public testing::WithParamInterface<const LiveOffice::Document*> {};

TEST_P(LiveOfficeShapeTest, AChordTurnsTheTextOfAShapeThatIsEdited) {
    open(*GetParam());
    const auto program = "LibreOffice " + GetParam()->program;
    turnRight();
    expectSaid("Place the cursor in a text in " + program);
    desktop().keyboard().tap(Key::tab);
    desktop().keyboard().tap(Key::f2);
    ASSERT_TRUE(waitUntil([&] { return office_->paragraph() == "one"; }));
    turnRight();
    expectSaid("Applied RTL in " + program);
    const std::string pattern = "<text:p text:style-name=\"([^\"]*)\">(<[^>]*>)*one<";
    EXPECT_EQ(writingModeOf(office_->saved(), pattern), "rl-tb");
    turnLeft();
    expectSaid("Applied LTR in " + program);
    EXPECT_EQ(writingModeOf(office_->saved(), pattern), "lr-tb");
}

INSTANTIATE_TEST_SUITE_P(Programs, LiveOfficeShapeTest, testing::Values(&presentation, &drawing),
                         [](const auto& one) { return one.param->program; });

} // namespace
} // namespace quillane::live
