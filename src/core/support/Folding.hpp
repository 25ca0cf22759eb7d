// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace quillane::core {

/// The text in the form that searching compares: letter case, diacritics of all scripts (Hebrew points, Arabic vowel
/// signs, accents) and invisible characters (direction marks, joiners) are gone, and every kind of white space is a
/// plain space. Marks that make another letter (Indic vowel signs, nukta and virama, Japanese voicing) stay. Ill-formed
/// bytes become U+FFFD. Appends to `folded`.
void appendFolded(std::u32string& folded, std::string_view utf8);

[[nodiscard]] std::u32string folded(std::string_view utf8);

} // namespace quillane::core
