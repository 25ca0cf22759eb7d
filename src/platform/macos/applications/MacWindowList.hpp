// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/WindowList.hpp"

namespace quillane {

/// CGWindowListCopyWindowInfo (CGWindow.h), which reports owners, layers and bounds without any permission.
class MacWindowList final : public WindowList {
public:
    void read(Handler handler) override;
};

} // namespace quillane
