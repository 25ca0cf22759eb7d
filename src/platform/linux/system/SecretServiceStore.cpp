// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/system/SecretServiceStore.hpp"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string_view>
#include <thread>
#include <tuple>

#include <libsecret/secret.h>

namespace quillane {

namespace {

using core::SecretBytes;
using core::SecretStatus;

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};

template <typename T>
using Object = std::unique_ptr<T, Unref>;

struct UnrefValue {
    void operator()(SecretValue* value) const { secret_value_unref(value); }
};

struct UnrefTable {
    void operator()(GHashTable* table) const { g_hash_table_unref(table); }
};

struct FreeItems {
    void operator()(GList* items) const { g_list_free_full(items, g_object_unref); }
};

/// The library's error, owned.
class Failure {
public:
    Failure() = default;
    Failure(const Failure&) = delete;
    Failure& operator=(const Failure&) = delete;

    ~Failure() { g_clear_error(&error_); }

    [[nodiscard]] GError** out() {
        g_clear_error(&error_);
        return &error_;
    }

    [[nodiscard]] bool hasError() const { return error_ != nullptr; }

    [[nodiscard]] SecretStatus status() const {
        if (g_error_matches(error_, SECRET_ERROR, SECRET_ERROR_IS_LOCKED)) {
            return SecretStatus::interactionNotAllowed;
        }
        const std::unique_ptr<char, decltype(&g_free)> remote(error_ ? g_dbus_error_get_remote_error(error_) : nullptr,
                                                              g_free);
        if (remote && std::string_view(remote.get()) == "org.freedesktop.Secret.Error.IsLocked") {
            return SecretStatus::interactionNotAllowed;
        }
        if (g_error_matches(error_, G_DBUS_ERROR, G_DBUS_ERROR_ACCESS_DENIED) ||
            g_error_matches(error_, G_DBUS_ERROR, G_DBUS_ERROR_AUTH_FAILED)) {
            return SecretStatus::authFailed;
        }
        return SecretStatus::notAvailable;
    }

private:
    GError* error_ = nullptr;
};

/// Answers of the service arrive only on the calling thread, whose event loop the library runs meanwhile.
class OwnContext {
public:
    OwnContext() : context_(g_main_context_new()) { g_main_context_push_thread_default(context_); }

    OwnContext(const OwnContext&) = delete;
    OwnContext& operator=(const OwnContext&) = delete;

    ~OwnContext() {
        // Pending callbacks hold a reference to the connection, which would then outlive its closing.
        while (g_main_context_iteration(context_, FALSE)) {
        }
        g_main_context_pop_thread_default(context_);
        g_main_context_unref(context_);
    }

private:
    GMainContext* context_;
};

/// Cancels the current call when the time is over.
class Deadline {
public:
    explicit Deadline(std::chrono::milliseconds timeout)
        : cancellable_(g_cancellable_new()), timer_([this, timeout](const std::stop_token& stop) {
              std::mutex mutex;
              std::unique_lock lock(mutex);
              std::condition_variable_any ended;
              if (!ended.wait_for(lock, stop, timeout, [&] { return stop.stop_requested(); })) {
                  g_cancellable_cancel(cancellable_.get());
              }
          }) {}

    [[nodiscard]] GCancellable* get() const { return cancellable_.get(); }

private:
    Object<GCancellable> cancellable_;
    std::jthread timer_; // after what it uses
};

// A service whose prompts are refused: the library would otherwise show them to the user.

constexpr const char* refusal = "the service wants to ask the user";

GVariant* refusePromptNow(SecretService* /*service*/, SecretPrompt* /*prompt*/, GCancellable* /*cancellable*/,
                          const GVariantType* /*type*/, GError** error) {
    g_set_error_literal(error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED, refusal);
    return nullptr;
}

void refusePrompt(SecretService* service, SecretPrompt* /*prompt*/, const GVariantType* /*type*/,
                  GCancellable* /*cancellable*/, GAsyncReadyCallback done, gpointer data) {
    g_task_report_new_error(service, done, data, nullptr, SECRET_ERROR, SECRET_ERROR_IS_LOCKED, "%s", refusal);
}

GVariant* finishRefusedPrompt(SecretService* /*service*/, GAsyncResult* result, GError** error) {
    return static_cast<GVariant*>(g_task_propagate_pointer(reinterpret_cast<GTask*>(result), error));
}

GType silentServiceType() {
    static const GType type = g_type_register_static_simple(
        secret_service_get_type(), "QuillaneSilentSecretService", sizeof(SecretServiceClass),
        [](gpointer klass, gpointer /*data*/) {
            auto* service = static_cast<SecretServiceClass*>(klass);
            service->prompt_sync = refusePromptNow;
            service->prompt_async = refusePrompt;
            service->prompt_finish = finishRefusedPrompt;
        },
        sizeof(SecretService), nullptr, static_cast<GTypeFlags>(0));
    return type;
}

/// The attributes by which other programs find the item.
const SecretSchema& schema() {
    static const SecretSchema schema{"com.quillane.app.GenericPassword",
                                     SECRET_SCHEMA_NONE,
                                     {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                      {"account", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                      {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING}},
                                     0,
                                     nullptr,
                                     nullptr,
                                     nullptr,
                                     nullptr,
                                     nullptr,
                                     nullptr,
                                     nullptr};
    return schema;
}

/// One call of the store: the service, asked within the time.
class Session {
public:
    explicit Session(std::chrono::milliseconds timeout) : deadline_(timeout) {}

    [[nodiscard]] SecretStatus open() {
        const Object<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, deadline_.get(), failure_.out()));
        if (!bus) {
            return SecretStatus::notAvailable;
        }
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE); // the agent outlives its session's bus
        service_.reset(secret_service_open_sync(silentServiceType(), nullptr, SECRET_SERVICE_OPEN_SESSION,
                                                deadline_.get(), failure_.out()));
        return service_ ? SecretStatus::success : failure_.status();
    }

    /// The collection for new items, or null with the reason: that there is none, or that it is locked.
    [[nodiscard]] SecretStatus findCollection() {
        collection_.reset(secret_collection_for_alias_sync(service_.get(), SECRET_COLLECTION_DEFAULT,
                                                           SECRET_COLLECTION_NONE, deadline_.get(), failure_.out()));
        if (!collection_) {
            return failure_.hasError() ? failure_.status() : SecretStatus::itemNotFound;
        }
        return secret_collection_get_locked(collection_.get()) ? SecretStatus::interactionNotAllowed
                                                               : SecretStatus::success;
    }

    /// The unlocked item with the name; `itemNotFound` when no item has it. The attributes of an item are its name,
    /// whatever schema they were stored under. Of several, the program's own takes precedence, then the oldest, because
    /// the vault was sealed with that one.
    [[nodiscard]] SecretStatus findItem(const core::SecretName& name) {
        const auto attributes = attributesOf(name);
        const std::unique_ptr<GList, FreeItems> items(secret_service_search_sync(
            service_.get(), nullptr, attributes.get(), SECRET_SEARCH_ALL, deadline_.get(), failure_.out()));
        if (failure_.hasError()) {
            return failure_.status();
        }
        bool hasLocked = false;
        SecretItem* best = nullptr;
        for (auto* each = items.get(); each; each = each->next) {
            auto* item = static_cast<SecretItem*>(each->data);
            if (!hasNameOnly(item)) {
                continue;
            }
            if (secret_item_get_locked(item)) {
                hasLocked = true;
            } else if (!best || rank(item) < rank(best)) {
                best = item;
            }
        }
        if (best) {
            item_.reset(static_cast<SecretItem*>(g_object_ref(best)));
            return SecretStatus::success;
        }
        return hasLocked ? SecretStatus::interactionNotAllowed : SecretStatus::itemNotFound;
    }

    /// The secret of the item that has been found.
    [[nodiscard]] std::variant<SecretBytes, SecretStatus> loadSecret() {
        if (!secret_item_load_secret_sync(item_.get(), deadline_.get(), failure_.out())) {
            return failure_.status();
        }
        const std::unique_ptr<SecretValue, UnrefValue> value(secret_item_get_secret(item_.get()));
        if (!value) {
            return SecretStatus::decode;
        }
        gsize size = 0;
        const auto* bytes = secret_value_get(value.get(), &size);
        return SecretBytes(std::as_bytes(std::span(bytes, size)));
    }

    [[nodiscard]] SecretStatus create(const core::SecretName& name, const std::string& label,
                                      std::span<const std::byte> secret) {
        const auto attributes = attributesOf(name);
        const std::unique_ptr<SecretValue, UnrefValue> value(
            secret_value_new(reinterpret_cast<const char*>(secret.data()), static_cast<gssize>(secret.size()),
                             "application/octet-stream"));
        const Object<SecretItem> item(secret_item_create_sync(collection_.get(), &schema(), attributes.get(),
                                                              label.c_str(), value.get(), SECRET_ITEM_CREATE_NONE,
                                                              deadline_.get(), failure_.out()));
        return item ? SecretStatus::success : failure_.status();
    }

private:
    using Attributes = std::unique_ptr<GHashTable, UnrefTable>;

    static Attributes attributesOf(const core::SecretName& name) {
        return Attributes(secret_attributes_build(&schema(), "service", name.service.c_str(), "account",
                                                  name.account.c_str(), nullptr));
    }

    /// Whether a found item has no attribute beside its name. A locked one may not reveal it.
    static bool hasNameOnly(SecretItem* item) {
        const Attributes all(secret_item_get_attributes(item));
        return !all || g_hash_table_size(all.get()) <= (schemaOf(all.get()) ? 3U : 2U);
    }

    static const char* schemaOf(GHashTable* attributes) {
        return static_cast<const char*>(g_hash_table_lookup(attributes, "xdg:schema"));
    }

    /// The smallest one is taken.
    static std::tuple<bool, guint64, std::string_view> rank(SecretItem* item) {
        const Attributes all(secret_item_get_attributes(item));
        const char* stored = all ? schemaOf(all.get()) : nullptr;
        return {!stored || std::string_view(stored) != schema().name, secret_item_get_created(item),
                g_dbus_proxy_get_object_path(G_DBUS_PROXY(item))};
    }

    OwnContext context_;
    Deadline deadline_;
    Failure failure_;
    Object<SecretService> service_;
    Object<SecretCollection> collection_;
    Object<SecretItem> item_;
};

} // namespace

std::variant<SecretBytes, SecretStatus> SecretServiceStore::find(const core::SecretName& name) {
    Session session(timeout_);
    if (const auto status = session.open(); status != SecretStatus::success) {
        return status;
    }
    const auto found = session.findItem(name);
    if (found == SecretStatus::success) {
        return session.loadSecret();
    }
    if (found != SecretStatus::itemNotFound) {
        return found;
    }
    // A locked collection does not reveal its items.
    const auto collection = session.findCollection();
    return collection == SecretStatus::success ? SecretStatus::itemNotFound : collection;
}

SecretStatus SecretServiceStore::add(const core::SecretName& name, const std::string& label,
                                     std::span<const std::byte> secret) {
    Session session(timeout_);
    if (const auto status = session.open(); status != SecretStatus::success) {
        return status;
    }
    const auto collection = session.findCollection();
    if (collection != SecretStatus::success) {
        // Without a collection, only the user could make one.
        return collection == SecretStatus::itemNotFound ? SecretStatus::notAvailable : collection;
    }
    const auto found = session.findItem(name);
    if (found != SecretStatus::itemNotFound) {
        return found == SecretStatus::success ? SecretStatus::duplicateItem : found;
    }
    return session.create(name, label, secret);
}

} // namespace quillane
