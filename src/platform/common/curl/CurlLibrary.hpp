// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <curl/curl.h>

namespace quillane {

/// The functions of libcurl, which is loaded when the first file is shared: its two dozen libraries take more memory
/// than the clipboard history does.
struct CurlLibrary {
    decltype(&curl_easy_init) easyInit = nullptr;
    decltype(&curl_easy_cleanup) easyCleanup = nullptr;
    decltype(&curl_easy_setopt) easySetOption = nullptr;
    decltype(&curl_easy_getinfo) easyGetInfo = nullptr;
    decltype(&curl_multi_init) multiInit = nullptr;
    decltype(&curl_multi_cleanup) multiCleanup = nullptr;
    decltype(&curl_multi_add_handle) multiAddHandle = nullptr;
    decltype(&curl_multi_remove_handle) multiRemoveHandle = nullptr;
    decltype(&curl_multi_perform) multiPerform = nullptr;
    decltype(&curl_multi_poll) multiPoll = nullptr;
    decltype(&curl_multi_wakeup) multiWakeUp = nullptr;
    decltype(&curl_multi_info_read) multiInfoRead = nullptr;
    decltype(&curl_url) url = nullptr;
    decltype(&curl_url_cleanup) urlCleanup = nullptr;
    decltype(&curl_url_get) urlGet = nullptr;
    decltype(&curl_url_set) urlSet = nullptr;
    decltype(&curl_slist_append) listAppend = nullptr;
    decltype(&curl_slist_free_all) listFreeAll = nullptr;
    decltype(&curl_free) free = nullptr;

    /// Restricts a transfer to http and https. The option that takes names exists since 7.85, and macOS 13 has 7.84, so
    /// the loaded library decides, not its header. False when it refuses.
    [[nodiscard]] bool allowOnlyHttp(CURL* easy) const;

    /// The library, loaded and set up, for as long as the program runs; nullptr when this system does not have it. May
    /// be called from any thread.
    [[nodiscard]] static const CurlLibrary* load();
};

} // namespace quillane
