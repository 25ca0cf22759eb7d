// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

// How AtspiAccessibility reads and replaces text.

#include "platform/linux/accessibility/AtspiHandle.hpp"

#include "core/keyboard/TypedWords.hpp"

namespace quillane {

namespace {

constexpr auto applicationInterface = "org.a11y.atspi.Application";
constexpr auto editableTextInterface = "org.a11y.atspi.EditableText";
constexpr auto textInterface = "org.a11y.atspi.Text";

BusMessage rangeCall(const AtspiObject& object, const char* interface, const char* member, const AXTextRange& range) {
    auto message = methodCall(object.bus, object.path, interface, member);
    appendInt32(*message, static_cast<std::int32_t>(range.location));
    appendInt32(*message, static_cast<std::int32_t>(range.location + range.length));
    return message;
}

} // namespace

std::optional<std::string> AtspiAccessibility::readText(const AtspiObject& object, const AXTextRange& range,
                                                        const Limit& limit) {
    std::optional<std::string> text;
    const bool came = ask(rangeCall(object, textInterface, "GetText", range), limit, [&](DBusMessage* reply) {
        const auto read = reply != nullptr ? BusReader(*reply).text() : std::nullopt;
        text = read ? std::optional<std::string>(*read) : std::nullopt;
    });
    return came ? text : std::nullopt;
}

std::optional<std::string> AtspiAccessibility::toolkitOf(const std::string& application, const Limit& limit) {
    std::optional<std::string> name;
    const bool came = ask(propertyRead(application, atspiRootPath, applicationInterface, "ToolkitName"), limit,
                          [&](DBusMessage* reply) {
                              auto variant = reply != nullptr ? BusReader(*reply).container() : std::nullopt;
                              const auto read = variant ? variant->text() : std::nullopt;
                              name = read ? std::optional<std::string>(*read) : std::nullopt;
                          });
    return came ? name : std::nullopt;
}

/// The length is in bytes, but Qt takes it as a number of UTF-16 units.
bool AtspiAccessibility::insertText(const AtspiObject& object, std::int64_t location, const std::string& text,
                                    const Limit& limit) {
    const auto toolkit = toolkitOf(object.bus, limit);
    if (!toolkit) {
        return false;
    }
    using core::retyping::TextUnit;
    const auto length =
        *toolkit == "Qt" ? core::retyping::lengthIn(TextUnit::utf16, text) : static_cast<std::int64_t>(text.size());
    auto message = methodCall(object.bus, object.path, editableTextInterface, "InsertText");
    appendInt32(*message, static_cast<std::int32_t>(location));
    appendText(*message, text);
    appendInt32(*message, static_cast<std::int32_t>(length));
    return answer(std::move(message), limit) == true;
}

std::optional<std::string> AtspiAccessibility::textIn(const AXElement& element, const AXTextRange& range) {
    const auto& handle = dynamic_cast<const Handle&>(element.handle());
    const auto object = objectOf(handle);
    const auto limit = limitOf(handle);
    auto* bus = bus_.connection();
    if (!object || object->bus.empty() || bus == nullptr || !mayAsk(*bus, object->bus, limit)) {
        return std::nullopt;
    }
    return readText(*object, range, limit);
}

/// The new text is inserted behind the old one, which is then deleted: whatever fails, no text is lost.
AXReplacement AtspiAccessibility::replaceText(const AXElement& element, const AXTextRange& range,
                                              const std::string& expected, const std::string& text) {
    const auto& handle = dynamic_cast<const Handle&>(element.handle());
    const auto object = objectOf(handle);
    if (!object || object->bus.empty() || !isAttributeSettable(element, "AXSelectedText")) {
        return AXReplacement::failed;
    }
    const auto current = textIn(element, range);
    const auto unit = core::retyping::unitOf(expected, range.length);
    if (!current || (*current == expected && !unit)) {
        return AXReplacement::failed;
    }
    if (*current != expected) {
        return AXReplacement::differs;
    }
    const auto remove = [&](const AXTextRange& part) {
        return answer(rangeCall(*object, editableTextInterface, "DeleteText", part), limitOf(handle)) == true;
    };
    const auto end = range.location + range.length;
    if (!insertText(*object, end, text, limitOf(handle))) {
        return AXReplacement::failed;
    }
    if (!remove(range)) {
        remove({end, core::retyping::lengthIn(*unit, text)});
        return AXReplacement::failed;
    }
    return AXReplacement::done;
}

} // namespace quillane
