// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>

#include <cstdlib>
#include <string>

namespace quillane::fakes {

/// The application object of a test that draws windows without a display. To be made before anything that draws.
class OffscreenApplication {
    struct Platform {
        Platform() { ::setenv("QT_QPA_PLATFORM", "offscreen", 1); }
    };

    Platform platform_;
    int argc_ = 1;
    std::string name_ = "tests";
    char* argv_ = name_.data();
    QApplication application_{argc_, &argv_};
};

} // namespace quillane::fakes
