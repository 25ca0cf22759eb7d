// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/// Type identifiers of pasteboard contents: the uniform types of AppKit's NSPasteboardType constants (NSPasteboard.h)
/// and the markers of the pasteboard-marker convention (nspasteboard.org).
namespace quillane::core::pasteboardTypes {

inline constexpr std::string_view string = "public.utf8-plain-text";
inline constexpr std::string_view rtf = "public.rtf";
inline constexpr std::string_view html = "public.html";
inline constexpr std::string_view url = "public.url";
inline constexpr std::string_view png = "public.png";
inline constexpr std::string_view jpeg = "public.jpeg";
inline constexpr std::string_view tiff = "public.tiff";
inline constexpr std::string_view fileUrl = "public.file-url";

/// The bundle identifier of the application that the contents come from.
inline constexpr std::string_view source = "org.nspasteboard.source";
/// The contents are a secret.
inline constexpr std::string_view concealed = "org.nspasteboard.ConcealedType";

} // namespace quillane::core::pasteboardTypes
