// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/system/LinuxSystemInspector.hpp"

#include "core/support/Lifetime.hpp"
#include "platform/linux/dbus/BusConnection.hpp"

#include <QSysInfo>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace quillane {

namespace {

using core::BusService;

constexpr auto accessibilityName = "org.a11y.Bus";
constexpr auto secretName = "org.freedesktop.secrets";

core::WindowSystem windowSystem(const LinuxDesktop& desktop) {
    const bool hasX11 = !desktop.x11Display.empty();
    if (desktop.waylandSession) {
        return hasX11 ? core::WindowSystem::waylandWithX11 : core::WindowSystem::wayland;
    }
    return hasX11 ? core::WindowSystem::x11 : core::WindowSystem::none;
}

BusMessage busCall(const char* member) {
    return methodCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, member);
}

/// An answer on its way: what the service has said, as far as it has.
template <typename T>
struct Answer {
    bool arrived = false;
    std::optional<T> value; ///< none for an error
};

/// Who is on the session bus, and what its services say of themselves. Two rounds of questions, each sent at once and
/// waited for together: the second one needs the answers of the first.
class Inspection {
public:
    explicit Inspection(std::chrono::milliseconds timeout)
        : round_(timeout / 2), session_(BusConnection::open(sessionBusAddress())) {
        if (!session_) {
            return;
        }
        ask(*session_, busCall("ListNames"), owned_, texts);
        ask(*session_, busCall("ListActivatableNames"), startable_, texts);
        ask(*session_, methodCall(accessibilityName, "/org/a11y/bus", accessibilityName, "GetAddress"), address_, text);
        auto alias = methodCall(secretName, "/org/freedesktop/secrets", "org.freedesktop.Secret.Service", "ReadAlias");
        appendText(*alias, "default");
        ask(*session_, std::move(alias), collection_, text);
        session_->wait(
            [this] { return owned_.arrived && startable_.arrived && address_.arrived && collection_.arrived; },
            BusConnection::Clock::now() + round_);
        askFurther();
    }

    [[nodiscard]] BusService accessibilityBus() const {
        if (const auto obstacle = obstacleTo(accessibilityName)) {
            return *obstacle;
        }
        return accessibilityID_.value ? BusService::available : BusService::silent;
    }

    [[nodiscard]] BusService secretService() const {
        if (const auto obstacle = obstacleTo(secretName)) {
            return *obstacle;
        }
        if (!collection_.arrived || (isCollection() && !isLocked_.arrived)) {
            return BusService::silent;
        }
        if (!isLocked_.value) {
            return BusService::unused;
        }
        return *isLocked_.value ? BusService::locked : BusService::available;
    }

private:
    using Names = std::set<std::string, std::less<>>;

    static std::optional<Names> texts(BusReader& reader) {
        Names result;
        auto array = reader.container();
        while (const auto text = array ? array->text() : std::nullopt) {
            result.emplace(*text);
        }
        return result;
    }

    static std::optional<std::string> text(BusReader& reader) {
        const auto text = reader.text();
        return text ? std::optional<std::string>(*text) : std::nullopt;
    }

    static std::optional<bool> flagInVariant(BusReader& reader) {
        auto variant = reader.container();
        return variant ? variant->flag() : std::nullopt;
    }

    /// Nobody is started for being asked.
    template <typename T>
    void ask(BusConnection& bus, BusMessage message, Answer<T>& answer, std::optional<T> (*read)(BusReader&)) {
        dbus_message_set_auto_start(message.get(), 0);
        const auto take = [&answer, read](DBusMessage* reply) {
            answer.arrived = true;
            if (reply != nullptr) {
                BusReader reader(*reply);
                answer.value = read(reader);
            }
        };
        bus.call(std::move(message), lifetime_, take, BusConnection::Delivery::alsoInWait);
    }

    /// No collection is the path "/" (Secret Service API, "ReadAlias").
    [[nodiscard]] bool isCollection() const {
        return collection_.value && collection_.value != "/" && isObjectPath(*collection_.value);
    }

    void askFurther() {
        const auto deadline = BusConnection::Clock::now() + round_;
        if (isCollection()) {
            ask(*session_, propertyRead(secretName, *collection_.value, "org.freedesktop.Secret.Collection", "Locked"),
                isLocked_, flagInVariant);
        }
        // Applications offer their trees on a bus of its own, whose address the service gives.
        accessibility_ = address_.value ? BusConnection::open(*address_.value) : nullptr;
        if (accessibility_) {
            ask(*accessibility_, busCall("GetId"), accessibilityID_, text);
            accessibility_->wait([this] { return accessibilityID_.arrived; }, deadline);
        }
        // What has come in meanwhile is read even when no time is left.
        session_->wait([this] { return !isCollection() || isLocked_.arrived; },
                       std::max(deadline, BusConnection::Clock::now() + std::chrono::milliseconds{50}));
    }

    /// Why a service cannot be asked; none when it can.
    [[nodiscard]] std::optional<BusService> obstacleTo(std::string_view name) const {
        if (!session_ || session_->isLost()) {
            return BusService::noBus;
        }
        if (!owned_.value || !startable_.value) {
            return BusService::silent;
        }
        if (owned_.value->contains(name)) {
            return std::nullopt;
        }
        return startable_.value->contains(name) ? BusService::notStarted : BusService::absent;
    }

    std::chrono::milliseconds round_;
    Answer<Names> owned_;
    Answer<Names> startable_;
    Answer<std::string> address_;    ///< of the accessibility bus
    Answer<std::string> collection_; ///< the default one of the Secret Service
    Answer<std::string> accessibilityID_;
    Answer<bool> isLocked_;
    std::unique_ptr<BusConnection> session_; ///< none without a session bus
    std::unique_ptr<BusConnection> accessibility_;
    core::Lifetime lifetime_;
};

} // namespace

core::SystemFacts LinuxSystemInspector::inspect() {
    const Inspection inspection(timeout_);
    return {.desktop = core::Desktop::linuxDesktop,
            .name =
                (QSysInfo::prettyProductName() + QStringLiteral(", ") + QSysInfo::kernelType() + QStringLiteral(" ") +
                 QSysInfo::kernelVersion() + QStringLiteral(", ") + QSysInfo::currentCpuArchitecture())
                    .toStdString(),
            .signature = std::nullopt,
            .holdsActivity = std::nullopt,
            .windowSystem = windowSystem(desktop_),
            .accessibilityBus = inspection.accessibilityBus(),
            .secretService = inspection.secretService()};
}

} // namespace quillane
