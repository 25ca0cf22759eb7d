// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
//
// Answers of other applications over D-Bus, of any signature: what is read of them keeps to its limits, and reading
// ends.
#include "Require.hpp"

#include "platform/linux/accessibility/AtspiFacts.hpp"

#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <string>

using namespace quillane;
using quillane::fuzz::require;

namespace {

constexpr int deepest = 6;

class Answer {
public:
    Answer(FuzzedDataProvider& input, const std::string& signature)
        : input_(input), message_(dbus_message_new(DBUS_MESSAGE_TYPE_METHOD_RETURN)) {
        DBusMessageIter arguments;
        dbus_message_iter_init_append(message_.get(), &arguments);
        fill(arguments, signature, 0);
    }

    [[nodiscard]] DBusMessage& message() { return *message_; }

private:
    /// A value of each complete type of a signature.
    void fill(DBusMessageIter& out, const std::string& signature, int depth) {
        DBusSignatureIter type;
        dbus_signature_iter_init(&type, signature.c_str());
        if (signature.empty()) {
            return;
        }
        do {
            const std::unique_ptr<char, void (*)(void*)> one(dbus_signature_iter_get_signature(&type), dbus_free);
            addValue(out, type, one.get(), depth);
        } while (dbus_signature_iter_next(&type) != FALSE);
    }

    void addValue(DBusMessageIter& out, const DBusSignatureIter& type, const std::string& signature, int depth) {
        switch (const int kind = dbus_signature_iter_get_current_type(&type)) {
        case DBUS_TYPE_STRING:
        case DBUS_TYPE_OBJECT_PATH:
            return addText(out, kind);
        case DBUS_TYPE_ARRAY: {
            const auto element = signature.substr(1);
            const int count = input_.ConsumeIntegralInRange(0, 3);
            return inside(out, kind, element.c_str(), [&](DBusMessageIter& in) {
                for (int i = 0; i < count; ++i) {
                    fill(in, element, depth + 1);
                }
            });
        }
        case DBUS_TYPE_VARIANT: {
            const auto held = depth < deepest ? randomSignature() : std::string("u");
            return inside(out, kind, held.c_str(), [&](DBusMessageIter& in) { fill(in, held, depth + 1); });
        }
        case DBUS_TYPE_STRUCT:
        case DBUS_TYPE_DICT_ENTRY:
            return inside(out, kind, nullptr,
                          [&](DBusMessageIter& in) { fill(in, signature.substr(1, signature.size() - 2), depth + 1); });
        case DBUS_TYPE_BOOLEAN: {
            const dbus_bool_t flag = input_.ConsumeBool() ? TRUE : FALSE;
            dbus_message_iter_append_basic(&out, kind, &flag);
            return;
        }
        default: {
            const DBusBasicValue number{.u64 = input_.ConsumeIntegral<std::uint64_t>()};
            dbus_message_iter_append_basic(&out, kind, &number);
        }
        }
    }

    template <typename Steps>
    static void inside(DBusMessageIter& out, int kind, const char* signature, const Steps& steps) {
        DBusMessageIter in;
        require(dbus_message_iter_open_container(&out, kind, signature, &in) != FALSE);
        steps(in);
        require(dbus_message_iter_close_container(&out, &in) != FALSE);
    }

    void addText(DBusMessageIter& out, int kind) {
        static constexpr std::array known{"/org/a11y/atspi/accessible/root", "/org/a11y/atspi/null", "/"};
        auto text = input_.ConsumeRandomLengthString(40);
        text = text.substr(0, text.find('\0'));
        const bool isValid = kind == DBUS_TYPE_OBJECT_PATH ? dbus_validate_path(text.c_str(), nullptr) != FALSE
                                                           : dbus_validate_utf8(text.c_str(), nullptr) != FALSE;
        if (!isValid) {
            text = known[text.size() % known.size()];
        }
        const char* pointer = text.c_str();
        dbus_message_iter_append_basic(&out, kind, &pointer);
    }

    std::string randomSignature() {
        static constexpr std::array known{"s", "u",    "i", "b", "o", "(so)", "a(so)",    "as",      "au",   "a{ss}",
                                          "v", "(ii)", "t", "d", "y", "aau",  "a(a(so))", "((so)s)", "a{sv}"};
        return known[input_.ConsumeIntegralInRange<std::size_t>(0, known.size() - 1)];
    }

    FuzzedDataProvider& input_;
    BusMessage message_;
};

constexpr unsigned lastFact = 18;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    static constexpr std::array signatures{"",      "s",        "u",     "i",     "b",   "o",       "(so)", "a(so)",
                                           "as",    "au",       "v",     "a{ss}", "ii",  "uu",      "vs",   "av",
                                           "a{sv}", "a(a(so))", "(sov)", "avv",   "aas", "(so)(so)"};
    const std::string signature = signatures[input.ConsumeIntegralInRange<std::size_t>(0, signatures.size() - 1)];
    Answer answer(input, signature);
    AtspiFacts facts;
    for (unsigned bit = 0; bit <= lastFact; ++bit) {
        readAnswer(static_cast<AtspiFact>(1U << bit), answer.message(), facts);
    }
    require(facts.children.size() <= 10'000);
    for (const auto& child : facts.children) {
        require(isBusName(child.bus) && isObjectPath(child.path));
    }
    if (facts.parent) {
        require(isBusName(facts.parent->bus) && isObjectPath(facts.parent->path));
    }
    return 0;
}
