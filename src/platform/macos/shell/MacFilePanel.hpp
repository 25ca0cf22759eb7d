// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FilePanel.hpp"

#include <memory>

namespace quillane {

/// NSOpenPanel.
class MacFilePanel final : public FilePanel {
public:
    MacFilePanel();
    ~MacFilePanel() override;

    void chooseFile(const Texts& texts, Chosen chosen, Dropped dropped) override;
    void setTexts(const Texts& texts) override;

private:
    struct State;
    std::shared_ptr<State> state_; ///< shared with the panel's completion, which may come later
};

} // namespace quillane
