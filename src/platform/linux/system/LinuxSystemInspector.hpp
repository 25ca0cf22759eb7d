// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemInspector.hpp"
#include "platform/linux/system/LinuxDesktop.hpp"

#include <chrono>
#include <utility>

namespace quillane {

/// Reads the environment and asks the session bus (D-Bus Specification, AT-SPI 2, Secret Service API), on connections
/// that it opens for each question and closes again. An application object of Qt must exist.
class LinuxSystemInspector final : public SystemInspector {
public:
    explicit LinuxSystemInspector(LinuxDesktop desktop, std::chrono::milliseconds timeout = std::chrono::seconds{1})
        : desktop_(std::move(desktop)), timeout_(timeout) {}

    [[nodiscard]] core::SystemFacts inspect() override;

private:
    LinuxDesktop desktop_;
    std::chrono::milliseconds timeout_;
};

} // namespace quillane
