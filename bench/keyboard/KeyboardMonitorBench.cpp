// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
//
// The cost of a key in the event tap, without the desktop's: every key waits for it. One iteration is a press and its
// release, so that the more expensive of the two cannot hide behind the other.

#include "keyboard/KeyboardMonitor.hpp"
#include "keyboard/RTLInput.hpp"
#include "platform/Platform.hpp"

#include <benchmark/benchmark.h>

#include <array>
#include <memory>
#include <utility>

namespace quillane {
namespace {

class BenchTap final : public EventTap {
public:
    bool start(std::uint64_t /*mask*/, Receiver receiver) override {
        receiver_ = std::move(receiver);
        return true;
    }

    void stop() override { receiver_ = nullptr; }

    void enable() override {}

    [[nodiscard]] bool isEnabled() const override { return receiver_ != nullptr; }

    void setReplaceableKeys(std::span<const core::KeyCode> /*keys*/) override {}

    void hold() override {}

    void letGo() override {}

    [[nodiscard]] bool isHolding() const override { return false; }

    void send(InputEvent& event) const { receiver_(event); }

private:
    Receiver receiver_;
};

class BenchKeyEvents final : public KeyEvents {
public:
    [[nodiscard]] core::EventFlags currentFlags() const override { return 0; }

    [[nodiscard]] bool isKeyDown(core::KeyCode /*keyCode*/) const override { return true; }

    [[nodiscard]] bool postKey(pid_t /*pid*/, core::KeyCode /*keyCode*/, core::EventFlags /*flags*/) override {
        return false;
    }
};

class BenchWorkspace final : public Workspace {
public:
    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() const override { return front_; }

    [[nodiscard]] std::vector<RunningApplication> runningApplications(std::string_view /*bundleID*/) const override {
        return {front_};
    }

    [[nodiscard]] bool isRunning(pid_t pid) const override { return pid == front_.pid; }

    bool activateApplication(pid_t /*pid*/) override { return false; }

    bool terminate(pid_t /*pid*/) override { return false; }

    [[nodiscard]] bool launchedAtLogin() const override { return false; }

    core::Subscription onDidActivateApplication(std::function<void()> /*callback*/) override { return {}; }

    core::Subscription onDidWake(std::function<void()> /*callback*/) override { return {}; }

private:
    RunningApplication front_{.pid = 1001, .bundleID = "com.apple.TextEdit", .name = "TextEdit"};
};

/// Keeps the task posted last: making and destroying one is part of the cost.
class BenchQueue final : public MainQueue {
public:
    void post(Task task) override { last_ = std::move(task); }

    void postAfter(std::chrono::milliseconds /*delay*/, Task /*task*/) override {}

    core::Subscription repeat(std::chrono::milliseconds /*interval*/, Task /*task*/) override { return {}; }

private:
    Task last_;
};

class BenchInputSources final : public InputSources {
public:
    explicit BenchInputSources(InputSource source) : source_(std::move(source)) {}

    [[nodiscard]] std::optional<std::vector<InputSource>> enabled() const override { return std::vector{source_}; }

    [[nodiscard]] std::optional<InputSource> current() const override { return source_; }

    [[nodiscard]] std::optional<core::KeyboardLayout> layout(std::string_view /*id*/) const override {
        return std::nullopt;
    }

    bool select(std::string_view /*id*/) override { return false; }

    [[nodiscard]] bool switchedBySystemShortcut() const override { return false; }

    [[nodiscard]] bool hasSettings() const override { return false; }

    bool openSettings() override { return false; }

    core::Subscription onChanged(std::function<void()> /*callback*/) override { return {}; }

private:
    InputSource source_;
};

/// One enabled text field that has the focus.
class BenchAccessibility final : public Accessibility {
public:
    [[nodiscard]] AXElement application(pid_t /*pid*/) override { return element_; }

    void setMessagingTimeout(const AXElement& /*element*/, std::chrono::milliseconds /*timeout*/) override {}

    [[nodiscard]] std::optional<AXValue> attribute(const AXElement& /*element*/, std::string_view /*name*/) override {
        return element_;
    }

    [[nodiscard]] std::optional<std::vector<AXValue>> attributes(const AXElement& /*element*/,
                                                                 std::span<const std::string_view> /*names*/) override {
        return std::vector<AXValue>{"AXTextField", std::monostate(), true};
    }

    [[nodiscard]] bool isAttributeSettable(const AXElement& /*element*/, std::string_view /*name*/) override {
        return true;
    }

    bool setAttribute(const AXElement& /*element*/, std::string_view /*name*/, const AXValue& /*value*/) override {
        return false;
    }

    [[nodiscard]] std::optional<AXRect> frame(const AXElement& /*element*/) override { return std::nullopt; }

    [[nodiscard]] std::optional<AXRect> frameOfText(const AXElement& /*element*/,
                                                    const AXTextRange& /*range*/) override {
        return std::nullopt;
    }

    [[nodiscard]] std::optional<std::string> textIn(const AXElement& /*element*/,
                                                    const AXTextRange& /*range*/) override {
        return std::nullopt;
    }

    [[nodiscard]] AXReplacement replaceText(const AXElement& /*element*/, const AXTextRange& /*range*/,
                                            const std::string& /*expected*/, const std::string& /*text*/) override {
        return AXReplacement::failed;
    }

    [[nodiscard]] std::vector<std::string> actionNames(const AXElement& /*element*/) override { return {}; }

    AXActionResult performAction(const AXElement& /*element*/, std::string_view /*name*/) override {
        return AXActionResult::failed;
    }

    [[nodiscard]] std::optional<core::Subscription>
    observe(const AXElement& /*application*/, std::string_view /*name*/,
            std::function<void(const AXElement&)> /*handler*/) override {
        return std::nullopt;
    }

private:
    class Handle final : public AXElement::Handle {
    public:
        [[nodiscard]] bool isSame(const AXElement::Handle& other) const override { return &other == this; }
    };

    AXElement element_{std::make_shared<Handle>()};
};

/// A running monitor with every feature on and something connected to each handler.
struct World {
    explicit World(InputSource source) : platform(with(std::move(source))) {
        monitor.onDirection = [](core::WritingDirection) {};
        monitor.onLanguageSwitch = monitor.onDisabled = monitor.onKeyboardActivity = [] {};
        monitor.onInterruption = [](core::UserInput) {};
        monitor.setOptions(core::FeatureOptions());
    }

    static Platform with(InputSource source) {
        Platform made;
        made.mainQueue = std::make_unique<BenchQueue>();
        made.workspace = std::make_unique<BenchWorkspace>();
        made.inputSources = std::make_unique<BenchInputSources>(std::move(source));
        made.eventTap = std::make_unique<BenchTap>();
        made.accessibility = std::make_unique<BenchAccessibility>();
        made.keyEvents = std::make_unique<BenchKeyEvents>();
        return made;
    }

    Platform platform;
    BenchTap& tap = dynamic_cast<BenchTap&>(*platform.eventTap);
    RTLInput input{*platform.inputSources, *platform.accessibility, *platform.workspace};
    KeyboardMonitor monitor{platform, input};
};

const InputSource english{.id = "com.apple.keylayout.US", .localizedName = "U.S.", .languages = {"en"}};
const InputSource hebrew{.id = "com.apple.keylayout.Hebrew", .localizedName = "Hebrew", .languages = {"he"}};

constexpr auto leftShift = core::flags::shift | core::flags::leftShift;

/// Measures the events together: one iteration sends each of them once.
template <std::size_t Count>
void measure(benchmark::State& state, const InputSource& source, const std::array<InputEvent, Count>& events,
             bool expectReplacement) {
    World world(source);
    if (!world.monitor.start()) {
        state.SkipWithError("the monitor does not start");
        return;
    }
    std::size_t replaced = 0;
    for ([[maybe_unused]] auto iteration : state) {
        for (auto event : events) {
            world.tap.send(event);
            replaced += event.replacementText ? 1 : 0;
        }
    }
    if ((replaced > 0) != expectReplacement) {
        state.SkipWithError("the keys were not treated as they should be");
    }
}

void untouchedKey(benchmark::State& state) {
    measure(state, hebrew,
            std::array{InputEvent{.type = EventType::keyDown, .keyCode = 0},
                       InputEvent{.type = EventType::keyUp, .keyCode = 0}},
            false);
}

void flagsChange(benchmark::State& state) {
    measure(state, hebrew,
            std::array{InputEvent{.type = EventType::flagsChanged, .keyCode = 56, .flags = leftShift},
                       InputEvent{.type = EventType::flagsChanged, .keyCode = 56, .flags = 0}},
            false);
}

constexpr std::array shiftKey{InputEvent{.type = EventType::keyDown, .keyCode = 0, .flags = leftShift},
                              InputEvent{.type = EventType::keyUp, .keyCode = 0, .flags = leftShift}};

void shiftKeyWithEnglishSource(benchmark::State& state) {
    measure(state, english, shiftKey, false);
}

void shiftKeyWithHebrewSource(benchmark::State& state) {
    measure(state, hebrew, shiftKey, true);
}

/// Nine runs each; the median is the figure.
void nineRuns(benchmark::internal::Benchmark* made) {
    made->Repetitions(9)->ReportAggregatesOnly()->Unit(benchmark::kNanosecond);
}

BENCHMARK(untouchedKey)->Apply(nineRuns);
BENCHMARK(flagsChange)->Apply(nineRuns);
BENCHMARK(shiftKeyWithEnglishSource)->Apply(nineRuns);
BENCHMARK(shiftKeyWithHebrewSource)->Apply(nineRuns);

} // namespace
} // namespace quillane

BENCHMARK_MAIN();
