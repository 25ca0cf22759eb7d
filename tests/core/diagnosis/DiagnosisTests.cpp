// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/diagnosis/Diagnosis.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>

namespace quillane::core {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

DiagnosisFacts healthyMac() {
    DiagnosisFacts facts;
    facts.version = "1.2";
    facts.qtVersion = "6.8.3";
    facts.location = {.shown = "/Applications/Quillane.app", .isBundle = true, .isInstalled = true};
    facts.system = {.desktop = Desktop::macOS,
                    .name = "macOS 15.5",
                    .signature = CodeSignature{SignatureState::valid, "TEAM123456"},
                    .holdsActivity = true};
    facts.session = SessionFacts{.granted = std::set{MacPermission::inputMonitoring, MacPermission::accessibility},
                                 .inputSources = std::vector<InputSourceFacts>{{"U.S.", false}, {"Hebrew", true}},
                                 .currentSource = "Hebrew",
                                 .updater = UpdaterFacts{true, true},
                                 .loginItem = LoginItemStatus::enabled};
    facts.agent = AgentFacts{.tapMade = true,
                             .tapEnabled = true,
                             .keysSeen = true,
                             .focus = FocusFacts{"com.apple.TextEdit", "AXTextArea"},
                             .recordsCopies = true,
                             .itemShown = true};
    return facts;
}

DiagnosisFacts healthyLinux() {
    auto facts = healthyMac();
    facts.location = {.shown = "/usr/bin/quillane", .isInstalled = true};
    facts.system = {.desktop = Desktop::linuxDesktop,
                    .name = "Debian GNU/Linux 12 (bookworm)",
                    .windowSystem = WindowSystem::x11,
                    .accessibilityBus = BusService::available,
                    .secretService = BusService::available};
    facts.session->updater.reset();
    return facts;
}

Finding finding(const DiagnosisFacts& facts, std::string_view name) {
    const auto all = diagnose(facts);
    const auto found = std::ranges::find(all, name, &Finding::name);
    EXPECT_NE(found, all.end()) << name;
    return found == all.end() ? Finding{} : *found;
}

/// What is broken, the line that says so, and how bad it is.
struct Case {
    const char* title;
    DiagnosisFacts (*healthy)();
    void (*breakIt)(DiagnosisFacts& facts);
    std::string_view line;
    FindingState state;
    const char* advice; ///< a word of it
};

void PrintTo(const Case& broken, std::ostream* out) {
    *out << broken.title;
}

class BrokenFactTest : public ::testing::TestWithParam<Case> {};

TEST_P(BrokenFactTest, OnlyItsLineSaysSoAndWhatToDo) {
    const auto& broken = GetParam();
    auto facts = broken.healthy();
    const auto before = diagnose(facts);
    broken.breakIt(facts);
    const auto after = diagnose(facts);
    ASSERT_EQ(before.size(), after.size());
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (after[i].name == broken.line) {
            EXPECT_EQ(after[i].state, broken.state);
            EXPECT_NE(after[i].value, before[i].value);
            EXPECT_THAT(after[i].advice, HasSubstr(broken.advice));
        } else {
            EXPECT_TRUE(after[i].state == FindingState::ok || after[i].state == FindingState::notApplicable)
                << after[i].name;
        }
    }
    EXPECT_EQ(isHealthy(after), broken.state != FindingState::problem);
}

constexpr auto warning = FindingState::warning;
constexpr auto problem = FindingState::problem;
using Facts = DiagnosisFacts;

const std::array brokenFacts{
    Case{"SilentAgent", healthyMac, [](Facts& f) { f.respondent = Respondent::commandForSilentAgent; }, "agent",
         problem, "start it again"},
    Case{"AdHoc", healthyMac,
         [](Facts& f) {
             f.system.signature = {SignatureState::adHoc, ""};
         },
         "signature", warning, "certificate"},
    Case{"Altered", healthyMac, [](Facts& f) { f.system.signature->state = SignatureState::altered; }, "signature",
         problem, "Install"},
    Case{"Unsigned", healthyMac, [](Facts& f) { f.system.signature->state = SignatureState::missing; }, "signature",
         problem, "Install"},
    Case{"Translocated", healthyMac, [](Facts& f) { f.location.isTranslocated = true; }, "location", problem,
         "Applications folder"},
    Case{"NoBundle", healthyMac, [](Facts& f) { f.location.isBundle = false; }, "location", warning, "Quillane.app"},
    Case{"NotInstalled", healthyMac, [](Facts& f) { f.location.isInstalled = false; }, "location", warning, "Move"},
    Case{"NoScreen", healthyLinux, [](Facts& f) { f.system.windowSystem = WindowSystem::none; }, "window system",
         problem, "session"},
    Case{"NoDisplay", healthyLinux, [](Facts& f) { f.desktopError = "cannot open display"; }, "window system", problem,
         "session"},
    Case{"Wayland", healthyLinux, [](Facts& f) { f.system.windowSystem = WindowSystem::wayland; }, "window system",
         problem, "X11 session"},
    Case{"NoAccessibilityOnMac", healthyMac, [](Facts& f) { f.session->granted->erase(MacPermission::accessibility); },
         "accessibility permission", problem, "tccutil reset Accessibility com.quillane.app"},
    Case{"NoAccessibilityOnLinux", healthyLinux,
         [](Facts& f) { f.session->granted->erase(MacPermission::accessibility); }, "accessibility permission", problem,
         "Request"},
    Case{"NoInputMonitoring", healthyMac, [](Facts& f) { f.session->granted->erase(MacPermission::inputMonitoring); },
         "input monitoring permission", problem, "tccutil reset ListenEvent com.quillane.app"},
    Case{"DisabledTap", healthyMac, [](Facts& f) { f.agent->tapEnabled = false; }, "event tap", problem, "Quit"},
    Case{"NoTap", healthyMac, [](Facts& f) { f.agent->tapMade = f.agent->tapEnabled = false; }, "event tap", problem,
         "Quit"},
    Case{"NoKeys", healthyMac, [](Facts& f) { f.agent->keysSeen = false; }, "key events", warning, "Press a key"},
    Case{"SecureInput", healthyMac, [](Facts& f) { f.agent->secureInput = true; }, "secure input", warning, "password"},
    Case{"NoInputSources", healthyMac, [](Facts& f) { f.session->inputSources.reset(); }, "input sources", problem,
         "Add"},
    Case{"NoRightToLeftSource", healthyMac, [](Facts& f) { f.session->inputSources->pop_back(); }, "input sources",
         warning, "Hebrew or Arabic"},
    Case{"OneSource", healthyMac, [](Facts& f) { f.session->inputSources->erase(f.session->inputSources->begin()); },
         "input sources", warning, "second"},
    Case{"NoFocus", healthyMac, [](Facts& f) { f.agent->focus->role.reset(); }, "focused element", warning, "Click"},
    Case{"NoAccessibilityBus", healthyLinux, [](Facts& f) { f.system.accessibilityBus = BusService::absent; },
         "accessibility bus", problem, "at-spi2-core"},
    Case{"SleepingAccessibilityBus", healthyLinux, [](Facts& f) { f.system.accessibilityBus = BusService::notStarted; },
         "accessibility bus", warning, "Request"},
    Case{"SilentAccessibilityBus", healthyLinux, [](Facts& f) { f.system.accessibilityBus = BusService::silent; },
         "accessibility bus", problem, "Sign out"},
    Case{"NoSessionBus", healthyLinux, [](Facts& f) { f.system.secretService = BusService::noBus; }, "Secret Service",
         problem, "dbus-run-session"},
    Case{"NoSecretService", healthyLinux, [](Facts& f) { f.system.secretService = BusService::absent; },
         "Secret Service", problem, "keyring"},
    Case{"NoSecretServiceWithoutHistory", healthyLinux,
         [](Facts& f) {
             f.system.secretService = BusService::absent;
             f.agent->recordsCopies = false;
         },
         "Secret Service", warning, "keyring"},
    Case{"LockedKeyring", healthyLinux, [](Facts& f) { f.system.secretService = BusService::locked; }, "Secret Service",
         warning, "Unlock"},
    Case{"NoDefaultKeyring", healthyLinux, [](Facts& f) { f.system.secretService = BusService::unused; },
         "Secret Service", warning, "Create"},
    Case{"PasteboardAsks", healthyMac, [](Facts& f) { f.session->pasteboard = PasteboardAccess::asked; },
         "pasteboard access", warning, "Paste from Other Apps"},
    Case{"PasteboardDenied", healthyMac, [](Facts& f) { f.session->pasteboard = PasteboardAccess::denied; },
         "pasteboard access", problem, "Paste from Other Apps"},
    Case{"AppNap", healthyMac, [](Facts& f) { f.system.holdsActivity = false; }, "App Nap", problem, "Quit"},
    Case{"NoMenuBarItem", healthyMac, [](Facts& f) { f.agent->itemShown = false; }, "status item", problem, "menu bar"},
    Case{"NoTray", healthyLinux, [](Facts& f) { f.agent->itemShown = false; }, "status item", problem, "system tray"},
    Case{"LoginItemWaits", healthyMac, [](Facts& f) { f.session->loginItem = LoginItemStatus::requiresApproval; },
         "login item", warning, "Login Items"},
    Case{"LoginItemUnknown", healthyMac, [](Facts& f) { f.session->loginItem = LoginItemStatus::notFound; },
         "login item", warning, "Applications"},
    Case{"NoUpdateKey", healthyMac, [](Facts& f) { f.session->updater->hasKey = false; }, "updater", warning,
         "released version"},
    Case{"NoUpdater", healthyMac, [](Facts& f) { f.session->updater.reset(); }, "updater", warning, "released version"},
};

INSTANTIATE_TEST_SUITE_P(Diagnosis, BrokenFactTest, ::testing::ValuesIn(brokenFacts),
                         [](const auto& parameter) { return std::string(parameter.param.title); });

TEST(Diagnosis, AHealthyDesktopHasNeitherProblemsNorWarnings) {
    for (const auto& facts : {healthyMac(), healthyLinux()}) {
        for (const auto& line : diagnose(facts)) {
            EXPECT_TRUE(line.state == FindingState::ok || line.state == FindingState::notApplicable) << line.name;
            EXPECT_FALSE(line.value.empty()) << line.name;
            EXPECT_EQ(line.advice, "") << line.name;
        }
        EXPECT_TRUE(isHealthy(diagnose(facts)));
    }
}

TEST(Diagnosis, WithoutTheAgentOnlyItsOwnKnowledgeIsMissing) {
    auto facts = healthyMac();
    facts.respondent = Respondent::command;
    facts.agent.reset();
    facts.session->granted.reset();
    EXPECT_EQ(finding(facts, "agent").state, warning);
    for (const auto* line : {"accessibility permission", "input monitoring permission", "event tap", "key events",
                             "secure input", "focused element", "App Nap", "status item"}) {
        EXPECT_EQ(finding(facts, line).state, FindingState::notApplicable) << line;
        EXPECT_THAT(finding(facts, line).value, HasSubstr("agent only")) << line;
    }
    EXPECT_TRUE(isHealthy(diagnose(facts)));
}

TEST(Diagnosis, ATapThatIsNotNeededIsNotAProblem) {
    auto facts = healthyMac();
    facts.agent->tapMade = facts.agent->tapEnabled = false;
    facts.agent->options.paused = true;
    EXPECT_EQ(finding(facts, "event tap").state, FindingState::notApplicable);
    EXPECT_EQ(finding(facts, "key events").state, FindingState::notApplicable);
}

TEST(Diagnosis, ATapThatWaitsForAPermissionSaysSo) {
    auto facts = healthyMac();
    facts.agent->tapMade = facts.agent->tapEnabled = false;
    facts.session->granted->erase(MacPermission::accessibility);
    EXPECT_THAT(finding(facts, "event tap").advice, HasSubstr("permission"));
}

TEST(Diagnosis, AppNapMattersOnlyWhileSomethingRuns) {
    auto facts = healthyMac();
    facts.system.holdsActivity = false;
    facts.agent->tapEnabled = facts.agent->recordsCopies = false;
    EXPECT_EQ(finding(facts, "App Nap").state, FindingState::notApplicable);
}

TEST(Diagnosis, ARoleThatAnApplicationMakesUpIsNotRepeated) {
    auto facts = healthyMac();
    for (const auto* role : {"what the user has typed", "AX of my own", "AXשלום"}) {
        facts.agent->focus->role = role;
        EXPECT_THAT(finding(facts, "focused element").value, Not(HasSubstr(role)));
    }
}

TEST(LocationFacts, NothingOfTheHomeFolderIsShown) {
    const std::array<std::filesystem::path, 2> homes{"/Users/dana", "/System/Volumes/Data/Users/dana"};
    const auto shown = [&](const char* path) {
        return LocationFacts::of({.application = path, .installed = true}, homes).shown;
    };
    EXPECT_EQ(shown("/Users/dana/Applications/Quillane.app"), "~");
    EXPECT_EQ(shown("/System/Volumes/Data/Users/dana/secret project/Quillane.app"), "~");
    EXPECT_EQ(shown("/Users/dana/../dana/Quillane.app"), "~");
    EXPECT_EQ(shown("/Users/danae/Quillane.app"), "/Users/danae/Quillane.app");
    EXPECT_EQ(shown("/Applications/Quillane.app"), "/Applications/Quillane.app");
}

TEST(LocationFacts, AHomeThatIsUnknownHidesNothing) {
    const std::array<std::filesystem::path, 2> homes{"", "/"};
    EXPECT_EQ(LocationFacts::of({.application = "/usr/bin/quillane"}, homes).shown, "/usr/bin/quillane");
}

TEST(LocationFacts, ACopyThatMacOSMadeIsTranslocated) {
    const auto facts = LocationFacts::of(
        {.application = "/private/var/folders/x/T/AppTranslocation/0F-1/d/Quillane.app", .installed = false}, {});
    EXPECT_TRUE(facts.isTranslocated);
    EXPECT_TRUE(facts.isBundle);
    EXPECT_FALSE(LocationFacts::of({.application = "/Applications/Quillane.app"}, {}).isTranslocated);
}

} // namespace
} // namespace quillane::core
