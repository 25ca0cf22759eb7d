// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/direction/Labels.hpp"
#include "platform/Accessibility.hpp"

#include <array>
#include <deque>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Helpers for reading other applications' accessibility trees. A value that cannot be read, or has another type than
/// requested, is absent. Nothing throws.
namespace quillane::ax {

[[nodiscard]] std::optional<AXElement> element(Accessibility& accessibility, const AXElement& from,
                                               std::string_view attribute);

[[nodiscard]] std::optional<std::string> string(Accessibility& accessibility, const AXElement& from,
                                                std::string_view attribute);

/// A flag, which some applications give as the number 0 or 1.
[[nodiscard]] std::optional<bool> flag(const AXValue& value);

[[nodiscard]] std::optional<bool> flag(Accessibility& accessibility, const AXElement& from, std::string_view attribute);

/// The elements under the attribute; an empty list when there are none.
[[nodiscard]] std::vector<AXElement> children(Accessibility& accessibility, const AXElement& of,
                                              std::string_view attribute = "AXChildren");

/// The first of the elements with this role.
[[nodiscard]] std::optional<AXElement> firstOfRole(Accessibility& accessibility, const std::vector<AXElement>& elements,
                                                   std::string_view role);

/// The title of each element, or else its description, or else an empty text.
[[nodiscard]] std::vector<std::string> labels(Accessibility& accessibility, const std::vector<AXElement>& elements);

/// Whether "AXValue" or, failing that, "AXSelectedText" is settable.
[[nodiscard]] bool isTextWritable(Accessibility& accessibility, const AXElement& element);

/// Whether the title, or else the description, is the label, in whichever language.
[[nodiscard]] bool matches(Accessibility& accessibility, const AXElement& element, const core::Labels& label);

/// Presses an element unless it is disabled; true on success.
bool press(Accessibility& accessibility, const AXElement& element);

/// Whether the element is the ancestor or below it, by at most 32 steps.
[[nodiscard]] bool isDescendant(Accessibility& accessibility, const AXElement& element, const AXElement& ancestor);

/// The element itself or its nearest ancestor with this role, looking at no more than `steps` elements.
[[nodiscard]] std::optional<AXElement> closest(Accessibility& accessibility, const AXElement& from,
                                               std::string_view role, std::size_t steps);

/// An element that a search has reached, with the requested attributes.
struct Candidate {
    const AXElement& element;
    std::string_view role; ///< empty when it cannot be read
    std::span<const std::string_view> names;
    std::span<const AXValue> values; ///< one for each name

    /// A text among the requested attributes; none when the element does not have it.
    [[nodiscard]] std::optional<std::string_view> text(std::string_view name) const;

    /// `ax::matches`, of the attributes asked for, which must hold those of `labelNames`.
    [[nodiscard]] bool isLabelled(const core::Labels& label) const;
};

inline constexpr std::array<std::string_view, 2> labelNames{"AXTitle", "AXDescription"};

/// Options of a search.
struct Search {
    std::size_t limit = 0;                      ///< of visited elements
    std::span<const std::string_view> skipping; ///< roles that are not searched, besides those that never are
    std::span<const std::string_view> reading;  ///< attributes that the predicate needs, besides the role
};

/// A search in steps, for trees that take too long to be read at once. Breadth first from the root. It gives up after a
/// number of visited elements, and when the application does not answer in time; an element without a role is searched
/// like any other. Never looks inside text, tables, lists and web areas. Elements are read together as far as the
/// backend can.
class TreeSearch {
public:
    enum class State { searching, found, notFound, unanswered };

    TreeSearch(const AXElement& root, const Search& search) : search_(search), queue_{root} {}

    /// Reads the next elements, as many as the backend reads together: at most two calls.
    State step(Accessibility& accessibility, const std::function<bool(const Candidate&)>& predicate);

    [[nodiscard]] const std::optional<AXElement>& result() const { return result_; }

private:
    Search search_;
    std::deque<AXElement> queue_;
    std::size_t visited_ = 0;
    std::optional<AXElement> result_;
};

/// Runs a `TreeSearch` to its end; returns the first element that the predicate accepts.
[[nodiscard]] std::optional<AXElement> find(Accessibility& accessibility, const AXElement& root, const Search& search,
                                            const std::function<bool(const Candidate&)>& predicate);

/// Breadth first from the root, the first element that the predicate accepts; it is given the element and its role.
/// Gives up after `limit` visited elements. Never looks inside text, tables, lists and web areas, nor inside the roles
/// in `skipping`.
[[nodiscard]] std::optional<AXElement>
find(Accessibility& accessibility, const AXElement& root, std::size_t limit, std::span<const std::string_view> skipping,
     const std::function<bool(const AXElement&, std::string_view role)>& predicate);

} // namespace quillane::ax
