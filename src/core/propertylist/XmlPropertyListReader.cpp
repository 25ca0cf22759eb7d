// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/propertylist/PropertyListFormats.hpp"
#include "core/support/Characters.hpp"

#include <plist/plist.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace quillane::core {
namespace {

constexpr std::size_t maximumDocumentBytes = std::size_t{1} << 20;
constexpr std::size_t maximumEntityWork = std::size_t{1} << 31;

struct FreeNode {
    void operator()(void* node) const { plist_free(node); }
};

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); } // NOLINT(cppcoreguidelines-no-malloc)
};

using Node = std::unique_ptr<void, FreeNode>;
using Iterator = std::unique_ptr<void, FreeMemory>;

/// The end of the construct that begins with `opening` at the start of the text, or none when it does not end.
std::optional<std::size_t> endOf(std::string_view text, std::string_view opening, std::string_view closing) {
    const auto end = text.find(closing, opening.size());
    return end == std::string_view::npos ? std::nullopt : std::optional(end + closing.size());
}

/// The elements of the document alone, without declaration, document type and comments, once they are known to be
/// harmless: libplist builds and frees a tree by recursion and takes time that grows with entities times length.
class XmlElements {
public:
    tl::expected<std::string, PropertyListError> collect(std::string_view rest) {
        std::string elements;
        std::size_t depth = 0;
        std::size_t tags = 0;
        while (!rest.empty()) {
            auto length = std::min(rest.find('<'), rest.size());
            if (length == 0) {
                const auto skipped = skip(rest);
                if (!skipped) {
                    return tl::unexpected(PropertyListError::malformed);
                }
                if (*skipped > 0) {
                    rest.remove_prefix(*skipped);
                    continue;
                }
                length = rest.find('>') + 1; // 0 when there is none
                const auto tag = rest.substr(0, length);
                if (tag.size() < 3 || tag.find('<', 1) != std::string_view::npos ||
                    std::ranges::count(tag, '"') % 2 != 0) {
                    return tl::unexpected(PropertyListError::malformed);
                }
                if (++tags > PropertyListBudget::maximumValues * 2) {
                    return tl::unexpected(PropertyListError::tooLarge);
                }
                if (tag[1] == '/') {
                    depth -= depth > 0 ? 1 : 0;
                } else if (!tag.ends_with("/>") && ++depth > PropertyListBudget::maximumDepth + 1) { // and <plist>
                    return tl::unexpected(PropertyListError::tooDeep);
                }
            }
            elements += rest.substr(0, length);
            rest.remove_prefix(length);
        }
        const auto entities = static_cast<std::size_t>(std::ranges::count(elements, '&'));
        if (entities * elements.size() > maximumEntityWork) {
            return tl::unexpected(PropertyListError::tooLarge);
        }
        return elements;
    }

private:
    /// The length of the comment, instruction or document type at the start of the text; 0 for an element, none for
    /// anything that no property list needs.
    static std::optional<std::size_t> skip(std::string_view text) {
        if (text.starts_with("<!--")) {
            return endOf(text, "<!--", "-->");
        }
        if (text.starts_with("<?")) {
            return endOf(text, "<?", "?>");
        }
        if (text.starts_with("<!")) {
            const auto end = endOf(text, "<!", ">");
            const bool plain = end && text.starts_with("<!DOCTYPE") && text.substr(0, *end).find('[') == text.npos;
            return plain ? end : std::nullopt;
        }
        return 0;
    }
};

class Converter {
public:
    PropertyListResult convert(plist_t root) {
        auto value = valueOf(root);
        return value ? PropertyListResult(std::move(*value)) : tl::unexpected(error_);
    }

private:
    std::optional<PropertyListValue> valueOf(plist_t node) {
        if (!budget_.takeValue()) {
            error_ = PropertyListError::tooLarge;
            return std::nullopt;
        }
        switch (plist_get_node_type(node)) {
        case PLIST_BOOLEAN: {
            std::uint8_t value = 0;
            plist_get_bool_val(node, &value);
            return value != 0;
        }
        case PLIST_UINT: {
            std::uint64_t value = 0;
            plist_get_uint_val(node, &value);
            return static_cast<std::int64_t>(value); // libplist keeps negative numbers in two's complement
        }
        case PLIST_REAL: {
            double value = 0;
            plist_get_real_val(node, &value);
            return value;
        }
        case PLIST_STRING: {
            const char* text = plist_get_string_ptr(node, nullptr);
            return validUtf8(text != nullptr ? text : "");
        }
        case PLIST_DATA: {
            std::uint64_t size = 0;
            const auto* bytes = reinterpret_cast<const std::byte*>(plist_get_data_ptr(node, &size));
            return bytes != nullptr ? PropertyListValue::Data({bytes, bytes + size}) : PropertyListValue::Data();
        }
        case PLIST_DATE:
            return date(node);
        case PLIST_ARRAY:
            return array(node);
        case PLIST_DICT:
            return dictionary(node);
        default:
            return std::nullopt;
        }
    }

    static std::optional<PropertyListValue> date(plist_t node) {
        std::int32_t seconds = 0;
        plist_get_date_val(node, &seconds, nullptr);
        using Limits = std::numeric_limits<std::int32_t>;
        if (seconds == Limits::min() || seconds == Limits::max()) { // a date that libplist cannot represent
            return std::nullopt;
        }
        return PropertyListValue::Date{static_cast<double>(seconds)};
    }

    std::optional<PropertyListValue> array(plist_t node) {
        PropertyListValue::Array elements;
        plist_array_iter created = nullptr;
        plist_array_new_iter(node, &created);
        const Iterator iterator(created);
        for (plist_t child = nullptr; plist_array_next_item(node, iterator.get(), &child), child != nullptr;) {
            auto element = valueOf(child);
            if (!element) {
                return std::nullopt;
            }
            elements.push_back(std::move(*element));
        }
        return elements;
    }

    std::optional<PropertyListValue> dictionary(plist_t node) {
        PropertyListValue::Dictionary entries;
        plist_dict_iter created = nullptr;
        plist_dict_new_iter(node, &created);
        const Iterator iterator(created);
        while (true) {
            char* key = nullptr;
            plist_t child = nullptr;
            plist_dict_next_item(node, iterator.get(), &key, &child);
            const std::unique_ptr<char, FreeMemory> owned(key);
            if (key == nullptr || child == nullptr) {
                return entries;
            }
            auto value = valueOf(child);
            if (!value) {
                return std::nullopt;
            }
            entries.insert_or_assign(validUtf8(key), std::move(*value));
        }
    }

    PropertyListBudget budget_{maximumDocumentBytes};
    PropertyListError error_ = PropertyListError::malformed;
};

} // namespace

PropertyListResult parseXmlPropertyList(std::string_view document) {
    if (document.size() > maximumDocumentBytes) {
        return tl::unexpected(PropertyListError::tooLarge);
    }
    if (document.starts_with("\uFEFF")) {
        document.remove_prefix(std::string_view("\uFEFF").size());
    }
    if (!document.starts_with('<') || document.find('\0') != std::string_view::npos) {
        return tl::unexpected(PropertyListError::malformed);
    }
    const auto elements = XmlElements().collect(document);
    if (!elements) {
        return tl::unexpected(elements.error());
    }
    plist_t parsed = nullptr;
    plist_from_xml(elements->data(), static_cast<std::uint32_t>(elements->size()), &parsed);
    const Node root(parsed);
    return root ? Converter().convert(root.get()) : tl::unexpected(PropertyListError::malformed);
}

} // namespace quillane::core
