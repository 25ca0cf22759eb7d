// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/NaiveChordModel.hpp"

#include "core/keyboard/LanguageSwitchChord.hpp"
#include "core/keyboard/RetypingChord.hpp"
#include "core/keyboard/WritingDirectionChord.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <ostream>
#include <random>
#include <string_view>
#include <vector>

namespace quillane::core {
namespace {

/// One thing that happens to a chord.
struct Step {
    enum class Kind { flags, cancel, reset };

    Kind kind = Kind::flags;
    EventFlags rawFlags = 0;
};

using Sequence = std::vector<Step>;

std::ostream& operator<<(std::ostream& out, const Sequence& sequence) {
    for (const auto& step : sequence) {
        switch (step.kind) {
        case Step::Kind::flags:
            out << " flags 0x" << std::hex << step.rawFlags;
            break;
        case Step::Kind::cancel:
            out << " cancel";
            break;
        case Step::Kind::reset:
            out << " reset";
            break;
        }
    }
    return out;
}

/// The result of one run.
struct Outcome {
    bool agrees = true;
    int rightToLeft = 0;
    int leftToRight = 0;
    int languageSwitches = 0;
    int retypings = 0;
};

/// The machines and the models side by side.
Outcome run(const Sequence& sequence) {
    WritingDirectionChord writing;
    LanguageSwitchChord language;
    RetypingChord retyping;
    naive::Story control;
    naive::Story rightOption;
    naive::Story languageStory;
    naive::Story retypingStory;
    Outcome outcome;
    for (const auto& step : sequence) {
        if (step.kind == Step::Kind::cancel) {
            writing.cancel();
            language.cancel();
            retyping.cancel();
            retypingStory.cancel();
            control.cancel();
            rightOption.cancel();
            languageStory.cancel();
        } else if (step.kind == Step::Kind::reset) {
            writing.reset();
            language.reset();
            retyping.reset();
            retypingStory.reset();
            control.reset();
            rightOption.reset();
            languageStory.reset();
        } else {
            const auto direction = writing.update(step.rawFlags);
            const bool switches = language.update(step.rawFlags);
            const auto byControl = control.change(naive::controlChordKeys(step.rawFlags));
            const auto byOption = rightOption.change(naive::rightOptionChordKeys(step.rawFlags));
            const auto expected = byControl ? byControl : byOption;
            const auto actual = direction ? std::optional(rawValue(*direction)) : std::nullopt;
            const bool expectedSwitch = languageStory.change(naive::languageChordKeys(step.rawFlags)).has_value();
            const bool retypes = retyping.update(step.rawFlags);
            const bool expectedRetyping = retypingStory.change(naive::retypingChordKeys(step.rawFlags)).has_value();
            outcome.agrees =
                outcome.agrees && actual == expected && switches == expectedSwitch && retypes == expectedRetyping;
            outcome.retypings += retypes ? 1 : 0;
            outcome.rightToLeft += actual == "RTL" ? 1 : 0;
            outcome.leftToRight += actual == "LTR" ? 1 : 0;
            outcome.languageSwitches += switches ? 1 : 0;
        }
    }
    return outcome;
}

/// The shortest sequence, found by leaving out steps, on which machine and model differ.
Sequence shortened(Sequence failing) {
    for (std::size_t place = 0; place < failing.size();) {
        auto shorter = failing;
        shorter.erase(shorter.begin() + static_cast<std::ptrdiff_t>(place));
        if (run(shorter).agrees) {
            ++place;
        } else {
            failing = std::move(shorter);
            place = 0;
        }
    }
    return failing;
}

using Random = std::mt19937_64; // generates the same numbers everywhere

bool oneIn(Random& random, std::uint64_t times) {
    return random() % times == 0;
}

/// Fingers on a keyboard: modifiers go down and up one at a time, with few of them held.
Sequence fingers(Random& random) {
    struct Key {
        EventFlags common;
        EventFlags own;
    };

    constexpr std::array<Key, 11> keys{{
        {flags::shift, flags::leftShift},
        {flags::shift, flags::leftShift},
        {flags::shift, flags::rightShift},
        {flags::shift, flags::rightShift},
        {flags::control, flags::leftControl},
        {flags::control, flags::rightControl},
        {flags::option, flags::leftOption},
        {flags::option, flags::rightOption},
        {flags::command, flags::leftCommand},
        {flags::secondaryFn, 0x4000000},
        {flags::capsLock, 0x8000000},
    }};
    Sequence sequence;
    std::array<bool, keys.size()> held{};
    const auto length = 2 + random() % 22;
    while (sequence.size() < length) {
        if (oneIn(random, 24)) {
            sequence.push_back({oneIn(random, 2) ? Step::Kind::cancel : Step::Kind::reset, 0});
        }
        if (oneIn(random, 5)) {
            held.fill(false);
        } else {
            const auto count = std::ranges::count(held, true);
            auto key = random() % keys.size();
            while (count >= 2 && !held.at(key) && !oneIn(random, 4)) {
                key = random() % keys.size(); // rather a release
            }
            held.at(key) = !held.at(key);
        }
        EventFlags rawFlags = 0;
        for (std::size_t key = 0; key < keys.size(); ++key) {
            rawFlags |= held.at(key) ? keys.at(key).common | keys.at(key).own : 0;
        }
        sequence.push_back({Step::Kind::flags, rawFlags});
    }
    sequence.push_back({Step::Kind::flags, 0});
    return sequence;
}

/// A keyboard that reports anything: inconsistent bits, and any number of changes at once.
Sequence noise(Random& random) {
    constexpr std::array bits{flags::leftControl, flags::leftShift,   flags::rightShift, flags::leftCommand,
                              flags::leftOption,  flags::rightOption, flags::shift,      flags::control,
                              flags::option,      flags::command,     flags::capsLock,   flags::secondaryFn,
                              flags::rightControl};
    Sequence sequence;
    EventFlags rawFlags = 0;
    const auto length = 2 + random() % 22;
    while (sequence.size() < length) {
        if (oneIn(random, 16)) {
            sequence.push_back({oneIn(random, 2) ? Step::Kind::cancel : Step::Kind::reset, 0});
        }
        if (oneIn(random, 6)) {
            rawFlags = 0;
        } else {
            for (auto changes = 1 + random() % 3; changes > 0; --changes) {
                rawFlags ^= bits.at(random() % bits.size());
            }
        }
        sequence.push_back({Step::Kind::flags, rawFlags});
    }
    sequence.push_back({Step::Kind::flags, 0});
    return sequence;
}

struct Totals {
    int sequences = 0;
    Outcome fired;
};

/// Runs that many sequences and stops at the first on which machine and model differ.
template <typename Generator>
Totals check(std::uint64_t seed, int count, Generator generate) {
    Random random(seed);
    Totals totals;
    for (; totals.sequences < count; ++totals.sequences) {
        const Sequence sequence = generate(random);
        const auto outcome = run(sequence);
        totals.fired.rightToLeft += outcome.rightToLeft;
        totals.fired.leftToRight += outcome.leftToRight;
        totals.fired.languageSwitches += outcome.languageSwitches;
        totals.fired.retypings += outcome.retypings;
        if (!outcome.agrees) {
            ADD_FAILURE() << "seed " << seed << ", sequence " << totals.sequences << ":" << sequence
                          << "\nshortened:" << shortened(sequence);
            break;
        }
    }
    return totals;
}

TEST(ChordProperties, MachinesAgreeWithTheNaiveModelOnFingers) {
    const auto totals = check(20240229, 100'000, fingers);
    EXPECT_EQ(totals.sequences, 100'000);
    EXPECT_GT(totals.fired.rightToLeft, 1'000) << "too few chords for a test";
    EXPECT_GT(totals.fired.leftToRight, 1'000) << "too few chords for a test";
    EXPECT_GT(totals.fired.languageSwitches, 1'000) << "too few chords for a test";
    EXPECT_GT(totals.fired.retypings, 1'000) << "too few chords for a test";
}

TEST(ChordProperties, MachinesAgreeWithTheNaiveModelOnNoise) {
    const auto totals = check(7, 100'000, noise);
    EXPECT_EQ(totals.sequences, 100'000);
    EXPECT_GT(totals.fired.rightToLeft, 500) << "too few chords for a test";
    EXPECT_GT(totals.fired.leftToRight, 500) << "too few chords for a test";
    EXPECT_GT(totals.fired.languageSwitches, 500) << "too few chords for a test";
    EXPECT_GT(totals.fired.retypings, 500) << "too few chords for a test";
}

} // namespace
} // namespace quillane::core
