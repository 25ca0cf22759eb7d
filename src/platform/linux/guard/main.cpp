// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

// The agent's second process, which frees the keyboard when the agent is stopped (SIGSTOP, a debugger) while it holds a
// press back: only the client with the grab can release it, or the server when that client's connection ends. So this
// ends the connection; the agent opens another one when it goes on.
//
// Standard input names the connection by one of its windows, 0 for none, and ends with the agent. Nothing wakes this
// process while no key is grabbed. It is linked to little and allocates next to nothing.

#include "platform/linux/x11/X11GrabWatch.hpp"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <xcb/res.h>

namespace quillane {

namespace {

using Clock = X11GrabWatch::Clock;

constexpr std::chrono::milliseconds untilLook{300};
constexpr int mostLooks =
    10; ///< at one grab: it may be another program's, which holds the keyboard as long as it likes

/// Whether a signal or a debugger has stopped the process (proc(5): the state follows the name in parentheses).
bool isStopped(pid_t process) {
    char text[512];
    std::snprintf(text, sizeof text, "/proc/%d/stat", process);
    const int file = open(text, O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return false;
    }
    const auto length = read(file, text, sizeof text - 1);
    close(file);
    text[length > 0 ? length : 0] = '\0';
    const char* name = std::strrchr(text, ')');
    return name != nullptr && name[1] == ' ' && (name[2] == 'T' || name[2] == 't');
}

class KeyboardGuard {
public:
    explicit KeyboardGuard(pid_t agent) : agent_(agent) {}

    /// Until the agent ends.
    void run() {
        for (;;) {
            pollfd sources[] = {{STDIN_FILENO, POLLIN, 0}, {watch_ ? watch_->descriptor() : -1, POLLIN, 0}};
            poll(sources, 2, timeout());
            if (sources[0].revents != 0 && !readWindow()) {
                return;
            }
            if (watch_) {
                watch_->read();
                look();
            }
            if (watch_ && watch_->isLost()) {
                watch_.reset(); // the agent names a connection again once it has one
            }
        }
    }

private:
    bool readWindow() {
        std::uint32_t named = 0;
        if (read(STDIN_FILENO, &named, sizeof named) != sizeof named || getppid() != agent_) {
            return false;
        }
        if (named != 0 && !watch_) {
            watch_.emplace(nullptr);
        }
        window_ = named;
        if (watch_ && !watch_->isLost()) {
            watch_->listen(named != 0);
            seen_.reset();
            since_.reset();
            if (named != 0) { // one look: a press may have been held back before this program listened
                looks_ = mostLooks - 1;
                since_ = Clock::now() - untilLook * looks_;
            }
            owner_ = ownerOf(named);
        }
        return true;
    }

    void look() {
        if (watch_->grabbedSince() != seen_) {
            since_ = seen_ = watch_->grabbedSince();
            looks_ = 0;
        }
        if (since_ && looks_ < mostLooks && Clock::now() >= *since_ + untilLook * (looks_ + 1)) {
            ++looks_;
            if (isStopped(agent_)) {
                endConnection();
            }
        }
    }

    /// The process of a client as the server counts processes; 0 when it does not know.
    std::uint32_t ownerOf(std::uint32_t window) const {
        if (window == 0) {
            return 0;
        }
        const auto* extension = xcb_get_extension_data(watch_->raw(), &xcb_res_id);
        if (extension == nullptr || extension->present == 0) {
            return 0;
        }
        const xcb_res_client_id_spec_t spec{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
        auto* reply =
            xcb_res_query_client_ids_reply(watch_->raw(), xcb_res_query_client_ids(watch_->raw(), 1, &spec), nullptr);
        std::uint32_t owner = 0;
        if (reply != nullptr && reply->num_ids > 0) {
            const auto id = xcb_res_query_client_ids_ids_iterator(reply);
            owner = id.data->length >= sizeof owner ? *xcb_res_client_id_value_value(id.data) : 0;
        }
        std::free(reply);
        return owner;
    }

    void endConnection() {
        // Numbers of clients are used again: it must still be the agent's.
        if (ownerOf(window_) == owner_) {
            xcb_kill_client(watch_->raw(), window_);
        }
        window_ = 0;
        watch_->listen(false);
    }

    int timeout() const {
        if (!watch_ || window_ == 0 || !since_ || looks_ >= mostLooks) {
            return -1;
        }
        const auto left = *since_ + untilLook * (looks_ + 1) - Clock::now();
        const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(left).count();
        return milliseconds > 0 ? static_cast<int>(milliseconds) : 0;
    }

    const pid_t agent_;
    std::uint32_t window_ = 0; ///< of the connection that holds keys; 0 for none
    std::uint32_t owner_ = 0;  ///< its process, according to the server
    std::optional<X11GrabWatch> watch_;
    std::optional<Clock::time_point> seen_;  ///< when the keyboard was seen being taken
    std::optional<Clock::time_point> since_; ///< the same, or when it may have been taken unseen
    int looks_ = 0;
};

} // namespace

} // namespace quillane

int main() {
    quillane::KeyboardGuard(getppid()).run();
}
