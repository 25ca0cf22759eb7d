// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/WindowTraits.hpp"
#include "support/Journal.hpp"

#include <utility>
#include <vector>

namespace quillane::fakes {

/// Records the requests to the desktop.
class FakeWindowTraits final : public WindowTraits {
public:
    [[nodiscard]] KeyNumbering keyNumbering() const override { return numbering; }

    void setActivationPolicy(ActivationPolicy policy) override {
        note(journal, "setActivationPolicy");
        policies_.push_back(policy);
    }

    void activateApplication() override { ++activations; }

    /// Makes it a panel as far as Qt can.
    void makePanel(QWidget& window, PanelKind kind) override;

    std::vector<std::pair<QWidget*, PanelKind>> panels; ///< the windows that were made panels, in order

    /// Every policy that was set, in order.
    [[nodiscard]] const std::vector<ActivationPolicy>& policies() const { return policies_; }

    KeyNumbering numbering = KeyNumbering::x11;
    Journal* journal = nullptr; ///< none: nothing is recorded
    int activations = 0;        ///< how often the program was brought to the front

private:
    std::vector<ActivationPolicy> policies_;
};

} // namespace quillane::fakes
