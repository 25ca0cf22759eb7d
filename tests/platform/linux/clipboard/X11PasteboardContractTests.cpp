// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/clipboard/X11Pasteboard.hpp"

#include "contracts/PasteboardContract.hpp"
#include "core/support/Lifetime.hpp"
#include "platform/linux/clipboard/SelectionPeer.hpp"
#include "platform/linux/x11/X11TestServer.hpp"

#include <QCoreApplication>

#include <array>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace quillane {
namespace {

class X11PasteboardDriver {
public:
    Pasteboard& pasteboard() { return pasteboard_; }

    void copyText(const std::string& text) {
        settle(); // the user copies after what this program has done
        peer_.own({{"UTF8_STRING", text}});
    }

    static std::string fileUrl(const std::filesystem::path& file) {
        return core::Url::fromFilePath(file).absoluteString();
    }

    bool waitUntil(const std::function<bool()>& condition) { return testing::waitUntil(condition); }

    void settle() {
        for (int i = 0; i < 2; ++i) {
            bool answered = false;
            connection_->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection_->raw()), lifetime_,
                                                            [&](const auto*) { answered = true; });
            connection_->flush();
            EXPECT_TRUE(testing::waitUntil([&] { return answered; }));
        }
    }

private:
    int argc_ = 1;
    char name_[5] = "test";
    std::array<char*, 2> argv_{name_, nullptr};
    QCoreApplication application_{argc_, argv_.data()};
    testing::X11TestServer server_;
    core::Lifetime lifetime_;
    std::unique_ptr<X11Connection> connection_ = std::move(*X11Connection::open(server_.display()));
    X11Pasteboard pasteboard_{*connection_};
    testing::SelectionPeer peer_{server_.display()};
};

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(X11, PasteboardContract, X11PasteboardDriver);

} // namespace testing
} // namespace quillane
