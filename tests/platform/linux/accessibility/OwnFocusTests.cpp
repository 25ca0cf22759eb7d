// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/accessibility/OwnFocus.hpp"

#include "platform/linux/accessibility/AtspiAccessibility.hpp"
#include "platform/linux/dbus/SessionBus.hpp"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QTextEdit>
#include <QVBoxLayout>

#include <gmock/gmock.h>

#include <unistd.h>

namespace quillane {

namespace {

/// A window of this process, outside every desktop.
class OwnFocusTest : public ::testing::Test {
protected:
    OwnFocusTest() {
        auto* layout = new QVBoxLayout(&window_);
        password_.setEchoMode(QLineEdit::Password);
        readOnly_.setReadOnly(true);
        field_.setAccessibleName(QStringLiteral("Search"));
        for (auto* widget : std::initializer_list<QWidget*>{&field_, &password_, &readOnly_, &area_, &button_}) {
            layout->addWidget(widget);
        }
        window_.show();
        window_.activateWindow();
        QElapsedTimer time;
        time.start();
        while (!window_.isActiveWindow() && time.elapsed() < 5000) {
            QCoreApplication::processEvents();
        }
    }

    std::optional<AXElement> focused() {
        const auto value = accessibility_.attribute(accessibility_.application(getpid()), "AXFocusedUIElement");
        return value ? std::optional(std::get<AXElement>(*value)) : std::nullopt;
    }

    std::string text(std::string_view name) {
        const auto element = focused();
        const auto value = element ? accessibility_.attribute(*element, name) : std::nullopt;
        return value ? std::get<std::string>(*value) : "none";
    }

    bool isSettable() {
        const auto element = focused();
        return element && accessibility_.isAttributeSettable(*element, "AXValue");
    }

private:
    struct WithoutDesktop {
        WithoutDesktop() {
            setenv("QT_QPA_PLATFORM", "offscreen", 1);
            setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere", 1);
        }
    } withoutDesktop_;

    int argc_ = 1;
    char name_[5] = "test";
    std::array<char*, 2> argv_{name_, nullptr};
    QApplication application_{argc_, argv_.data()};

protected:
    QWidget window_;
    QLineEdit field_;
    QLineEdit password_;
    QLineEdit readOnly_;
    QTextEdit area_;
    QPushButton button_;
    SessionBus session_;
    AtspiAccessibility accessibility_{session_};
};

TEST_F(OwnFocusTest, AFieldOfThisProcessTakesText) {
    field_.setFocus();
    EXPECT_EQ(text("AXRole"), "AXTextField");
    EXPECT_EQ(text("AXSubrole"), "none");
    EXPECT_EQ(text("AXTitle"), "Search");
    EXPECT_TRUE(isSettable());
    area_.setFocus();
    EXPECT_EQ(text("AXRole"), "AXTextArea");
    EXPECT_TRUE(isSettable());
}

TEST_F(OwnFocusTest, APasswordFieldIsRecognisedAndReadOnlyTextIsNotSettable) {
    password_.setFocus();
    EXPECT_EQ(text("AXSubrole"), "AXSecureTextField");
    readOnly_.setFocus();
    EXPECT_EQ(text("AXRole"), "AXTextField");
    EXPECT_FALSE(isSettable());
    button_.setFocus();
    EXPECT_EQ(text("AXRole"), "AXButton");
    EXPECT_FALSE(isSettable());
}

TEST_F(OwnFocusTest, AReferenceIsOfNoUseAfterTheFocusHasMoved) {
    field_.setFocus();
    const auto before = focused();
    ASSERT_TRUE(before);
    EXPECT_EQ(focused(), before);
    area_.setFocus();
    EXPECT_NE(focused(), before);
    EXPECT_FALSE(accessibility_.attribute(*before, "AXRole"));
    EXPECT_FALSE(accessibility_.isAttributeSettable(*before, "AXValue"));
}

TEST_F(OwnFocusTest, NothingHasTheFocusWhenNoWidgetHas) {
    field_.setFocus();
    window_.hide();
    field_.clearFocus();
    QCoreApplication::processEvents();
    const auto element = focused();
    EXPECT_TRUE(!element || !accessibility_.isAttributeSettable(*element, "AXValue"));
}

} // namespace

} // namespace quillane
