// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Lifetime.hpp"
#include "platform/ApplicationCatalog.hpp"

#include <memory>

namespace quillane {

/// The bundles in the Applications folders and the running applications with a Dock icon (NSRunningApplication).
class MacApplicationCatalog final : public ApplicationCatalog {
public:
    void read(Handler handler) override;

private:
    core::Lifetime lifetime_;
};

} // namespace quillane
