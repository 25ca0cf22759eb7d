// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ApplicationCatalog.hpp"

#include <memory>

namespace quillane {

/// The bundles in the Applications folders and the running applications with a Dock icon (NSRunningApplication).
class MacApplicationCatalog final : public ApplicationCatalog {
public:
    void read(Handler handler) override;

private:
    std::shared_ptr<void> alive_ = std::make_shared<int>(); // shared with pending answers
};

} // namespace quillane
