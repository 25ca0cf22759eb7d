// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/qt/QtMainQueue.hpp"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <map>

namespace quillane {

namespace {

std::chrono::milliseconds monotonicNow() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch());
}

} // namespace

class QtMainQueue::Loop : public QObject {
public:
    Loop() {
        timer_.setSingleShot(true);
        timer_.setTimerType(Qt::PreciseTimer);
        connect(&timer_, &QTimer::timeout, this, [this] { tick(); });
    }

    unsigned long long add(std::chrono::milliseconds interval, Task task) {
        const auto id = next_++;
        repeats_.emplace(id, Repeat{interval, nextMultiple(interval, monotonicNow()), std::move(task)});
        schedule();
        return id;
    }

    void remove(unsigned long long id) {
        repeats_.erase(id);
        schedule();
    }

private:
    struct Repeat {
        std::chrono::milliseconds interval;
        std::chrono::milliseconds due;
        Task task;
    };

    static std::chrono::milliseconds nextMultiple(std::chrono::milliseconds interval, std::chrono::milliseconds now) {
        return (now / interval + 1) * interval;
    }

    void tick() {
        // Qt may fire a precise timer up to a millisecond early.
        const auto now = monotonicNow() + std::chrono::milliseconds(1);
        for (auto it = repeats_.begin(); it != repeats_.end();) {
            const auto id = it->first;
            if (it->second.due <= now) {
                it->second.due = nextMultiple(it->second.interval, now);
                const auto task = it->second.task; // the task may remove its own entry
                const QPointer<QObject> alive = this;
                task();
                if (!alive) {
                    return;
                }
            }
            it = repeats_.upper_bound(id);
        }
        schedule();
    }

    void schedule() {
        if (repeats_.empty()) {
            timer_.stop();
            return;
        }
        const auto earliest =
            std::ranges::min_element(repeats_, {}, [](const auto& entry) { return entry.second.due; });
        timer_.start(std::max(earliest->second.due - monotonicNow(), std::chrono::milliseconds(0)));
    }

    QTimer timer_;
    std::map<unsigned long long, Repeat> repeats_;
    unsigned long long next_ = 0;
};

QtMainQueue::QtMainQueue() : loop_(std::make_unique<Loop>()) {}

QtMainQueue::~QtMainQueue() = default;

void QtMainQueue::post(Task task) {
    QMetaObject::invokeMethod(loop_.get(), std::move(task), Qt::QueuedConnection);
}

void QtMainQueue::postAfter(std::chrono::milliseconds delay, Task task) {
    QTimer::singleShot(delay, Qt::PreciseTimer, loop_.get(), std::move(task));
}

core::Subscription QtMainQueue::repeat(std::chrono::milliseconds interval, Task task) {
    const auto id = loop_->add(interval, std::move(task));
    return core::Subscription([loop = QPointer<Loop>(loop_.get()), id] {
        if (loop) {
            loop->remove(id);
        }
    });
}

} // namespace quillane
