// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/WindowTraitsContract.hpp"
#include "fakes/FakeWindowTraits.hpp"
#include "support/OffscreenApplication.hpp"

#include <QKeyEvent>

#include <functional>

namespace quillane {
namespace {

/// Windows that are not drawn: typed keys go to the focused widget.
class FakeWindowTraitsDriver {
public:
    WindowTraits& traits() { return fake_; }

    void showInFront(QWidget& window) {
        window.show();
        window.activateWindow();
        EXPECT_TRUE(waitUntil([&] { return window.isActiveWindow(); }));
    }

    static void typeLetter() {
        if (auto* focused = QApplication::focusWidget()) {
            QKeyEvent press(QEvent::KeyPress, Qt::Key_V, Qt::NoModifier, QStringLiteral("v"));
            QApplication::sendEvent(focused, &press);
        }
    }

    static bool waitUntil(const std::function<bool()>& condition) {
        bool holds = condition();
        for (int turn = 0; turn < 100 && !holds; ++turn) {
            QApplication::processEvents();
            holds = condition();
        }
        return holds;
    }

private:
    fakes::OffscreenApplication application_;
    fakes::FakeWindowTraits fake_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, WindowTraitsContract, FakeWindowTraitsDriver);
} // namespace testing
} // namespace quillane
