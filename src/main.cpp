// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/AppDelegate.hpp"
#include "app/CommandLine.hpp"
#include "app/Doctor.hpp"
#include "core/preferences/AppPreferences.hpp"
#include "core/preferences/InstallationMigration.hpp"
#include "core/support/SealedBox.hpp"
#include "core/support/Text.hpp"
#include "core/support/Url.hpp"
#include "platform/Platform.hpp"
#include "platform/ProcessProtection.hpp"
#include "platform/common/ExitHandler.hpp"
#include "platform/common/ThreadFileExaminer.hpp"
#include "platform/common/control/ControlSocket.hpp"
#include "platform/common/qt/TerminationSignals.hpp"
#include "settings/SettingsModel.hpp"

#include <QApplication>
#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using namespace quillane;
using namespace std::chrono_literals;

enum ExitStatus { success = 0, failure = 1, usageError = 2 };

constexpr auto replyTimeout = 5s;
constexpr auto startTimeout = 15s;

using Reply = tl::expected<ControlReply, std::errc>;

bool isAbsent(const Reply& reply) {
    return !reply &&
           (reply.error() == std::errc::no_such_file_or_directory || reply.error() == std::errc::connection_refused);
}

/// Prints a line. Names of files and applications in it may hold what a terminal would obey.
void printLine(std::ostream& out, std::string_view text) {
    out << core::withControlsEscaped(text) << '\n';
}

Reply send(const ControlRequest& request) {
    return sendControlRequest(controlSocketPath(), request, replyTimeout);
}

std::string describe(std::errc error) {
    switch (error) {
    case std::errc::no_such_file_or_directory:
    case std::errc::connection_refused:
        return "quillane is not running";
    case std::errc::permission_denied:
        return "quillane: others may listen on " + controlSocketPath().string();
    default:
        return "quillane does not answer";
    }
}

/// Prints the running agent's answer.
int report(const Reply& reply) {
    if (!reply) {
        printLine(std::cerr, describe(reply.error()));
        return failure;
    }
    if (!reply->text.empty()) {
        printLine(reply->ok ? std::cout : std::cerr, reply->text);
    }
    return reply->ok && !reply->problem ? success : failure;
}

/// Asks the running agent and prints its answer.
int ask(const ControlRequest& request) {
    return report(send(request));
}

/// Starts the agent as a process of its own.
bool startAgent(int argc, char** argv) {
    const QCoreApplication application(argc, argv); // knows the program's path
    QProcess agent;
    agent.setProgram(QCoreApplication::applicationFilePath());
    agent.setStandardInputFile(QProcess::nullDevice());
    agent.setStandardOutputFile(QProcess::nullDevice());
    agent.setStandardErrorFile(QProcess::nullDevice());
    return agent.startDetached();
}

int shareFiles(int argc, char** argv, const commandLine::ShareFiles& call) {
    ControlRequest request{"share", {}};
    for (const auto& path : call.paths) {
        std::error_code error;
        const auto absolute = std::filesystem::absolute(path, error);
        if (path.empty() || error) {
            printLine(std::cerr, "quillane: no file has the name '" + path + "'");
            return failure;
        }
        request.arguments.push_back(core::Url::fromFilePath(absolute).absoluteString());
    }
    auto reply = send(request);
    if (isAbsent(reply) && startAgent(argc, argv)) {
        const auto deadline = std::chrono::steady_clock::now() + startTimeout;
        while (isAbsent(reply = send(request)) && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::sleep_for(50ms);
        }
    }
    return report(reply);
}

std::filesystem::path homeFolder() {
    return QDir::homePath().toStdString();
}

core::ApplicationLocation applicationLocation() {
    return core::ApplicationLocation::of(QCoreApplication::applicationFilePath().toStdString(), homeFolder());
}

/// Diagnoses by itself. Where the program cannot run, what is left to be found.
ControlReply diagnose(int argc, char** argv, const commandLine::Diagnose& call, core::Respondent respondent) {
    auto error = checkDesktop();
    std::unique_ptr<QCoreApplication> application;
    if (error) {
        application = std::make_unique<QCoreApplication>(argc, argv);
    } else {
        application = std::make_unique<QApplication>(argc, argv);
    }
    auto facts = doctor::programFacts(QUILLANE_VERSION, applicationLocation(), homeFolder());
    facts.respondent = respondent;
    facts.system = makeSystemInspector()->inspect();
    if (!error) {
        const auto made = makePlatform({});
        if (const auto* platform = std::get_if<Platform>(&made)) {
            facts.session = doctor::sessionFacts(*platform, respondent);
        } else {
            error = std::get<PlatformError>(made);
        }
    }
    facts.desktopError = error ? error->message : "";
    return doctor::report(facts, call.json);
}

/// Debuggers and measurements need to look into the process. Whoever may set the variable can start any program.
bool isTraceable() {
#ifdef NDEBUG
    return std::getenv("QUILLANE_TRACEABLE") != nullptr;
#else
    return true;
#endif
}

/// Becomes the agent, or asks the user's running agent to show itself.
int runAgent(int argc, char** argv, const commandLine::RunAgent& call) {
    if (!isTraceable()) {
        protectProcess();
    }
    auto control = ControlSocket::claim(controlSocketPath());
    if (!control && control.error() == ClaimError::alreadyRunning) {
        return ask({"open", {}});
    }
    if (!control) {
        printLine(std::cerr, "quillane: cannot make its control socket " + controlSocketPath().string());
        return failure;
    }
    if (const auto error = checkDesktop()) {
        printLine(std::cerr, "quillane: " + error->message);
        return failure;
    }
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("quillane"));
    QApplication::setDesktopFileName(QStringLiteral("com.quillane.app"));

    const auto made = makePlatform({.atLogin = call.atLogin});
    const auto* platform = std::get_if<Platform>(&made);
    if (!platform) {
        printLine(std::cerr, "quillane: " + std::get<PlatformError>(made).message);
        return failure;
    }
    if (platform->keyboardUnavailableReason) {
        printLine(std::cerr, "quillane: " + *platform->keyboardUnavailableReason);
    }
    core::installationMigration::migratePreferences(*platform->userDefaults, platform->legacyPreferences);
    core::AppPreferences preferences(*platform->userDefaults);
    SettingsModel model(*platform->userDefaults, *platform->sleepAssertions);
    AppDelegate delegate(
        *platform, preferences, model,
        {.version = QUILLANE_VERSION,
         .keyboardAvailable = !platform->keyboardUnavailableReason,
         .legacyBundleID = std::string(core::installationMigration::legacyBundleID),
         .terminate = [] { QCoreApplication::quit(); },
         .applicationSupport = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation).toStdString(),
         .fileExaminer = makeFileExaminer(*platform->mainQueue),
         .location = applicationLocation(),
         .home = homeFolder()});
    const TerminationSignals termination([] { QCoreApplication::quit(); });
    core::sealedBox::keepUntilExit();
    const ExitHandler exiting([&] { delegate.saveHistory(); });
    delegate.applicationDidFinishLaunching();
    (*control)->setHandler([&](const ControlRequest& request) { return delegate.handleControlRequest(request); });
    const int status = QApplication::exec();
    delegate.applicationWillTerminate();
    return status;
}

struct Runner {
    int argc;
    char** argv;

    int operator()(const commandLine::RunAgent& call) const { return runAgent(argc, argv, call); }

    int operator()(const commandLine::SendRequest& call) const { return ask(call.request); }

    int operator()(const commandLine::Diagnose& call) const {
        const auto reply =
            send({"doctor", call.json ? std::vector<std::string>{"--json"} : std::vector<std::string>()});
        if (reply) {
            return report(reply);
        }
        return report(diagnose(argc, argv, call,
                               isAbsent(reply) ? core::Respondent::command : core::Respondent::commandForSilentAgent));
    }

    int operator()(const commandLine::ShareFiles& call) const { return shareFiles(argc, argv, call); }

    int operator()(const commandLine::ShowHelp&) const {
        std::cout << commandLine::usage();
        return success;
    }

    int operator()(const commandLine::ShowVersion&) const {
        std::cout << "quillane " << QUILLANE_VERSION << '\n';
        return success;
    }

    int operator()(const commandLine::UsageError& error) const {
        printLine(std::cerr, "quillane: " + error.message);
        std::cerr << commandLine::usage();
        return usageError;
    }
};

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> words(argv + std::min(argc, 1), argv + argc);
    return std::visit(Runner{argc, argv}, commandLine::parse(words));
}
