// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/accessibility/MacPermissionService.hpp"
#include "platform/macos/applications/MacApplicationCatalog.hpp"
#include "platform/macos/applications/MacWindowList.hpp"
#include "platform/macos/shell/MacSystemSymbols.hpp"
#include "platform/macos/system/MacProxySettings.hpp"

#include "contracts/ApplicationCatalogContract.hpp"
#include "contracts/PermissionServiceContract.hpp"
#include "contracts/ProxySettingsContract.hpp"
#include "contracts/SystemSymbolsContract.hpp"
#include "contracts/WindowListContract.hpp"
#include "platform/macos/MacDriver.hpp"
#include "platform/macos/MacForm.hpp"

namespace quillane {
namespace {

/// The user's own applications: the Finder always runs, and Chess must not.
class MacApplicationCatalogDriver : public testing::MacDriver {
public:
    static constexpr auto installed = "com.apple.Chess";
    static constexpr auto running = "com.apple.finder";

    std::unique_ptr<ApplicationCatalog>& catalog() { return catalog_; }

private:
    std::unique_ptr<ApplicationCatalog> catalog_ = std::make_unique<MacApplicationCatalog>();
};

/// No program can give or take its own permissions.
class MacPermissionServiceDriver : public testing::MacDriver {
public:
    PermissionService& service() { return service_; }

    static bool set(core::MacPermission, bool) { return false; }

private:
    MacPermissionService service_;
};

class MacProxySettingsDriver {
public:
    [[nodiscard]] const ProxySettings& settings() const { return settings_; }

private:
    MacProxySettings settings_;
};

class MacSystemSymbolsDriver : public testing::MacDriver {
public:
    SystemSymbols& symbols() { return symbols_; }

private:
    MacSystemSymbols symbols_;
};

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
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, ApplicationCatalogContract, MacApplicationCatalogDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, PermissionServiceContract, MacPermissionServiceDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, ProxySettingsContract, MacProxySettingsDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, SystemSymbolsContract, MacSystemSymbolsDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, WindowListContract, MacWindowListDriver);
} // namespace testing
} // namespace quillane
