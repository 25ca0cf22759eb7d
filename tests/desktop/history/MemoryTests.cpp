// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/clipboard/VaultKey.hpp"
#include "desktop/history/LiveHistory.hpp"
#include "support/ProcessMemory.hpp"

namespace quillane::live {
namespace {

/// Prints the secret of the item with these attributes (Secret Service API, with the session algorithm "plain").
constexpr auto askForSecret = R"(import dbus, sys
bus, prefix = dbus.SessionBus(), "org.freedesktop.Secret."
def at(path, interface): return dbus.Interface(bus.get_object("org.freedesktop.secrets", path), prefix + interface)
service = at("/org/freedesktop/secrets", "Service")
session = service.OpenSession("plain", dbus.String("", variant_level=1))[1]
item = service.SearchItems({"service": sys.argv[1], "account": sys.argv[2]})[0][0]
sys.stdout.buffer.write(bytes(at(item, "Item").GetSecret(session)[2])))";

/// What a dump of the agent would show, which it permits here.
class LiveMemoryTest : public LiveHistoryTest {
protected:
    void SetUp() override {
#if !defined(QUILLANE_WIPES_FREED_MEMORY)
        GTEST_SKIP() << "sanitizers have heaps of their own, which keep what was freed";
#endif
        LiveHistoryTest::SetUp();
        startHistory({{"QUILLANE_TRACEABLE", "1"}});
    }

    /// Where the agent holds the text, in the encodings of its own code, of Qt and of the search.
    std::vector<MemoryMatch> held(const std::string& text) {
        return findTextInMemory(agent().process().pid(), std::u16string(text.begin(), text.end()));
    }

    /// Waits until the agent holds the text nowhere.
    void expectForgotten(const std::string& text) {
        std::vector<MemoryMatch> found;
        EXPECT_TRUE(waitUntil([&] { return (found = held(text)).empty(); })) << describe(found);
    }

    static std::string repeated(const std::string& word, int count) {
        std::string text;
        for (int i = 0; i < count; ++i) {
            text += word + ' ';
        }
        return text;
    }
};

TEST_F(LiveMemoryTest, KeyIsInLockedMemoryOutsideOfDumpsOnly) {
    for (const auto* text : {"first", "second"}) {
        const auto before = entryFiles().size();
        copy(text);
        ASSERT_TRUE(waitUntil([&] { return entryFiles().size() == before + 1; }));
    }
    const auto key =
        desktop().run({"/usr/bin/python3", "-c", askForSecret, core::vaultKeyService, core::vaultKeyAccount});
    ASSERT_EQ(key.output.size(), 32U) << key.errors;
    std::vector<MemoryMatch> found;
    EXPECT_TRUE(waitUntil([&] { // the save that has just made its file may still use it
        found = findInMemory(agent().process().pid(), std::as_bytes(std::span(key.output))).value();
        return found.size() == 1 && found.front().isLocked && !found.front().isDumped;
    })) << describe(found);
}

TEST_F(LiveMemoryTest, NothingIsLeftOfADeletedEntry) {
    const std::string word = "hippopotamus-7f3a";
    copy(repeated(word, 20));
    ASSERT_TRUE(hasEntries(1));
    copy("another");
    ASSERT_TRUE(hasEntries(2));
    ASSERT_FALSE(held(word).empty()) << "the test looks in the wrong place";
    openPanel();
    desktop().keyboard().tap(Key::down);
    desktop().keyboard().tapWith({Key::leftShift}, Key{119}); // Delete
    ASSERT_TRUE(hasEntries(1));
    desktop().keyboard().tap(Key::escape);
    ASSERT_TRUE(isPanelOpen(false));
    expectForgotten(word);
}

} // namespace
} // namespace quillane::live
