// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ServicesMenu.hpp"

#include <memory>

namespace quillane {

/// The Services menu (NSApplication.servicesProvider). The entry "Share with Quillane" is declared under NSServices in
/// resources/macos/Info.plist.in and sends the message share:userData:error:.
class MacServicesMenu final : public ServicesMenu {
public:
    MacServicesMenu();
    ~MacServicesMenu() override;

    void provideShare(Share share) override;

private:
    struct Provider;
    std::unique_ptr<Provider> provider_;
};

} // namespace quillane
