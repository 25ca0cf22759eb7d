// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/system/SecretServiceStore.hpp"

#include "contracts/SecretStoreContract.hpp"
#include "core/clipboard/VaultKey.hpp"
#include "support/TemporaryFolder.hpp"
#include "support/TestProcess.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <thread>

#include <libsecret/secret.h>

namespace quillane {
namespace {

using core::SecretStatus;
using testing::TestProcess;

constexpr const char* loginCollection = "/org/freedesktop/secrets/collection/login";

/// A home of its own with a session bus, which starts nothing by itself. This process is a program of that session.
class PrivateSession {
public:
    /// `policy` is what dbus-daemon(1) takes in a "policy" element.
    explicit PrivateSession(const std::string& policy = {}) {
        for (const auto* variable : {"HOME", "XDG_RUNTIME_DIR", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"}) {
            setenv(variable, home().c_str(), 1);
        }
        for (const auto* variable : {"DISPLAY", "WAYLAND_DISPLAY", "GNOME_KEYRING_CONTROL"}) {
            unsetenv(variable);
        }
        std::ofstream(home() + "/bus.conf")
            << "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
               "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\"><busconfig><type>session</type>"
               "<listen>unix:dir="
            << home()
            << "</listen><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
               "<allow eavesdrop=\"true\"/><allow own=\"*\"/>"
            << policy << "</policy></busconfig>";
        bus_ = std::make_unique<TestProcess>(std::vector<std::string>{
            "dbus-daemon", "--config-file=" + home() + "/bus.conf", "--nofork", "--print-address"});
        const auto address = bus_->readLine();
        EXPECT_NE(address, "") << "the bus did not start";
        setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
    }

    /// Starts the keyring of the session with a collection that is open.
    void startKeyring() {
        std::ofstream(home() + "/password") << "password";
        keyring_ = std::make_unique<TestProcess>(std::vector<std::string>{
            "sh", "-c", "exec gnome-keyring-daemon --foreground --unlock --components=secrets <\"$HOME/password\""});
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!call("org.freedesktop.Secret.Service.ReadAlias", {"string:default"}).contains(loginCollection)) {
            ASSERT_LT(std::chrono::steady_clock::now(), end) << "the keyring did not start";
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }

    void lockKeyring() {
        call("org.freedesktop.Secret.Service.Lock", {std::string("array:objpath:") + loginCollection});
    }

    [[nodiscard]] TestProcess& keyring() { return *keyring_; }

    void endBus() { bus_.reset(); }

    /// The folder of everything that the session has on disk.
    [[nodiscard]] std::string home() const { return home_.path().string(); }

private:
    struct Answer {
        std::string text;

        [[nodiscard]] bool contains(std::string_view part) const { return text.find(part) != std::string::npos; }
    };

    static Answer call(const std::string& method, const std::vector<std::string>& arguments) {
        std::vector<std::string> command{"dbus-send",
                                         "--session",
                                         "--print-reply",
                                         "--reply-timeout=5000",
                                         "--dest=org.freedesktop.secrets",
                                         "/org/freedesktop/secrets",
                                         method};
        command.insert(command.end(), arguments.begin(), arguments.end());
        TestProcess sending(command);
        Answer answer;
        for (auto line = sending.readLine(); !line.empty(); line = sending.readLine()) {
            answer.text += line + "\n";
        }
        return answer;
    }

    live::TemporaryFolder home_;
    std::unique_ptr<TestProcess> bus_;
    std::unique_ptr<TestProcess> keyring_;
};

/// What another program puts into the keyring, under the schema of most of them.
void store(const std::map<std::string, std::string>& attributes, const std::string& secret) {
    const std::unique_ptr<GHashTable, decltype(&g_hash_table_unref)> table(
        g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free), g_hash_table_unref);
    for (const auto& [key, value] : attributes) {
        g_hash_table_insert(table.get(), g_strdup(key.c_str()), g_strdup(value.c_str()));
    }
    g_hash_table_insert(table.get(), g_strdup("xdg:schema"), g_strdup("org.freedesktop.Secret.Generic"));
    auto* service =
        secret_service_open_sync(SECRET_TYPE_SERVICE, nullptr, SECRET_SERVICE_OPEN_SESSION, nullptr, nullptr);
    ASSERT_NE(service, nullptr);
    auto* value = secret_value_new(secret.data(), static_cast<gssize>(secret.size()), "text/plain");
    EXPECT_TRUE(secret_service_store_sync(service, nullptr, table.get(), SECRET_COLLECTION_DEFAULT, "Key", value,
                                          nullptr, nullptr));
    secret_value_unref(value);
    g_object_unref(service);
}

class SecretServiceStoreDriver {
public:
    SecretServiceStoreDriver() { session_.startKeyring(); }

    core::SecretStore& store() { return store_; }

    bool lock() {
        session_.lockKeyring();
        return true;
    }

private:
    PrivateSession session_;
    SecretServiceStore store_;
};

const core::SecretName name{"com.example.service", "account"};

SecretStatus statusOf(core::SecretStore& store) {
    const auto found = store.find(name);
    const auto* status = std::get_if<SecretStatus>(&found);
    return status ? *status : SecretStatus::success;
}

TEST(SecretServiceStore, IsNotAvailableWithoutABus) {
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
    SecretServiceStore store;
    EXPECT_EQ(statusOf(store), SecretStatus::notAvailable);
    EXPECT_EQ(store.add(name, "Label", {}), SecretStatus::notAvailable);
}

TEST(SecretServiceStore, IsNotAvailableWithoutAServiceAndIsFoundOnceThereIsOne) {
    PrivateSession session;
    SecretServiceStore store;
    EXPECT_EQ(statusOf(store), SecretStatus::notAvailable);
    EXPECT_EQ(store.add(name, "Label", {}), SecretStatus::notAvailable);
    session.startKeyring();
    EXPECT_EQ(statusOf(store), SecretStatus::itemNotFound);
    EXPECT_EQ(store.add(name, "Label", {}), SecretStatus::success);
}

TEST(SecretServiceStore, DenialIsReported) {
    PrivateSession session("<deny send_destination=\"org.freedesktop.secrets\" "
                           "send_interface=\"org.freedesktop.Secret.Service\" send_member=\"OpenSession\"/>");
    session.startKeyring();
    SecretServiceStore store;
    EXPECT_EQ(statusOf(store), SecretStatus::authFailed);
    EXPECT_EQ(store.add(name, "Label", {}), SecretStatus::authFailed);
}

TEST(SecretServiceStore, AServiceThatHangsIsGivenUp) {
    PrivateSession session;
    session.startKeyring();
    SecretServiceStore store(std::chrono::milliseconds(300));
    session.keyring().signal(SIGSTOP);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(statusOf(store), SecretStatus::notAvailable);
    EXPECT_EQ(store.add(name, "Label", {}), SecretStatus::notAvailable);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
    session.keyring().signal(SIGCONT);
    SecretServiceStore ordinary;
    EXPECT_EQ(statusOf(ordinary), SecretStatus::itemNotFound);
}

TEST(SecretServiceStore, OutlivesTheBus) {
    SecretServiceStore store;
    {
        PrivateSession session;
        session.startKeyring();
        EXPECT_EQ(statusOf(store), SecretStatus::itemNotFound);
        session.endBus();
        EXPECT_EQ(statusOf(store), SecretStatus::notAvailable);
    }
    PrivateSession next;
    next.startKeyring();
    EXPECT_EQ(statusOf(store), SecretStatus::itemNotFound);
}

TEST(SecretServiceStore, ItemOfAnotherSchemaWithExactlyTheAttributesIsFoundAndNoSecondOneIsMade) {
    PrivateSession session;
    session.startKeyring();
    store({{"service", core::vaultKeyService}, {"account", core::vaultKeyAccount}}, "0123456789abcdef0123456789abcdef");
    SecretServiceStore own;
    const auto key = core::obtainVaultKey(own);
    ASSERT_TRUE(key);
    EXPECT_EQ(static_cast<char>(key->bytes()[15]), 'f');
    EXPECT_EQ(own.add({core::vaultKeyService, core::vaultKeyAccount}, "Label", {}), SecretStatus::duplicateItem);
    session.lockKeyring();
    const auto locked = core::obtainVaultKey(own);
    ASSERT_FALSE(locked);
    EXPECT_EQ(locked.error(), SecretStatus::interactionNotAllowed);
}

TEST(SecretServiceStore, ItemWithFurtherAttributesIsAnotherOne) {
    PrivateSession session;
    session.startKeyring();
    store({{"service", name.service}, {"account", name.account}, {"user", "somebody"}}, "theirs");
    SecretServiceStore own;
    EXPECT_EQ(statusOf(own), SecretStatus::itemNotFound);
    EXPECT_EQ(own.add(name, "Label", {}), SecretStatus::success);
    EXPECT_EQ(statusOf(own), SecretStatus::success);
}

TEST(SecretServiceStore, TheClipboardKeyIsMadeOnceAndKept) {
    PrivateSession session;
    session.startKeyring();
    SecretServiceStore store;
    const auto first = core::obtainVaultKey(store);
    ASSERT_TRUE(first);
    SecretServiceStore another;
    const auto second = core::obtainVaultKey(another);
    ASSERT_TRUE(second);
    EXPECT_TRUE(std::ranges::equal(first->bytes(), second->bytes()));
    // Only the keyring has it, encrypted.
    const std::string key(reinterpret_cast<const char*>(first->bytes().data()), first->size());
    int files = 0;
    for (const auto& file : std::filesystem::recursive_directory_iterator(session.home())) {
        if (file.is_regular_file()) {
            std::ifstream stream(file.path(), std::ios::binary);
            const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
            EXPECT_EQ(bytes.find(key), std::string::npos) << file.path();
            ++files;
        }
    }
    EXPECT_GT(files, 2);
    session.lockKeyring();
    const auto locked = core::obtainVaultKey(store);
    ASSERT_FALSE(locked);
    EXPECT_EQ(locked.error(), SecretStatus::interactionNotAllowed);
}

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(SecretService, SecretStoreContract, SecretServiceStoreDriver);

} // namespace testing
} // namespace quillane
