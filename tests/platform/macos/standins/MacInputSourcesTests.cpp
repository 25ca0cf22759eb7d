// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/keyboard/MacInputSources.hpp"

#include "contracts/InputSourcesContract.hpp"
#include "standins/macos/KeyLayouts.hpp"
#include "standins/macos/Mac.hpp"
#include "support/KeyboardLayouts.hpp"

#include <gmock/gmock.h>

namespace quillane {
namespace {

using standin::InputSourceList;
using ::testing::ElementsAre;

/// Two keyboards, and beside them what a list of all sources holds: a palette and a keyboard that is not enabled.
class StandInInputSourcesDriver {
public:
    StandInInputSourcesDriver() {
        auto& list = mac.inputSources;
        list.add(
            withLayout(InputSourceList::keyboard("com.apple.keylayout.ABC", "ABC", {standin::value("en")}), english_));
        auto palette = InputSourceList::keyboard("com.apple.CharacterPaletteIM", "Emoji", {});
        palette.values.front().second = standin::value("TISCategoryPaletteInputSource");
        list.add(std::move(palette));
        auto french = InputSourceList::keyboard("com.apple.keylayout.French", "French", {standin::value("fr")});
        french.isEnabled = false;
        list.add(std::move(french));
        list.add(withLayout(InputSourceList::keyboard("com.apple.keylayout.Hebrew", "עברית", {standin::value("he")}),
                            hebrew_));
        sources_.emplace();
    }

    InputSources& sources() { return *sources_; }

    void switchFromOutside(const std::string& id) { mac.inputSources.selectFromOutside(id); }

    bool waitUntil(const std::function<bool()>& condition) { return mac.waitUntil(condition); }

    standin::Mac mac;

private:
    static InputSourceList::Properties withLayout(InputSourceList::Properties properties,
                                                  const core::KeyboardLayout& layout) {
        properties.values.emplace_back(kTISPropertyUnicodeKeyLayoutData, standin::layoutData(layout));
        return properties;
    }

    core::KeyboardLayout english_ = testing::englishLayout();
    core::KeyboardLayout hebrew_ = testing::hebrewLayout();
    std::optional<MacInputSources> sources_;
};

class MacInputSourcesTest : public ::testing::Test {
protected:
    void add(std::vector<std::pair<CFStringRef, standin::Value>> properties) {
        properties.emplace_back(kTISPropertyInputSourceCategory, standin::borrowed(kTISCategoryKeyboardInputSource));
        mac.inputSources.add({.values = std::move(properties)});
    }

    standin::Mac mac;
    MacInputSources sources;
};

TEST_F(MacInputSourcesTest, LanguagesThatAreNotTextsAreIgnored) {
    add({{kTISPropertyInputSourceID, standin::value("a")},
         {kTISPropertyLocalizedName, standin::value("A")},
         {kTISPropertyInputSourceLanguages,
          standin::list({standin::value("he"), standin::value(1), standin::value("yi")})}});
    ASSERT_TRUE(sources.current());
    EXPECT_THAT(sources.current()->languages, ElementsAre("he", "yi"));
}

TEST_F(MacInputSourcesTest, SourceWithoutANameIsCalledByItsIdentifier) {
    add({{kTISPropertyInputSourceID, standin::value("a")}, {kTISPropertyInputSourceLanguages, standin::value("he")}});
    EXPECT_EQ(sources.current(), (InputSource{.id = "a", .localizedName = "a", .languages = {}}));
}

TEST_F(MacInputSourcesTest, SourceWithoutAnIdentifierIsNotListed) {
    add({{kTISPropertyLocalizedName, standin::value("A")}});
    add({{kTISPropertyInputSourceID, standin::value("b")}});
    add({{kTISPropertyInputSourceID, standin::value("b")}, {kTISPropertyLocalizedName, standin::value("twice")}});
    EXPECT_FALSE(sources.current());
    ASSERT_TRUE(sources.enabled());
    EXPECT_THAT(*sources.enabled(), ElementsAre(InputSource{.id = "b", .localizedName = "b", .languages = {}}));
}

TEST_F(MacInputSourcesTest, WithoutAnAnswerThereIsNothing) {
    add({{kTISPropertyInputSourceID, standin::value("a")}});
    mac.inputSources.isAnswering = false;
    EXPECT_FALSE(sources.enabled());
    EXPECT_FALSE(sources.current());
    EXPECT_FALSE(sources.select("a"));
}

TEST_F(MacInputSourcesTest, InputMethodHasNoKeysOfItsOwn) {
    add({{kTISPropertyInputSourceID, standin::value("a")}});
    EXPECT_FALSE(sources.layout("a"));
}

TEST_F(MacInputSourcesTest, LayoutIsReadWithEveryModifier) {
    const auto keys = testing::hebrewLayout();
    add({{kTISPropertyInputSourceID, standin::value("a")},
         {kTISPropertyUnicodeKeyLayoutData, standin::layoutData(keys)}});
    EXPECT_EQ(sources.layout("a"), keys);
}

TEST_F(MacInputSourcesTest, KeyMayTypeTwoLettersOrALetterOutsideTheFirstPlane) {
    core::KeyboardLayout keys;
    keys.outputs[{.keyCode = 11}] = {U"\u0644\u0627"};
    keys.outputs[{.keyCode = 12, .shift = true}] = {U"\U00010800"};
    add({{kTISPropertyInputSourceID, standin::value("a")},
         {kTISPropertyUnicodeKeyLayoutData, standin::layoutData(keys)}});
    EXPECT_EQ(sources.layout("a"), keys);
}

TEST_F(MacInputSourcesTest, DeadKeyComposesWithSomeKeys) {
    constexpr core::KeyStroke dead{.keyCode = 14, .option = true};
    constexpr core::KeyStroke e{.keyCode = 14};
    core::KeyboardLayout keys;
    keys.outputs[dead] = {U"\u00b4", true};
    keys.outputs[e] = {U"e"};
    keys.outputs[{.keyCode = 1}] = {U"s"};
    keys.outputs[{.keyCode = core::spaceKey}] = {U" "};
    keys.compositions[{dead, e}] = U"\u00e9";
    keys.compositions[{dead, {.keyCode = core::spaceKey}}] = U"\u00b4";
    add({{kTISPropertyInputSourceID, standin::value("a")},
         {kTISPropertyUnicodeKeyLayoutData, standin::layoutData(keys)}});
    EXPECT_EQ(sources.layout("a"), keys);
}

TEST_F(MacInputSourcesTest, KeyOfAControlCharacterTypesNoText) {
    core::KeyboardLayout keys;
    keys.outputs[{.keyCode = 12, .option = true}] = {U"\u0010"};
    add({{kTISPropertyInputSourceID, standin::value("a")},
         {kTISPropertyUnicodeKeyLayoutData, standin::layoutData(keys)}});
    EXPECT_EQ(sources.layout("a"), core::KeyboardLayout());
}

TEST_F(MacInputSourcesTest, RefusedSelectionIsReported) {
    add({{kTISPropertyInputSourceID, standin::value("a")}});
    mac.inputSources.refusesAll = true;
    EXPECT_FALSE(sources.select("a"));
}

TEST_F(MacInputSourcesTest, ExceptionOfAListenerEndsInTheNotice) {
    add({{kTISPropertyInputSourceID, standin::value("a")}});
    add({{kTISPropertyInputSourceID, standin::value("b")}});
    const auto token = sources.onChanged([] { throw std::runtime_error("b"); });
    mac.inputSources.selectFromOutside("b");
    mac.turn();
    EXPECT_EQ(mac.log.size(), 1U);
}

TEST_F(MacInputSourcesTest, ChangeOfTheEnabledSourcesIsNoticed) {
    int notices = 0;
    const auto token = sources.onChanged([&] { ++notices; });
    mac.notifications.post("com.apple.Carbon.TISNotifyEnabledKeyboardInputSourcesChanged");
    mac.turn();
    EXPECT_EQ(notices, 1);
}

TEST_F(MacInputSourcesTest, SettingsOpenOnTheirPage) {
    EXPECT_TRUE(sources.hasSettings());
    EXPECT_TRUE(sources.openSettings());
    ASSERT_EQ(mac.openedAddresses.size(), 1U);
    EXPECT_TRUE(mac.openedAddresses.front().starts_with("x-apple.systempreferences:")) << mac.openedAddresses.front();
    mac.opensAddresses = false;
    EXPECT_FALSE(sources.openSettings());
}

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(MacStandIn, InputSourcesContract, StandInInputSourcesDriver);
} // namespace testing
} // namespace quillane
