// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/capture/X11AreaCapture.hpp"

#include "core/clipboard/PasteboardTypes.hpp"

#include <chrono>
#include <utility>

namespace quillane {

namespace {

using namespace std::chrono_literals;

/// Programs redraw what was below a menu that has just closed, which takes a moment.
constexpr auto untilMenusHaveGone = 200ms;

} // namespace

X11AreaCapture::X11AreaCapture(Pasteboard& pasteboard, MainQueue& mainQueue, std::chrono::milliseconds idleTimeout)
    : pasteboard_(pasteboard), mainQueue_(mainQueue), idleTimeout_(idleTimeout) {}

X11AreaCapture::~X11AreaCapture() {
    delete overlay_.release(); // the event loop may have ended
}

bool X11AreaCapture::start(core::AppLanguage language, std::function<void()> keptOut) {
    if (starting_ || overlay_) {
        return true;
    }
    starting_ = true;
    mainQueue_.postAfter(untilMenusHaveGone, [this, alive = lifetime_.watch(), language, keptOut = std::move(keptOut)] {
        if (alive) {
            show(language, keptOut);
        }
    });
    return true;
}

void X11AreaCapture::show(core::AppLanguage language, std::function<void()> keptOut) {
    starting_ = false;
    auto pictures = ScreenPicture::ofAllScreens();
    if (pictures.empty()) {
        keptOut();
        return;
    }
    overlay_.reset(new AreaOverlay(std::move(pictures), language, idleTimeout_,
                                   {.taken =
                                        [this](const QImage& picture) {
                                            overlay_.reset();
                                            copy(picture);
                                        },
                                    .cancelled = [this] { overlay_.reset(); },
                                    .keptOut =
                                        [this, keptOut = std::move(keptOut)] {
                                            overlay_.reset();
                                            keptOut();
                                        }}));
}

void X11AreaCapture::copy(const QImage& picture) {
    encoding_.post([this, alive = lifetime_.watch(), picture] {
        mainQueue_.post([this, alive, png = pngOf(picture)]() mutable {
            if (alive && !png.empty()) {
                pasteboard_.clear();
                pasteboard_.write({{{{std::string(core::pasteboardTypes::png), std::move(png)}}, {}}});
            }
        });
    });
}

} // namespace quillane
