// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "standins/macos/Values.hpp"

#include <CoreFoundation/CoreFoundation.h>

#include <limits>

namespace quillane::standin {

namespace {

class Flag final : public Object {
public:
    explicit Flag(bool value) : Object(Owner::nobody), value_(value) {}

    [[nodiscard]] CFTypeID type() const override { return CFBooleanGetTypeID(); }

    [[nodiscard]] std::string describe() const override { return value_ ? "true" : "false"; }

    [[nodiscard]] bool value() const { return value_; }

private:
    bool value_;
};

class Number final : public Object {
public:
    Number(bool isFloat, std::int64_t whole, double fraction, bool fits)
        : isFloat_(isFloat), whole_(whole), fraction_(fraction), fits_(fits) {}

    [[nodiscard]] CFTypeID type() const override { return CFNumberGetTypeID(); }

    [[nodiscard]] std::string describe() const override {
        return "the number " + (isFloat_ ? std::to_string(fraction_) : std::to_string(whole_));
    }

    [[nodiscard]] bool equals(const Object& other) const override {
        const auto& number = static_cast<const Number&>(other);
        return number.fraction_ == fraction_ && number.whole_ == whole_;
    }

    [[nodiscard]] bool isFloat() const { return isFloat_; }

    [[nodiscard]] std::int64_t whole() const { return whole_; }

    [[nodiscard]] double fraction() const { return fraction_; }

    /// Whether a 64-bit signed integer can say it.
    [[nodiscard]] bool fits() const { return fits_; }

private:
    bool isFloat_;
    std::int64_t whole_;
    double fraction_;
    bool fits_;
};

class Date final : public Object {
public:
    explicit Date(double time) : time_(time) {}

    [[nodiscard]] CFTypeID type() const override { return CFDateGetTypeID(); }

    [[nodiscard]] std::string describe() const override { return "a date"; }

    [[nodiscard]] double time() const { return time_; }

private:
    double time_;
};

Flag theTrue(true);
Flag theFalse(false);

} // namespace

Value hugeNumber() {
    return Value::adopt(reference<CFTypeRef>(make<Number>(false, -1, 18446744073709551615.0, false)));
}

} // namespace quillane::standin

using namespace quillane;

extern "C" {

const CFBooleanRef kCFBooleanTrue = standin::reference<CFBooleanRef>(standin::theTrue);
const CFBooleanRef kCFBooleanFalse = standin::reference<CFBooleanRef>(standin::theFalse);

CFTypeID CFBooleanGetTypeID() {
    return 4;
}

CFTypeID CFNumberGetTypeID() {
    return 5;
}

CFTypeID CFDateGetTypeID() {
    return 6;
}

Boolean CFBooleanGetValue(CFBooleanRef flag) {
    return standin::as<standin::Flag>(flag).value();
}

CFNumberRef CFNumberCreate(CFAllocatorRef /*allocator*/, CFNumberType type, const void* value) {
    const bool isFloat = type == kCFNumberDoubleType;
    const std::int64_t whole = type == kCFNumberSInt64Type ? *static_cast<const std::int64_t*>(value)
                               : type == kCFNumberIntType  ? *static_cast<const int*>(value)
                                                           : 0;
    const double fraction = isFloat ? *static_cast<const double*>(value) : static_cast<double>(whole);
    return standin::reference<CFNumberRef>(standin::make<standin::Number>(isFloat, whole, fraction, !isFloat));
}

Boolean CFNumberIsFloatType(CFNumberRef number) {
    return standin::as<standin::Number>(number).isFloat();
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
    const auto& exact = standin::as<standin::Number>(number);
    if (type == kCFNumberDoubleType) {
        *static_cast<double*>(value) = exact.fraction();
        return true;
    }
    if (type == kCFNumberSInt64Type) {
        *static_cast<std::int64_t*>(value) = exact.whole();
        return exact.fits();
    }
    *static_cast<int*>(value) = static_cast<int>(exact.whole());
    return exact.fits() && exact.whole() >= std::numeric_limits<int>::min() &&
           exact.whole() <= std::numeric_limits<int>::max();
}

CFDateRef CFDateCreate(CFAllocatorRef /*allocator*/, CFAbsoluteTime time) {
    return standin::reference<CFDateRef>(standin::make<standin::Date>(time));
}

CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date) {
    return standin::as<standin::Date>(date).time();
}
}
