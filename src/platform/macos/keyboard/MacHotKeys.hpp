// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/HotKeys.hpp"

#include <memory>

namespace quillane {

/// Hot keys of the Carbon Event Manager (RegisterEventHotKey), which need no permission.
class MacHotKeys final : public HotKeys {
public:
    MacHotKeys();
    ~MacHotKeys() override;

    [[nodiscard]] core::Subscription registerHotKey(const HotKey& key, std::function<void()> pressed,
                                                    std::function<void()> taken) override;

private:
    struct State;
    std::shared_ptr<State> state_; ///< shared with tokens that may outlive this
};

} // namespace quillane
