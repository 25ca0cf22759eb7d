// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/AppDelegate.hpp"
#include "app/AppServices.hpp"
#include "app/CommandLine.hpp"
#include "app/SettingsModel.hpp"
#include "core/preferences/AppPreferences.hpp"
#include "core/preferences/InstallationMigration.hpp"
#include "platform/Platform.hpp"
#include "platform/common/ControlSocket.hpp"
#include "platform/common/TerminationSignals.hpp"

#include <QApplication>

#include <chrono>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace quillane;
using namespace std::chrono_literals;

enum ExitStatus { success = 0, failure = 1, usageError = 2 };

constexpr auto replyPatience = 5s;

/// Asks the running agent and prints its answer.
int ask(const ControlRequest& request) {
    const auto reply = sendControlRequest(controlSocketPath(), request, replyPatience);
    if (!reply) {
        const bool absent =
            reply.error() == std::errc::no_such_file_or_directory || reply.error() == std::errc::connection_refused;
        std::cerr << (absent ? "quillane is not running\n" : "quillane does not answer\n");
        return failure;
    }
    if (!reply->text.empty()) {
        (reply->ok ? std::cout : std::cerr) << reply->text << '\n';
    }
    return reply->ok ? success : failure;
}

AppServices services(const Platform& platform) {
    return {.mainQueue = *platform.mainQueue,
            .userDefaults = *platform.userDefaults,
            .workspace = *platform.workspace,
            .inputSources = *platform.inputSources,
            .keyEvents = *platform.keyEvents,
            .eventTap = *platform.eventTap,
            .accessibility = *platform.accessibility,
            .permissions = *platform.permissions,
            .statusItem = *platform.statusItem,
            .applicationMenu = *platform.applicationMenu,
            .windowTraits = *platform.windowTraits};
}

/// Becomes the agent, unless this user has one already: that one is asked to show itself.
int runAgent(int argc, char** argv, const CommandLine::RunAgent& call) {
    auto control = ControlSocket::claim(controlSocketPath());
    if (!control && control.error() == ClaimError::alreadyRunning) {
        return ask({"open", {}});
    }
    if (!control) {
        std::cerr << "quillane: cannot make its control socket " << controlSocketPath().string() << '\n';
        return failure;
    }
    if (const auto error = checkDesktop()) {
        std::cerr << "quillane: " << error->message << '\n';
        return failure;
    }
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("quillane"));
    QApplication::setDesktopFileName(QStringLiteral("com.quillane.app"));

    const auto made = makePlatform({.atLogin = call.atLogin});
    const auto* platform = std::get_if<Platform>(&made);
    if (!platform) {
        std::cerr << "quillane: " << std::get<PlatformError>(made).message << '\n';
        return failure;
    }
    if (platform->keyboardUnavailableReason) {
        std::cerr << "quillane: " << *platform->keyboardUnavailableReason << '\n';
    }
    core::InstallationMigration::migratePreferences(*platform->userDefaults, platform->legacyPreferences);
    core::AppPreferences preferences(*platform->userDefaults);
    SettingsModel model(*platform->userDefaults, *platform->sleepAssertions);
    AppDelegate delegate(services(*platform), preferences, model,
                         {.version = QUILLANE_VERSION,
                          .keyboardAvailable = !platform->keyboardUnavailableReason,
                          .legacyBundleID = std::string(core::InstallationMigration::legacyBundleID),
                          .terminate = [] { QCoreApplication::quit(); }});
    const TerminationSignals termination([] { QCoreApplication::quit(); });
    delegate.applicationDidFinishLaunching();
    (*control)->setHandler([&](const ControlRequest& request) { return delegate.handleControlRequest(request); });
    const int status = QApplication::exec();
    delegate.applicationWillTerminate();
    return status;
}

struct Runner {
    int argc;
    char** argv;

    int operator()(const CommandLine::RunAgent& call) const { return runAgent(argc, argv, call); }

    int operator()(const CommandLine::SendRequest& call) const { return ask(call.request); }

    int operator()(const CommandLine::ShowHelp&) const {
        std::cout << CommandLine::usage();
        return success;
    }

    int operator()(const CommandLine::ShowVersion&) const {
        std::cout << "quillane " << QUILLANE_VERSION << '\n';
        return success;
    }

    int operator()(const CommandLine::UsageError& error) const {
        std::cerr << "quillane: " << error.message << '\n' << CommandLine::usage();
        return usageError;
    }
};

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> words(argv + std::min(argc, 1), argv + argc);
    return std::visit(Runner{argc, argv}, CommandLine::parse(words));
}
