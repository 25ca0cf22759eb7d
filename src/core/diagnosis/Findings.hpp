// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/diagnosis/Diagnosis.hpp"

#include <string>
#include <string_view>

/// The lines of a diagnosis, in three groups. For the sources of this folder only.
namespace quillane::core::findings {

/// What a line says of its subject; the name is given by the table of lines.
struct Verdict {
    FindingState state{};
    std::string value;
    std::string advice;
};

[[nodiscard]] inline Verdict ok(std::string value) {
    return {FindingState::ok, std::move(value), {}};
}

[[nodiscard]] inline Verdict warning(std::string value, std::string advice) {
    return {FindingState::warning, std::move(value), std::move(advice)};
}

[[nodiscard]] inline Verdict problem(std::string value, std::string advice) {
    return {FindingState::problem, std::move(value), std::move(advice)};
}

[[nodiscard]] inline Verdict notApplicable(std::string value) {
    return {FindingState::notApplicable, std::move(value), {}};
}

// The program and the system that it runs on.
[[nodiscard]] Verdict agent(const DiagnosisFacts& facts);
[[nodiscard]] Verdict program(const DiagnosisFacts& facts);
[[nodiscard]] Verdict qt(const DiagnosisFacts& facts);
[[nodiscard]] Verdict system(const DiagnosisFacts& facts);
[[nodiscard]] Verdict signature(const DiagnosisFacts& facts);
[[nodiscard]] Verdict location(const DiagnosisFacts& facts);
[[nodiscard]] Verdict windowSystem(const DiagnosisFacts& facts);

// What any process of the session sees.
[[nodiscard]] Verdict accessibility(const DiagnosisFacts& facts);
[[nodiscard]] Verdict inputMonitoring(const DiagnosisFacts& facts);
[[nodiscard]] Verdict inputSources(const DiagnosisFacts& facts);
[[nodiscard]] Verdict pasteboard(const DiagnosisFacts& facts);
[[nodiscard]] Verdict updater(const DiagnosisFacts& facts);
[[nodiscard]] Verdict loginItem(const DiagnosisFacts& facts);
[[nodiscard]] Verdict accessibilityBus(const DiagnosisFacts& facts);
[[nodiscard]] Verdict secretService(const DiagnosisFacts& facts);

// What only the running agent knows.
[[nodiscard]] Verdict eventTap(const DiagnosisFacts& facts);
[[nodiscard]] Verdict keyEvents(const DiagnosisFacts& facts);
[[nodiscard]] Verdict secureInput(const DiagnosisFacts& facts);
[[nodiscard]] Verdict focusedElement(const DiagnosisFacts& facts);
[[nodiscard]] Verdict activity(const DiagnosisFacts& facts);
[[nodiscard]] Verdict statusItem(const DiagnosisFacts& facts);

} // namespace quillane::core::findings
