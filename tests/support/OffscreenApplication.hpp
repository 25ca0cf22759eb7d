// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "support/TemporaryFolder.hpp"

#include <QApplication>
#include <QSize>

#include <cstdlib>
#include <string>

namespace quillane::fakes {

/// The application object of a test that draws windows without a display. Construct it before anything that draws.
class OffscreenApplication {
    struct Platform {
        explicit Platform(const QSize& screen) {
            std::string platform = "offscreen";
            if (!screen.isEmpty()) {
                const auto size =
                    "\"width\": " + std::to_string(screen.width()) + ", \"height\": " + std::to_string(screen.height());
                platform += ":configfile=" +
                            files
                                .file("screen.json", R"({"screens": [{"name": "", "x": 0, "y": 0, )" + size +
                                                         R"(, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})")
                                .string();
            }
            ::setenv("QT_QPA_PLATFORM", platform.c_str(), 1);
        }

        live::TemporaryFolder files;
    };

public:
    /// The screen is 800 × 800 unless another size is given.
    explicit OffscreenApplication(const QSize& screen = {}) : platform_(screen) {}

private:
    Platform platform_;
    int argc_ = 1;
    std::string name_ = "tests";
    char* argv_ = name_.data();
    QApplication application_{argc_, &argv_};
};

} // namespace quillane::fakes
