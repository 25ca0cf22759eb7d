// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/applications/MacWindowList.hpp"
#include "platform/macos/power/MacSleepAssertions.hpp"
#include "platform/macos/system/MacProxySettings.hpp"
#include "platform/macos/system/MacSecretStore.hpp"

#include "contracts/ProxySettingsContract.hpp"
#include "contracts/SecretStoreContract.hpp"
#include "contracts/SleepAssertionsContract.hpp"
#include "contracts/WindowListContract.hpp"
#include "standins/macos/Mac.hpp"

#include <gmock/gmock.h>

#include <array>

namespace quillane {
namespace {

using standin::Proxies;
using ::testing::ElementsAre;

class StandInSecretStoreDriver {
public:
    core::SecretStore& store() { return store_; }

    bool lock() {
        mac.keychain.answer(errSecInteractionNotAllowed);
        return true;
    }

    standin::Mac mac;

private:
    MacSecretStore store_;
};

class StandInSleepAssertionsDriver {
public:
    core::SleepAssertionClient& client() { return client_; }

    [[nodiscard]] bool holds(const std::multiset<core::SleepAssertionKind>& kinds) const {
        std::multiset<core::SleepAssertionKind> held;
        for (const auto& [id, assertion] : mac.power.assertions) {
            held.insert(assertion.type == "PreventUserIdleDisplaySleep" ? core::SleepAssertionKind::display
                                                                        : core::SleepAssertionKind::system);
        }
        return held == kinds;
    }

    standin::Mac mac;

private:
    MacSleepAssertions client_;
};

class StandInWindowListDriver {
public:
    WindowList& list() { return list_; }

    pid_t open(const core::ScreenRect& content) {
        auto& windows = mac.windows.windows;
        windows.insert(windows.begin(),
                       standin::WindowServer::entry(
                           ++last_, 0, {{content.x, content.y - 28}, {content.width, content.height + 28}}));
        return last_;
    }

    void close(pid_t pid) {
        std::erase_if(mac.windows.windows, [pid](const standin::Value& window) {
            const auto entry = static_cast<CFDictionaryRef>(window.get());
            return CFEqual(standin::entry(entry, kCGWindowOwnerPID), standin::value(pid).get()) != 0;
        });
    }

    bool waitUntil(const std::function<bool()>& condition) { return mac.waitUntil(condition); }

    standin::Mac mac;

private:
    MacWindowList list_;
    pid_t last_ = 500;
};

class StandInProxySettingsDriver {
public:
    StandInProxySettingsDriver() {
        mac.proxies.forAddress = std::vector{Proxies::proxy(kCFProxyTypeHTTP, "proxy.example", 3128)};
    }

    [[nodiscard]] const ProxySettings& settings() const { return settings_; }

    standin::Mac mac;

private:
    MacProxySettings settings_;
};

class MacSecretStoreTest : public ::testing::Test {
protected:
    standin::Mac mac;
    MacSecretStore store;
    const core::SecretName name{"service", "account"};
    const std::array<std::byte, 2> secret{std::byte{1}, std::byte{0}};
};

TEST_F(MacSecretStoreTest, ItemStaysOnThisMacUnderItsLabel) {
    ASSERT_EQ(store.add(name, "היסטוריה", secret), core::SecretStatus::success);
    ASSERT_EQ(mac.keychain.items().size(), 1U);
    const auto& item = mac.keychain.items().front();
    EXPECT_EQ(item.label, "היסטוריה");
    EXPECT_EQ(item.accessible, "after first unlock, this device only");
    EXPECT_EQ(item.secret, (std::vector<UInt8>{1, 0}));
}

TEST_F(MacSecretStoreTest, ItemThatHoldsNoDataCannotBeDecoded) {
    ASSERT_EQ(store.add(name, "Label", secret), core::SecretStatus::success);
    for (const auto& instead : {std::optional(standin::value("text")), std::optional<standin::Value>()}) {
        mac.keychain.giveInstead(instead);
        const auto found = store.find(name);
        ASSERT_TRUE(std::holds_alternative<core::SecretStatus>(found));
        EXPECT_EQ(std::get<core::SecretStatus>(found), core::SecretStatus::decode);
    }
}

TEST_F(MacSecretStoreTest, StatusOfTheSystemIsHandedOn) {
    mac.keychain.answer(errSecAuthFailed);
    EXPECT_EQ(std::get<core::SecretStatus>(store.find(name)), core::SecretStatus::authFailed);
    EXPECT_EQ(store.add(name, "Label", secret), core::SecretStatus::authFailed);
    mac.keychain.answer(-67808);
    EXPECT_EQ(static_cast<int>(std::get<core::SecretStatus>(store.find(name))), -67808);
}

TEST_F(MacSecretStoreTest, EmptySecretIsASecret) {
    ASSERT_EQ(store.add(name, "Label", {}), core::SecretStatus::success);
    const auto found = store.find(name);
    ASSERT_TRUE(std::holds_alternative<core::SecretBytes>(found));
    EXPECT_TRUE(std::get<core::SecretBytes>(found).bytes().empty());
}

TEST(MacSleepAssertions, RefusalIsHandedOn) {
    standin::Mac mac;
    mac.power.refusal = kIOReturnNotPrivileged;
    MacSleepAssertions client;
    const auto made = client.create(core::SleepAssertionKind::display);
    ASSERT_TRUE(std::holds_alternative<core::SleepAssertionError>(made));
    EXPECT_EQ(std::get<core::SleepAssertionError>(made).code, kIOReturnNotPrivileged);
}

TEST(MacSleepAssertions, ReasonNamesTheFeature) {
    standin::Mac mac;
    MacSleepAssertions client;
    static_cast<void>(client.create(core::SleepAssertionKind::system));
    ASSERT_EQ(mac.power.assertions.size(), 1U);
    EXPECT_EQ(mac.power.assertions.begin()->second.name, "Quillane Keep Awake");
    EXPECT_EQ(mac.power.assertions.begin()->second.level, kIOPMAssertionLevelOn);
}

class MacWindowListTest : public ::testing::Test {
protected:
    std::vector<OnScreenWindow> read() {
        std::vector<OnScreenWindow> result{OnScreenWindow{.pid = -1}};
        list.read([&](const auto& windows) { result = windows; });
        return result;
    }

    standin::Mac mac;
    MacWindowList list;
};

TEST_F(MacWindowListTest, EntriesWithoutBoundsArePassedOver) {
    const auto key = [](CFStringRef constant) { return standin::borrowed(constant); };
    mac.windows.windows = {
        standin::value("no dictionary"),
        standin::dictionary({}),
        standin::dictionary({{key(kCGWindowBounds), standin::value("no rectangle")}}),
        standin::dictionary({{key(kCGWindowBounds), standin::dictionary({{standin::value("X"), standin::value(1)}})}}),
        standin::WindowServer::entry(7, 25, {{-10, 0.5}, {3, 4}}),
    };
    EXPECT_THAT(read(), ElementsAre(OnScreenWindow{.pid = 7, .layer = 25, .bounds = {-10, 0.5, 3, 4}}));
}

TEST_F(MacWindowListTest, MissingNumbersAreZero) {
    const auto whole = standin::WindowServer::entry(7, 25, {{0, 0}, {3, 4}});
    const auto bounds = standin::entry(static_cast<CFDictionaryRef>(whole.get()), kCGWindowBounds);
    mac.windows.windows = {standin::dictionary({{standin::borrowed(kCGWindowBounds), standin::borrowed(bounds)},
                                                {standin::borrowed(kCGWindowLayer), standin::value("text")}})};
    EXPECT_THAT(read(), ElementsAre(OnScreenWindow{.pid = 0, .layer = 0, .bounds = {0, 0, 3, 4}}));
}

TEST_F(MacWindowListTest, NoAnswerIsNoWindow) {
    mac.windows.isAnswering = false;
    EXPECT_TRUE(read().empty());
}

class MacProxySettingsTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string proxy() const { return settings.proxyFor("https://files.example/a").value_or("none"); }

    void useScript(Proxies::Script script) {
        mac.proxies.script = script;
        mac.proxies.forAddress = std::vector{standin::dictionary(
            {{standin::borrowed(kCFProxyTypeKey), standin::borrowed(kCFProxyTypeAutoConfigurationURL)},
             {standin::borrowed(kCFProxyAutoConfigurationURLKey),
              standin::Value::adopt(CFURLCreateWithString(
                  nullptr, standin::string("https://files.example/proxy.pac").get(), nullptr))}})};
    }

    standin::Mac mac;
    MacProxySettings settings;
};

TEST_F(MacProxySettingsTest, KindsThatReachFileServersAreAddresses) {
    const auto expectation = [&](CFStringRef type, std::string_view host) {
        mac.proxies.forAddress = std::vector{Proxies::proxy(type, host, 8080)};
        return proxy();
    };
    EXPECT_EQ(expectation(kCFProxyTypeHTTP, "proxy"), "http://proxy:8080");
    EXPECT_EQ(expectation(kCFProxyTypeHTTPS, "proxy"), "http://proxy:8080");
    EXPECT_EQ(expectation(kCFProxyTypeSOCKS, "proxy"), "socks5h://proxy:8080");
    EXPECT_EQ(expectation(kCFProxyTypeHTTP, "fe80::1"), "http://[fe80::1]:8080");
    EXPECT_EQ(expectation(kCFProxyTypeFTP, "proxy"), "");
    EXPECT_EQ(expectation(kCFProxyTypeNone, "proxy"), "");
    EXPECT_EQ(expectation(kCFProxyTypeHTTP, ""), "");
}

TEST_F(MacProxySettingsTest, FirstProxyDecides) {
    mac.proxies.forAddress =
        std::vector{Proxies::proxy(kCFProxyTypeNone, "", 0), Proxies::proxy(kCFProxyTypeHTTP, "proxy", 8080)};
    EXPECT_EQ(proxy(), "");
}

TEST_F(MacProxySettingsTest, IncompleteAnswersAreNoProxy) {
    mac.proxies.forAddress = std::vector{Proxies::proxy(kCFProxyTypeHTTP, "proxy", 0)};
    EXPECT_EQ(proxy(), "");
    mac.proxies.forAddress =
        std::vector{standin::dictionary({{standin::borrowed(kCFProxyTypeKey), standin::borrowed(kCFProxyTypeHTTP)},
                                         {standin::borrowed(kCFProxyHostNameKey), standin::value("proxy")}})};
    EXPECT_EQ(proxy(), "") << "no port";
    mac.proxies.forAddress = std::vector{standin::dictionary({}), standin::value("no dictionary")};
    EXPECT_EQ(proxy(), "");
    mac.proxies.forAddress = std::vector{standin::value("no dictionary")};
    EXPECT_EQ(proxy(), "");
    mac.proxies.forAddress = std::vector<standin::Value>();
    EXPECT_EQ(proxy(), "");
    mac.proxies.forAddress.reset();
    EXPECT_EQ(proxy(), "");
    mac.proxies.hasSettings = false;
    EXPECT_EQ(proxy(), "");
}

TEST_F(MacProxySettingsTest, ScriptDecides) {
    useScript(Proxies::Script::answers);
    mac.proxies.ofScript = {Proxies::proxy(kCFProxyTypeSOCKS, "scripted", 1080)};
    EXPECT_EQ(proxy(), "socks5h://scripted:1080");
    EXPECT_EQ(mac.proxies.scripts, 1);
}

TEST_F(MacProxySettingsTest, ScriptThatFailsOrHangsIsNoProxy) {
    mac.proxies.ofScript = {Proxies::proxy(kCFProxyTypeHTTP, "scripted", 1080)};
    for (const auto script : {Proxies::Script::fails, Proxies::Script::cannotStart}) {
        useScript(script);
        EXPECT_EQ(proxy(), "");
    }
    useScript(Proxies::Script::hangs);
    const auto before = mac.now();
    EXPECT_EQ(proxy(), "");
    EXPECT_EQ(mac.now() - before, std::chrono::seconds(10));
    EXPECT_EQ(mac.proxies.scripts, 3);
}

TEST_F(MacProxySettingsTest, ScriptWithoutAnAddressIsNoProxy) {
    mac.proxies.forAddress = std::vector{standin::dictionary(
        {{standin::borrowed(kCFProxyTypeKey), standin::borrowed(kCFProxyTypeAutoConfigurationURL)}})};
    EXPECT_EQ(proxy(), "");
    EXPECT_EQ(mac.proxies.scripts, 0);
}

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(MacStandIn, ProxySettingsContract, StandInProxySettingsDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(MacStandIn, SecretStoreContract, StandInSecretStoreDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(MacStandIn, SleepAssertionsContract, StandInSleepAssertionsDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(MacStandIn, WindowListContract, StandInWindowListDriver);
} // namespace testing
} // namespace quillane
