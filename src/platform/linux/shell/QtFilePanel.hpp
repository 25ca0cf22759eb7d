// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FilePanel.hpp"

#include <memory>

namespace quillane {

/// Qt's file dialog, with the message below the files. Not the desktop's own, which has no place for a message.
class QtFilePanel final : public FilePanel {
public:
    QtFilePanel();
    ~QtFilePanel() override;

    void chooseFile(const Texts& texts, Chosen chosen, Dropped dropped) override;
    void setTexts(const Texts& texts) override;

private:
    class Dialog;
    std::unique_ptr<Dialog> dialog_;
};

} // namespace quillane
