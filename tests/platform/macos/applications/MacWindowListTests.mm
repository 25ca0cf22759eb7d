// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/applications/MacWindowList.hpp"

#include "contracts/WindowListContract.hpp"
#include "platform/macos/MacDriver.hpp"
#include "platform/macos/MacForm.hpp"

namespace quillane {
namespace {

class MacWindowListDriver : public testing::MacDriver {
public:
    WindowList& list() { return list_; }

    pid_t open(const core::ScreenRect& content) {
        QStringList numbers;
        for (const double number : {content.x, content.y, content.width, content.height}) {
            numbers.push_back(QString::number(static_cast<int>(number)));
        }
        forms_.push_back(std::make_unique<testing::MacForm>(
            QStringList{QStringLiteral("--content"), numbers.join(QLatin1Char(','))}));
        const auto pid = forms_.back()->pid();
        EXPECT_TRUE(waitUntil([&] { return isSeen(pid); }));
        return pid;
    }

    void close(pid_t pid) {
        std::erase_if(forms_, [pid](const auto& form) { return form->pid() == pid; });
    }

private:
    [[nodiscard]] bool isSeen(pid_t pid) {
        bool seen = false;
        list_.read([&](const auto& windows) {
            seen = std::ranges::find(windows, pid, &OnScreenWindow::pid) != windows.end();
        });
        return seen;
    }

    MacWindowList list_;
    std::vector<std::unique_ptr<testing::MacForm>> forms_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, WindowListContract, MacWindowListDriver);
} // namespace testing
} // namespace quillane
