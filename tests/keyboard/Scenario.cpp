// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "keyboard/Scenario.hpp"

#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>

namespace quillane::testing {

namespace {

const std::map<std::string, core::KeyCode, std::less<>> keys{
    {"a", 0},  {"s", 1},  {"d", 2},  {"f", 3},  {"h", 4},      {"g", 5},       {"z", 6},  {"x", 7},
    {"c", 8},  {"v", 9},  {"b", 11}, {"q", 12}, {"w", 13},     {"e", 14},      {"r", 15}, {"y", 16},
    {"t", 17}, {"1", 18}, {"o", 31}, {"u", 32}, {"i", 34},     {"p", 35},      {"l", 37}, {"j", 38},
    {"k", 40}, {"n", 45}, {"m", 46}, {"2", 19}, {"space", 49}, {"return", 36},
};

const std::map<std::string, InputSource, std::less<>> sources{
    {"english", fakes::english()}, {"hebrew", fakes::hebrew()}, {"arabic", fakes::arabic()}};

const std::map<std::string, bool core::FeatureOptions::*, std::less<>> options{
    {"shift-english", &core::FeatureOptions::shiftEnglish},
    {"language-switch", &core::FeatureOptions::languageSwitch},
    {"writing-direction", &core::FeatureOptions::writingDirection},
    {"exclude-screen-sharing", &core::FeatureOptions::excludeScreenSharing},
    {"paused", &core::FeatureOptions::paused},
};

/// The value of the word. An unknown word is a mistake in the scenario.
template <typename Table>
const auto& named(const Table& table, const std::string& word) {
    const auto found = table.find(word);
    if (found == table.end()) {
        throw std::invalid_argument("nothing is called \"" + word + "\"");
    }
    return found->second;
}

const std::string& only(std::span<const std::string> words) {
    if (words.size() != 1) {
        throw std::invalid_argument("exactly one word belongs to this command");
    }
    return words.front();
}

std::string joined(std::span<const std::string> words, std::string_view separator) {
    std::string text;
    for (const auto& word : words) {
        text.append(text.empty() ? "" : separator).append(word);
    }
    return text;
}

std::string difference(const std::string& expected, const std::string& actual) {
    return expected == actual ? std::string() : "expected \"" + expected + "\", but there was \"" + actual + "\"";
}

} // namespace

std::string Scenario::run(const std::filesystem::path& file) {
    Scenario scenario;
    std::ifstream lines(file);
    if (!lines) {
        return "cannot be read";
    }
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        std::istringstream stream(line.substr(0, line.find('#')));
        std::string command;
        if (!(stream >> command)) {
            continue;
        }
        std::vector<std::string> words;
        for (std::string word; stream >> word;) {
            words.push_back(word);
        }
        std::string wrong;
        try {
            wrong = scenario.carryOut(command, words);
        } catch (const std::exception& mistake) {
            wrong = mistake.what();
        }
        if (!wrong.empty()) {
            return std::string("line ").append(std::to_string(number)).append(", \"").append(line).append("\": ") +
                   wrong;
        }
    }
    const auto left = scenario.world_.chords();
    return left.empty() ? std::string() : "at the end: " + joined(left, ", ") + " was not expected anywhere";
}

std::string Scenario::carryOut(const std::string& command, Words words) {
    auto& desktop = world_.desktop;
    if (command == "front") {
        desktop.switchTo(only(words));
    } else if (command == "sources") {
        std::vector<InputSource> enabled;
        for (const auto& word : words) {
            enabled.push_back(named(sources, word));
        }
        desktop.withInputSources(std::move(enabled));
    } else if (command == "source") {
        desktop.inputSources.switchFromOutside(named(sources, only(words)));
    } else if (command == "focus") {
        const auto& what = only(words);
        if (what == "text") {
            desktop.withFocusedTextField();
        } else if (what == "password") {
            desktop.withFocusedPasswordField();
        } else if (what == "nothing") {
            desktop.accessibility.focus(desktop.frontPid(), nullptr);
        } else {
            return "the focus is on text, password or nothing";
        }
    } else if (command == "option") {
        return setOption(words);
    } else if (command == "start") {
        return world_.monitor->start() ? "" : "the monitor does not start";
    } else if (command == "stop") {
        world_.monitor->stop();
    } else if (command == "tap-disabled") {
        desktop.tap.disable();
    } else if (command == "press" || command == "release") {
        for (const auto& key : words) {
            move(key, command == "press");
        }
    } else if (command == "type") {
        for (const auto& key : words) {
            desktop.type(named(keys, key));
        }
    } else if (command == "click") {
        desktop.click();
    } else if (command == "scroll") {
        desktop.scroll();
    } else if (command == "expect") {
        return expect(words);
    } else {
        return "there is no such command";
    }
    return {};
}

std::string Scenario::expect(Words words) {
    if (!words.empty() && words.front() == "text") {
        return difference(joined(words.subspan(1), " "), takeText());
    }
    const auto expected = joined(words, " ");
    const auto chords = world_.chords();
    return difference(expected, chords.empty() ? "nothing" : joined(chords, ", "));
}

std::string Scenario::setOption(Words words) {
    if (words.size() != 2 || (words[1] != "on" && words[1] != "off")) {
        return "an option has a name and is on or off";
    }
    world_.change([&](core::FeatureOptions& all) { all.*named(options, words[0]) = words[1] == "on"; });
    return {};
}

void Scenario::move(const std::string& key, bool press) {
    const auto modifier = std::ranges::find(fakes::modifierKeys, key, &fakes::ModifierKey::name);
    if (modifier != fakes::modifierKeys.end()) {
        press ? world_.desktop.press(modifier->modifier) : world_.desktop.release(modifier->modifier);
    } else {
        press ? world_.desktop.press(named(keys, key)) : world_.desktop.release(named(keys, key));
    }
}

std::string Scenario::takeText() {
    std::string text;
    const auto& delivered = world_.desktop.delivered();
    for (; read_ < delivered.size(); ++read_) {
        const auto& event = delivered[read_];
        if (event.type == EventType::keyDown) {
            text += event.replacementText ? static_cast<char>(*event.replacementText) : '.';
        }
    }
    return text;
}

} // namespace quillane::testing
