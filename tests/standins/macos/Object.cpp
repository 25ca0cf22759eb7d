// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "standins/macos/Object.hpp"

#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

namespace quillane::standin {

namespace {

class Null final : public Object {
public:
    Null() : Object(Owner::nobody) {}

    [[nodiscard]] CFTypeID type() const override { return CFNullGetTypeID(); }

    [[nodiscard]] std::string describe() const override { return "the null object"; }
};

Null theNull;

} // namespace

void Object::retain() {
    if (owner_ != Owner::nobody && references_ > 0) {
        ++references_;
    }
}

void Object::release() {
    if (owner_ != Owner::nobody && references_ > 0 && --references_ == 0) {
        dispose();
    }
}

void Object::checkAlive() const {
    if (references_ <= 0) {
        ADD_FAILURE() << "used after its last release: " << describe();
    }
}

void Ledger::add(std::unique_ptr<Object> object) {
    const std::lock_guard lock(mutex_);
    objects_.push_back(std::move(object));
}

void Ledger::settle() {
    const std::lock_guard lock(mutex_);
    for (const auto& object : objects_) {
        const long expected = object->owner() == Object::Owner::system ? 1 : 0;
        if (object->references() > expected) {
            ADD_FAILURE() << "never released: " << object->describe();
        } else if (object->references() < expected) {
            ADD_FAILURE() << "released by somebody who does not own it: " << object->describe();
        }
    }
    for (const auto& object : objects_) {
        if (object->references() > 0) {
            object->dispose(); // what is left holds others, which are still there
        }
    }
    objects_.clear();
}

Object& object(CFTypeRef reference) {
    if (reference == nullptr) {
        refuse("called with null");
    }
    auto& found = *static_cast<Object*>(const_cast<void*>(reference));
    found.checkAlive();
    return found;
}

void refuse(const std::string& why) {
    ADD_FAILURE() << why; // the exception may end in what is tested
    throw std::logic_error(why);
}

} // namespace quillane::standin

using namespace quillane;

extern "C" {

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFAllocatorRef kCFAllocatorNull = reinterpret_cast<CFAllocatorRef>(&standin::theNull);
const CFNullRef kCFNull = standin::reference<CFNullRef>(standin::theNull);

CFTypeRef CFRetain(CFTypeRef object) {
    standin::object(object).retain();
    return object;
}

void CFRelease(CFTypeRef object) {
    standin::object(object).release();
}

Boolean CFEqual(CFTypeRef one, CFTypeRef other) {
    const auto& first = standin::object(one);
    const auto& second = standin::object(other);
    return first.type() == second.type() && first.equals(second);
}

CFTypeID CFGetTypeID(CFTypeRef object) {
    return standin::object(object).type();
}

CFTypeID CFNullGetTypeID() {
    return 1;
}
}
