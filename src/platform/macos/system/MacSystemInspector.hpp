// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemInspector.hpp"

namespace quillane {

/// NSProcessInfo.operatingSystemVersionString; SecCodeCheckValidity and SecCodeCopySigningInformation of the running
/// code; CGSessionCopyCurrentDictionary, which a process without the window server is not given.
class MacSystemInspector final : public SystemInspector {
public:
    [[nodiscard]] core::SystemFacts inspect() override;
};

} // namespace quillane
