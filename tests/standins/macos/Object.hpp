// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <CoreFoundation/Base.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace quillane::standin {

/// A Core Foundation object. Each type is a class of its own, whose name a failing test shows.
class Object {
public:
    /// Who releases it: whoever has it, the system that lends it, or nobody, as it is there for good.
    enum class Owner { caller, system, nobody };

    explicit Object(Owner owner = Owner::caller) : owner_(owner) {}

    virtual ~Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    [[nodiscard]] virtual CFTypeID type() const = 0;
    [[nodiscard]] virtual std::string describe() const = 0;

    [[nodiscard]] virtual bool equals(const Object& other) const { return this == &other; }

    void retain();
    void release();

    [[nodiscard]] Owner owner() const { return owner_; }

    [[nodiscard]] long references() const { return references_; }

    /// A failure of the test when it has been released already.
    void checkAlive() const;

private:
    friend class Ledger;

    /// Gives back what the object holds, as soon as nobody has it.
    virtual void dispose() {}

    Owner owner_;
    std::atomic<long> references_ = 1;
};

/// All objects made by one test. An object that has been released stays in memory until the end, so that whoever uses
/// it is found with and without a sanitizer.
class Ledger {
public:
    ~Ledger() { settle(); }

    Ledger() = default;
    Ledger(const Ledger&) = delete;
    Ledger& operator=(const Ledger&) = delete;

    void add(std::unique_ptr<Object> object);

    /// A failure of the test for each object that somebody still holds, or has released once too often. Forgets all.
    void settle();

private:
    std::mutex mutex_;
    std::vector<std::unique_ptr<Object>> objects_;
};

/// The ledger of the test that runs.
[[nodiscard]] Ledger& ledger();

/// A new object, for which the caller has the one reference.
template <typename T, typename... Arguments>
T& make(Arguments&&... arguments) {
    auto object = std::make_unique<T>(std::forward<Arguments>(arguments)...);
    auto& result = *object;
    ledger().add(std::move(object));
    return result;
}

/// The object behind a reference. A null or dead one is a failure of the test.
[[nodiscard]] Object& object(CFTypeRef reference);

/// Fails the test and throws.
[[noreturn]] void refuse(const std::string& why);

/// The object as one of the class, which the function that was called demands.
template <typename T>
T& as(CFTypeRef reference) {
    auto* exact = dynamic_cast<T*>(&object(reference));
    return exact != nullptr ? *exact : (refuse("called with " + object(reference).describe()), *exact);
}

template <typename Reference>
Reference reference(Object& object) {
    return reinterpret_cast<Reference>(&object);
}

} // namespace quillane::standin
