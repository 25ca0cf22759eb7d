// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "contracts/ApplicationCatalogContract.hpp"
#include "contracts/ApplicationMenuContract.hpp"
#include "contracts/FilePanelContract.hpp"
#include "contracts/MainQueueContract.hpp"
#include "contracts/PermissionServiceContract.hpp"
#include "contracts/SleepAssertionsContract.hpp"
#include "contracts/StatusItemContract.hpp"
#include "contracts/SystemSymbolsContract.hpp"
#include "contracts/UpdaterServiceContract.hpp"
#include "contracts/WindowListContract.hpp"
#include "fakes/FakeApplicationCatalog.hpp"
#include "fakes/FakeApplicationMenu.hpp"
#include "fakes/FakeFilePanel.hpp"
#include "fakes/FakeMainQueue.hpp"
#include "fakes/FakePermissionService.hpp"
#include "fakes/FakeSleepAssertions.hpp"
#include "fakes/FakeStatusItem.hpp"
#include "fakes/FakeSystemSymbols.hpp"
#include "fakes/FakeUpdaterService.hpp"
#include "fakes/FakeWindowList.hpp"

#include <algorithm>
#include <stdexcept>

namespace quillane {
namespace {

class FakeMainQueueDriver {
public:
    std::unique_ptr<MainQueue>& queue() { return queue_; }

    [[nodiscard]] std::chrono::nanoseconds now() const { return fake_->now(); }

    bool waitUntil(const std::function<bool()>& condition) {
        using namespace std::chrono_literals;
        fake_->runPosted();
        for (int step = 0; !condition() && step < 5000; ++step) {
            fake_->advance(1ms);
        }
        return condition();
    }

private:
    std::unique_ptr<MainQueue> queue_ = std::make_unique<fakes::FakeMainQueue>();
    fakes::FakeMainQueue* fake_ = static_cast<fakes::FakeMainQueue*>(queue_.get());
};

class FakeStatusItemDriver {
public:
    StatusItem& item() { return fake_; }

    [[nodiscard]] std::vector<std::string> titles() const {
        std::vector<std::string> result;
        std::ranges::transform(fake_.rows(), std::back_inserter(result), &MenuRow::title);
        return result;
    }

    [[nodiscard]] bool isChecked(const std::string& title) const { return fake_.row(title).checked; }

    void refuseNotices() { fake_.setRefusesNotices(); }

    void waitForAnswers() { fake_.failNotices(); }

    void choose(const std::string& title) {
        try {
            fake_.click(title);
        } catch (const std::logic_error&) { // it refuses what a menu would not let happen
        }
    }

private:
    fakes::FakeStatusItem fake_;
};

class FakeSleepAssertionsDriver {
public:
    core::SleepAssertionClient& client() { return fake_; }

    [[nodiscard]] bool holds(const std::multiset<core::SleepAssertionKind>& kinds) const {
        return fake_.held() == kinds;
    }

private:
    fakes::FakeSleepAssertions fake_;
};

class FakeFilePanelDriver {
public:
    FilePanel& panel() { return fake_; }

    [[nodiscard]] bool isOpen() const { return fake_.open.has_value(); }

    [[nodiscard]] static std::filesystem::path file() { return "/tmp/file.txt"; }

    void confirm(const std::filesystem::path& path) { fake_.confirm(path); }

    void cancel() { fake_.cancel(); }

private:
    fakes::FakeFilePanel fake_;
};

class FakeSystemSymbolsDriver {
public:
    SystemSymbols& symbols() { return fake_; }

private:
    fakes::FakeSystemSymbols fake_;
};

class FakeApplicationCatalogDriver {
public:
    static constexpr auto installed = "com.example.mail";
    static constexpr auto running = "com.example.editor";

    FakeApplicationCatalogDriver() {
        auto made = std::make_unique<fakes::FakeApplicationCatalog>(queue_);
        made->applications = {{installed, "Mail"}, {running, "Editor", true}};
        catalog_ = std::move(made);
    }

    std::unique_ptr<ApplicationCatalog>& catalog() { return catalog_; }

    bool waitUntil(const std::function<bool()>& condition) {
        for (int turn = 0; turn < 100 && !condition(); ++turn) {
            queue_.runPosted();
        }
        return condition();
    }

private:
    fakes::FakeMainQueue queue_;
    std::unique_ptr<ApplicationCatalog> catalog_;
};

class FakeWindowListDriver {
public:
    WindowList& list() { return fake_; }

    pid_t open(const core::ScreenRect& content) {
        fake_.open({.pid = ++last_, .layer = 0, .bounds = content});
        return last_;
    }

    void close(pid_t pid) { fake_.close(pid); }

    static bool waitUntil(const std::function<bool()>& condition) { return condition(); }

private:
    fakes::FakeWindowList fake_;
    pid_t last_ = 100;
};

/// Asks until the condition holds, as a loop of events would, but nothing happens meanwhile.
bool askAgain(const std::function<bool()>& condition) {
    bool holds = condition();
    for (int turn = 0; turn < 100 && !holds; ++turn) {
        holds = condition();
    }
    return holds;
}

class FakePermissionServiceDriver {
public:
    PermissionService& service() { return fake_; }

    bool set(core::MacPermission permission, bool granted) {
        granted ? fake_.grant(permission) : fake_.revoke(permission);
        return true;
    }

    static bool waitUntil(const std::function<bool()>& condition) { return askAgain(condition); }

protected:
    fakes::FakePermissionService fake_;
};

/// The permissions are switched on by a request.
class FakePermissionSwitchDriver : public FakePermissionServiceDriver {
public:
    FakePermissionSwitchDriver() { fake_.grantOnRequest(); }
};

class FakeApplicationMenuDriver {
public:
    std::unique_ptr<ApplicationMenu>& menu() { return menu_; }

    void press(char key) {
        if (menu_) {
            fake().press(std::string_view(&key, 1));
        }
    }

    [[nodiscard]] bool isWindowOpen() const {
        return !menu_ || std::ranges::count(fake().standardCommands(), StandardCommand::close) == 0;
    }

    [[nodiscard]] LayoutDirection direction() const { return fake().direction(); }

    static bool waitUntil(const std::function<bool()>& condition) { return askAgain(condition); }

private:
    [[nodiscard]] fakes::FakeApplicationMenu& fake() const { return static_cast<fakes::FakeApplicationMenu&>(*menu_); }

    std::unique_ptr<ApplicationMenu> menu_ = std::make_unique<fakes::FakeApplicationMenu>();
};

class FakeUpdaterServiceDriver {
public:
    UpdaterService& updater() { return fake_; }

    [[nodiscard]] int checks() const { return fake_.checks; }

    void finish(core::Date date) { fake_.finish(date); }

    static bool waitUntil(const std::function<bool()>& condition) { return askAgain(condition); }

private:
    fakes::FakeUpdaterService fake_;
};

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, MainQueueContract, FakeMainQueueDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, StatusItemContract, FakeStatusItemDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, StatusItemNoticeContract, FakeStatusItemDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, SleepAssertionsContract, FakeSleepAssertionsDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, FilePanelContract, FakeFilePanelDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, SystemSymbolsContract, FakeSystemSymbolsDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, WindowListContract, FakeWindowListDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ApplicationCatalogContract, FakeApplicationCatalogDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(FakeSettings, PermissionServiceContract, FakePermissionServiceDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(FakeSwitch, PermissionServiceContract, FakePermissionSwitchDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ApplicationMenuContract, FakeApplicationMenuDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, UpdaterServiceContract, FakeUpdaterServiceDriver);

} // namespace testing
} // namespace quillane
