// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/diagnosis/Diagnosis.hpp"

#include "core/diagnosis/Findings.hpp"

#include <algorithm>
#include <array>

namespace quillane::core {

namespace {

struct Line {
    std::string_view name;
    findings::Verdict (*verdict)(const DiagnosisFacts& facts);
};

constexpr std::array lines{
    Line{"agent", findings::agent},
    Line{"program", findings::program},
    Line{"Qt", findings::qt},
    Line{"system", findings::system},
    Line{"signature", findings::signature},
    Line{"location", findings::location},
    Line{"window system", findings::windowSystem},
    Line{"accessibility permission", findings::accessibility},
    Line{"input monitoring permission", findings::inputMonitoring},
    Line{"event tap", findings::eventTap},
    Line{"key events", findings::keyEvents},
    Line{"secure input", findings::secureInput},
    Line{"input sources", findings::inputSources},
    Line{"focused element", findings::focusedElement},
    Line{"accessibility bus", findings::accessibilityBus},
    Line{"pasteboard access", findings::pasteboard},
    Line{"Secret Service", findings::secretService},
    Line{"App Nap", findings::activity},
    Line{"status item", findings::statusItem},
    Line{"login item", findings::loginItem},
    Line{"updater", findings::updater},
};

} // namespace

std::vector<Finding> diagnose(const DiagnosisFacts& facts) {
    std::vector<Finding> result;
    for (const auto& line : lines) {
        auto verdict = line.verdict(facts);
        result.push_back({line.name, verdict.state, std::move(verdict.value), std::move(verdict.advice)});
    }
    return result;
}

bool isHealthy(const std::vector<Finding>& findings) {
    return std::ranges::none_of(findings,
                                [](const Finding& finding) { return finding.state == FindingState::problem; });
}

} // namespace quillane::core
