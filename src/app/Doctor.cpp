// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/Doctor.hpp"

#include "core/keyboard/RTLInputLanguage.hpp"
#include "direction/AX.hpp"

#include <QtGlobal>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <iterator>
#include <set>
#include <system_error>
#include <vector>

namespace quillane::doctor {

namespace {

using core::Finding;
using core::FindingState;

constexpr std::chrono::milliseconds focusTimeout{250}; // for each of two questions

std::string_view word(FindingState state) {
    switch (state) {
    case FindingState::ok:
        return "ok";
    case FindingState::warning:
        return "warning";
    case FindingState::problem:
        return "problem";
    case FindingState::notApplicable:
        break;
    }
    return "-";
}

std::string counted(std::ptrdiff_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string summary(const std::vector<Finding>& findings) {
    const auto problems = std::ranges::count(findings, FindingState::problem, &Finding::state);
    const auto warnings = std::ranges::count(findings, FindingState::warning, &Finding::state);
    return counted(problems, "problem") + ", " + counted(warnings, "warning");
}

std::string toText(const std::vector<Finding>& findings) {
    constexpr std::size_t stateWidth = 9;
    std::string text;
    for (const auto& finding : findings) {
        std::string line(word(finding.state));
        line.resize(stateWidth, ' ');
        line += std::string(finding.name) + ": " + finding.value;
        if (!finding.advice.empty()) {
            line += ". " + finding.advice;
        }
        text += line + "\n";
    }
    return text + summary(findings);
}

std::string toJson(const std::vector<Finding>& findings, core::Respondent respondent) {
    using Json = nlohmann::ordered_json;
    auto lines = Json::array();
    for (const auto& finding : findings) {
        lines.push_back(
            {{"name", finding.name},
             {"state", finding.state == FindingState::notApplicable ? "notApplicable" : word(finding.state)},
             {"value", finding.value},
             {"advice", finding.advice}});
    }
    const Json json{{"healthy", core::isHealthy(findings)},
                    {"answeredBy", respondent == core::Respondent::agent ? "agent" : "command"},
                    {"findings", std::move(lines)}};
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace

core::DiagnosisFacts programFacts(const std::string& version, const core::ApplicationLocation& location,
                                  const std::filesystem::path& home) {
    std::error_code error;
    const std::array homes{home, std::filesystem::weakly_canonical(home, error)};
    core::DiagnosisFacts facts;
    facts.version = version;
    facts.qtVersion = qVersion();
    facts.location = core::LocationFacts::of(location, homes);
    return facts;
}

core::SessionFacts sessionFacts(const Platform& platform, core::Respondent respondent) {
    core::SessionFacts facts;
    if (respondent == core::Respondent::agent || !platform.permissions->isGrantedInSettings()) {
        facts.granted.emplace();
        std::ranges::copy_if(core::allPermissions, std::inserter(*facts.granted, facts.granted->end()),
                             [&](auto permission) { return platform.permissions->isGranted(permission); });
    }
    if (const auto sources = platform.inputSources->enabled()) {
        facts.inputSources.emplace();
        for (const auto& source : *sources) {
            facts.inputSources->push_back(
                {source.localizedName, core::rtlInputLanguage::isRightToLeft(source.languages)});
        }
    }
    if (const auto current = platform.inputSources->current()) {
        facts.currentSource = current->localizedName;
    }
    facts.pasteboard = platform.pasteboard->access();
    if (platform.updater != nullptr) {
        facts.updater = {platform.updater->hasKey(), platform.updater->checksAutomatically()};
    }
    facts.loginItem = platform.loginItem->status();
    return facts;
}

std::optional<core::FocusFacts> focusFacts(Accessibility& accessibility, const Workspace& workspace) {
    const auto front = workspace.frontmostApplication();
    if (!front) {
        return std::nullopt;
    }
    core::FocusFacts facts{front->bundleID.value_or(std::string()), std::nullopt};
    const auto application = accessibility.application(front->pid);
    accessibility.setMessagingTimeout(application, focusTimeout);
    if (const auto focused = ax::element(accessibility, application, "AXFocusedUIElement")) {
        accessibility.setMessagingTimeout(*focused, focusTimeout);
        facts.role = ax::string(accessibility, *focused, "AXRole");
    }
    return facts;
}

ControlReply report(const core::DiagnosisFacts& facts, bool json) {
    const auto findings = core::diagnose(facts);
    return {.ok = true,
            .text = json ? toJson(findings, facts.respondent) : toText(findings),
            .problem = !core::isHealthy(findings)};
}

} // namespace quillane::doctor
