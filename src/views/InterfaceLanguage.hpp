// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/preferences/AppPreferences.hpp"
#include "core/support/Subscription.hpp"

#include <memory>

namespace quillane {

/// Makes Qt follow the interface language: the texts that it shows by itself come from the program's own table, and
/// menus, message boxes and dialogs are laid out in the language's direction. Follows the preferences until it is
/// destroyed. Construct it after the application object and before the views and menus, so that it is the first to be
/// notified of a language change. Main thread.
class InterfaceLanguage {
public:
    explicit InterfaceLanguage(core::AppPreferences& preferences);
    ~InterfaceLanguage();

    InterfaceLanguage(const InterfaceLanguage&) = delete;
    InterfaceLanguage& operator=(const InterfaceLanguage&) = delete;

private:
    class Translator;

    std::unique_ptr<Translator> translator_;
    core::Subscription languageChange_;
};

} // namespace quillane
