// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/FileExaminerContract.hpp"
#include "contracts/KeyEventsContract.hpp"
#include "contracts/LauncherContract.hpp"
#include "contracts/ProxySettingsContract.hpp"
#include "contracts/SecureInputContract.hpp"
#include "contracts/SerialQueueContract.hpp"
#include "contracts/ServicesMenuContract.hpp"
#include "contracts/SystemInspectorContract.hpp"
#include "contracts/UrlSessionContract.hpp"
#include "fakes/FakeFileExaminer.hpp"
#include "fakes/FakeKeyEvents.hpp"
#include "fakes/FakeLauncher.hpp"
#include "fakes/FakeProxySettings.hpp"
#include "fakes/FakeSecureInput.hpp"
#include "fakes/FakeSerialQueue.hpp"
#include "fakes/FakeServicesMenu.hpp"
#include "fakes/FakeSystemInspector.hpp"
#include "fakes/FakeUrlSession.hpp"

#include <algorithm>
#include <functional>

namespace quillane {
namespace {

class FakeSerialQueueDriver {
public:
    SerialQueue& queue() { return fake_; }

private:
    fakes::FakeSerialQueue fake_;
};

class FakeFileExaminerDriver {
public:
    core::FileExaminer examiner() { return fake_.examiner(); }

    void goAway() { fake_.goAway(); }

    void comeBack() { fake_.comeBack(); }

    static bool waitUntil(const std::function<bool()>& condition) { return condition(); }

private:
    fakes::FakeFileExaminer fake_;
};

class FakeSystemInspectorDriver {
public:
    SystemInspector& inspector() { return fake_; }

private:
    fakes::FakeSystemInspector fake_;
};

class FakeSecureInputDriver {
public:
    SecureInput& input() { return fake_; }

    void beginPassword() { fake_.setEnabled(true); }

    void endPassword() { fake_.setEnabled(false); }

private:
    fakes::FakeSecureInput fake_;
};

class FakeServicesMenuDriver {
public:
    ServicesMenu& menu() { return fake_; }

    [[nodiscard]] bool isOffered() const { return fake_.isOffered(); }

    std::optional<std::string> choose(const std::vector<std::string>& urls) { return fake_.chooseShare(urls); }

private:
    fakes::FakeServicesMenu fake_;
};

class FakeLauncherDriver {
public:
    Launcher& launcher() { return fake_; }

    [[nodiscard]] static core::ProcessCommand command(const std::string& word) { return {"/bin/true", {word}}; }

    [[nodiscard]] core::ProcessCommand impossible() {
        fake_.fails = true;
        return {"/nowhere", {}};
    }

    [[nodiscard]] bool hasRun(const std::string& word) const {
        return std::ranges::any_of(fake_.launched,
                                   [&](const auto& command) { return command.arguments == std::vector{word}; });
    }

private:
    fakes::FakeLauncher fake_;
};

class FakeKeyEventsDriver {
public:
    static constexpr core::KeyCode leftShift = 56;

    KeyEvents& events() { return fake_; }

    [[nodiscard]] static pid_t target() { return 1; }

    void holdShift() {
        fake_.setCurrentFlags(core::flags::shift | core::flags::leftShift);
        fake_.press(leftShift);
    }

    void releaseShift() {
        fake_.setCurrentFlags(0);
        fake_.release(leftShift);
    }

    static bool waitUntil(const std::function<bool()>& condition) { return condition(); }

    [[nodiscard]] std::size_t pressesOf(core::KeyCode keyCode) const {
        return static_cast<std::size_t>(
            std::ranges::count(fake_.posted, keyCode, &fakes::FakeKeyEvents::PostedKey::keyCode));
    }

private:
    fakes::FakeKeyEvents fake_;
};

/// Sessions to servers that are nowhere: what they do happens between two looks at the condition.
class FakeUrlSessionDriver {
public:
    core::UrlSessionFactory factory() { return sessions_.factory(); }

    [[nodiscard]] static core::Url address(testing::UrlServer server) {
        const auto name = "https://" + std::to_string(static_cast<int>(server)) + ".example/file.txt";
        return core::UrlComponents::parse(name).value().url().value();
    }

    static std::filesystem::path file(const std::string& content) {
        return "/" + std::to_string(content.size()); // all that the server looks at
    }

    bool waitUntil(const std::function<bool()>& condition) {
        for (int turn = 0; turn < 100 && !condition(); ++turn) {
            for (const auto& transfer : sessions_.transfers) {
                serve(*transfer);
            }
        }
        return condition();
    }

private:
    static void serve(fakes::FakeUrlSessions::Transfer& transfer) {
        const auto goesTo = [&](testing::UrlServer server) { return transfer.request->url == address(server); };
        if (transfer.cancelled) {
            transfer.completeCancelled();
        } else if (goesTo(testing::UrlServer::accepts)) {
            const auto size = std::stoll(transfer.file.filename().string());
            transfer.send(size, size);
            transfer.receive("https://files.example/file.txt");
            transfer.complete(core::UrlResponse{201});
        } else if (goesTo(testing::UrlServer::refuses)) {
            transfer.complete(core::UrlResponse{500});
        } else if (goesTo(testing::UrlServer::redirects)) {
            transfer.redirect();
            transfer.complete(core::UrlResponse{301});
        }
    }

    fakes::FakeUrlSessions sessions_;
};

class FakeProxySettingsDriver {
public:
    [[nodiscard]] const ProxySettings& settings() const { return fake_; }

private:
    fakes::FakeProxySettings fake_{"http://proxy.example:3128"};
};

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, FileExaminerContract, FakeFileExaminerDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, SerialQueueContract, FakeSerialQueueDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, SecureInputContract, FakeSecureInputDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, SystemInspectorContract, FakeSystemInspectorDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ServicesMenuContract, FakeServicesMenuDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, LauncherContract, FakeLauncherDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, KeyEventsContract, FakeKeyEventsDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, UrlSessionContract, FakeUrlSessionDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ProxySettingsContract, FakeProxySettingsDriver);

} // namespace testing
} // namespace quillane
