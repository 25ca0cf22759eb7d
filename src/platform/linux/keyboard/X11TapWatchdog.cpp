// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11TapWatchdog.hpp"

#include <cstddef>
#include <string>
#include <string_view>

namespace quillane {

namespace {

constexpr std::chrono::milliseconds period{1000};
constexpr std::chrono::milliseconds answerTimeout{750};
constexpr std::chrono::milliseconds untilReadOn{20};
/// A key counts as missed when the server had one this much later than the last one that arrived here.
constexpr std::chrono::milliseconds tolerance{100};

/// The name of a counter. XCB looks for it after the padding of its structure, which the wire format lacks.
std::string_view counterName(const xcb_sync_systemcounter_t& counter) {
    constexpr auto end = offsetof(xcb_sync_systemcounter_t, name_len) + sizeof counter.name_len;
    return {reinterpret_cast<const char*>(&counter) + end, counter.name_len};
}

} // namespace

X11TapWatchdog::X11TapWatchdog(X11Connection& connection, X11RawInput& input, X11Keyboard& keyboard,
                               MainQueue& mainQueue, std::function<void()> onSilence, std::function<void()> onAnswer)
    : connection_(connection),
      keyboard_(keyboard),
      mainQueue_(mainQueue),
      onSilence_(std::move(onSilence)),
      onAnswer_(std::move(onAnswer)),
      keys_(input.onKey([this](const X11RawEvent&) { lastKey_ = Clock::now(); })),
      losses_(connection.onLost([this] {
          lifetime_.end();
          asked_ = false;
          overdue_.stop();
      })),
      openings_(connection.onOpened([this] {
          answers_ = true;
          findIdleCounter();
          ask();
      })) {
    overdue_.setSingleShot(true);
    overdue_.callOnTimeout([this] { noteOverdue(); });
    findIdleCounter();
}

void X11TapWatchdog::start() {
    running_ = true;
    lastKey_ = Clock::now();
    ticks_ = mainQueue_.repeat(period, [this] { ask(); });
}

void X11TapWatchdog::stop() {
    running_ = false;
    ticks_.cancel();
    overdue_.stop();
}

void X11TapWatchdog::findIdleCounter() {
    lifetime_.restart();
    idleCounter_.reset();
    if (connection_.extensions().syncFirstEvent == 0) {
        return;
    }
    connection_.await<xcb_sync_list_system_counters_reply_t>(
        xcb_sync_list_system_counters(connection_.raw()), lifetime_,
        [this](const xcb_sync_list_system_counters_reply_t* reply) {
            if (reply != nullptr) {
                takeCounters(*reply);
            }
        });
    connection_.flush();
}

void X11TapWatchdog::takeCounters(const xcb_sync_list_system_counters_reply_t& reply) {
    // The idle time of the device (X Synchronization Extension, with the counter names of X.Org's server).
    const auto name = "DEVICEIDLETIME " + std::to_string(keyboard_.device());
    for (auto it = xcb_sync_list_system_counters_counters_iterator(&reply); it.rem > 0;
         xcb_sync_systemcounter_next(&it)) {
        if (counterName(*it.data) == name) {
            idleCounter_ = it.data->counter;
        }
    }
}

void X11TapWatchdog::ask() {
    if (asked_ || !running_ || connection_.isLost()) {
        return;
    }
    asked_ = true;
    askedAt_ = Clock::now();
    overdue_.start(answerTimeout);
    if (idleCounter_) {
        connection_.await<xcb_sync_query_counter_reply_t>(
            xcb_sync_query_counter(connection_.raw(), *idleCounter_), lifetime_,
            [this](const xcb_sync_query_counter_reply_t* reply) {
                std::optional<std::chrono::milliseconds> idle;
                if (reply != nullptr) {
                    const auto high = static_cast<std::uint64_t>(static_cast<std::uint32_t>(reply->counter_value.hi));
                    idle = std::chrono::milliseconds(static_cast<std::int64_t>(high << 32 | reply->counter_value.lo));
                }
                takeIdleTime(idle);
            });
    } else {
        connection_.await<xcb_get_input_focus_reply_t>(
            xcb_get_input_focus(connection_.raw()), lifetime_,
            [this](const xcb_get_input_focus_reply_t*) { takeIdleTime(std::nullopt); });
    }
    connection_.flush();
}

/// Where this loop was late rather than the server, the answer has arrived and is only to be read.
void X11TapWatchdog::noteOverdue() {
    const bool hasReadAll = connection_.process();
    if (!asked_) {
        return;
    }
    if (!hasReadAll) {
        overdue_.start(untilReadOn);
        return;
    }
    answers_ = false;
    onSilence_();
}

void X11TapWatchdog::takeIdleTime(std::optional<std::chrono::milliseconds> idle) {
    // The answer is at least as old as its request, and older than its arrival by as much as this loop is late.
    const bool missed = idle && answers_ && askedAt_ - *idle > lastKey_ + tolerance;
    if (!missed) {
        finish(false);
    } else if (keyboard_.keysDown().none()) {
        finish(true);
    } else {
        compareKeysDown(); // a held key repeats, which uses the keyboard without raw events
    }
}

void X11TapWatchdog::compareKeysDown() {
    connection_.await<xcb_query_keymap_reply_t>(xcb_query_keymap(connection_.raw()), lifetime_,
                                                [this](const xcb_query_keymap_reply_t* reply) {
                                                    bool differ = false;
                                                    for (std::size_t i = 0; reply != nullptr && i < 256; ++i) {
                                                        const bool down = (reply->keys[i / 8] >> (i % 8) & 1) != 0;
                                                        differ = differ || down != keyboard_.keysDown()[i];
                                                    }
                                                    finish(differ);
                                                });
    connection_.flush();
}

void X11TapWatchdog::finish(bool silent) {
    asked_ = false;
    overdue_.stop();
    answers_ = !connection_.isLost();
    lastKey_ = silent ? Clock::now() : lastKey_;
    if (!running_) {
        return;
    }
    if (silent) {
        onSilence_();
    } else if (answers_) {
        onAnswer_();
    }
}

} // namespace quillane
