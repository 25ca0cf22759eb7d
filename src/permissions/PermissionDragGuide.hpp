// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/permissions/MacPermission.hpp"
#include "core/support/Geometry.hpp"
#include "core/support/Lifetime.hpp"
#include "core/support/Subscription.hpp"
#include "platform/WindowList.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace quillane {

class PermissionController;
struct Platform;

/// A screen, and the part of it that menu bars, docks and panels leave free.
struct ScreenArea {
    core::ScreenRect frame;
    core::ScreenRect visible;
};

/// The card as the guide moves it.
class PermissionGuidePanel {
public:
    virtual ~PermissionGuidePanel() = default;

    virtual void setPermission(core::MacPermission permission) = 0;
    virtual void setFrame(const core::ScreenRect& frame) = 0;
    [[nodiscard]] virtual bool isShown() const = 0;

    /// Shows it over the other windows; the application in front stays there.
    virtual void orderFront() = 0;
    virtual void orderOut() = 0;

    std::function<void()> closed; ///< the user has closed it
};

/// What the guide needs, borrowed.
struct PermissionGuideServices {
    const Platform& platform;
    PermissionController& permissions;
    std::function<std::vector<ScreenArea>()> screens; ///< the main one first
    std::function<std::unique_ptr<PermissionGuidePanel>()> makePanel;
};

/// Keeps a card beside the window of System Settings while the user grants a permission there. It follows the window,
/// hides while another application is in front, and disappears when the user closes it. Main thread.
class PermissionDragGuide {
public:
    static constexpr std::string_view systemSettings = "com.apple.systempreferences";
    static constexpr core::Size cardSize{420, 190};

    explicit PermissionDragGuide(PermissionGuideServices services);

    /// Shows the card for this permission as soon as System Settings is in front.
    void present(core::MacPermission permission);

    void dismiss();

private:
    void update();
    void place(pid_t settings, const std::vector<OnScreenWindow>& windows);

    PermissionGuideServices services_;
    std::unique_ptr<PermissionGuidePanel> panel_; ///< made on first use, then kept
    core::Lifetime step_;                         ///< of the latest reading of the window list
    core::Subscription timer_;
};

} // namespace quillane
