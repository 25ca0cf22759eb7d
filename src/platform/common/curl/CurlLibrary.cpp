// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/common/curl/CurlLibrary.hpp"

#include <optional>

#include <dlfcn.h>

namespace quillane {

namespace {

/// Looks each function up by its name in the header.
class Symbols {
public:
    explicit Symbols(void* library) : library_(library) {}

    template <typename Function>
    void find(Function*& function, const char* name) {
        function = reinterpret_cast<Function*>(dlsym(library_, name));
        areAllFound_ = areAllFound_ && function != nullptr;
    }

    [[nodiscard]] bool areAllFound() const { return areAllFound_; }

private:
    void* library_;
    bool areAllFound_ = true;
};

std::optional<CurlLibrary> open() {
    void* library = dlopen(QUILLANE_LIBCURL, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        return std::nullopt;
    }
    CurlLibrary curl;
    Symbols symbols(library);
    symbols.find(curl.easyInit, "curl_easy_init");
    symbols.find(curl.easyCleanup, "curl_easy_cleanup");
    symbols.find(curl.easySetOption, "curl_easy_setopt");
    symbols.find(curl.easyGetInfo, "curl_easy_getinfo");
    symbols.find(curl.multiInit, "curl_multi_init");
    symbols.find(curl.multiCleanup, "curl_multi_cleanup");
    symbols.find(curl.multiAddHandle, "curl_multi_add_handle");
    symbols.find(curl.multiRemoveHandle, "curl_multi_remove_handle");
    symbols.find(curl.multiPerform, "curl_multi_perform");
    symbols.find(curl.multiPoll, "curl_multi_poll");
    symbols.find(curl.multiWakeUp, "curl_multi_wakeup");
    symbols.find(curl.multiInfoRead, "curl_multi_info_read");
    symbols.find(curl.url, "curl_url");
    symbols.find(curl.urlCleanup, "curl_url_cleanup");
    symbols.find(curl.urlGet, "curl_url_get");
    symbols.find(curl.urlSet, "curl_url_set");
    symbols.find(curl.listAppend, "curl_slist_append");
    symbols.find(curl.listFreeAll, "curl_slist_free_all");
    symbols.find(curl.free, "curl_free");
    decltype(&curl_global_init) globalInit = nullptr;
    symbols.find(globalInit, "curl_global_init");
    if (!symbols.areAllFound() || globalInit(CURL_GLOBAL_DEFAULT) != CURLE_OK) {
        return std::nullopt;
    }
    return curl;
}

} // namespace

bool CurlLibrary::allowOnlyHttp(CURL* easy) const {
#if CURL_AT_LEAST_VERSION(7, 85, 0)
    if (const auto result = easySetOption(easy, CURLOPT_PROTOCOLS_STR, "http,https"); result != CURLE_UNKNOWN_OPTION) {
        return result == CURLE_OK;
    }
#endif
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    return easySetOption(easy, CURLOPT_PROTOCOLS, static_cast<long>(CURLPROTO_HTTP | CURLPROTO_HTTPS)) == CURLE_OK;
#pragma GCC diagnostic pop
}

const CurlLibrary* CurlLibrary::load() {
    static const auto curl = open(); // never unloaded: its threads may still run at the end of the program
    return curl ? &*curl : nullptr;
}

} // namespace quillane
