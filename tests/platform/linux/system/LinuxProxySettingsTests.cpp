// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/system/LinuxProxySettings.hpp"

#include "contracts/ProxySettingsContract.hpp"
#include "platform/Platform.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include <gio/gio.h>

namespace quillane {
namespace {

/// An environment without any proxy.
class LinuxProxySettingsTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (const auto* name : {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY", "HTTP_PROXY"}) {
            ::unsetenv(name);
        }
    }
};

TEST_F(LinuxProxySettingsTest, WithoutADesktopsSettingsThereIsNoProxy) {
    EXPECT_EQ(LinuxProxySettings().proxyFor("https://files.example/a"), "");
    EXPECT_EQ(LinuxProxySettings().proxyFor("not a URL"), "");
}

TEST_F(LinuxProxySettingsTest, TheEnvironmentDecidesWhenItNamesAProxy) {
    for (const auto* name : {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"}) {
        ::setenv(name, "http://proxy.example:3128", 1);
        EXPECT_EQ(LinuxProxySettings().proxyFor("https://files.example/a"), std::nullopt) << name;
        ::setenv(name, "", 1);
        EXPECT_EQ(LinuxProxySettings().proxyFor("https://files.example/a"), "") << name;
    }
}

/// A resolver that reads HTTP_PROXY, as GIO's module for libproxy does.
struct HeaderResolver {
    GObject parent;
};

struct HeaderResolverClass {
    GObjectClass parent;
};

gchar** lookUpHeader(GProxyResolver*, const gchar*, GCancellable*, GError**) {
    const char* proxy = std::getenv("HTTP_PROXY");
    return g_strsplit(proxy != nullptr ? proxy : "direct://", ",", -1);
}

GType headerResolverType() {
    static const GType type = [] {
        constexpr auto takeInterface = [](gpointer interface, gpointer) {
            static_cast<GProxyResolverInterface*>(interface)->lookup = lookUpHeader;
        };
        const GInterfaceInfo resolver{takeInterface, nullptr, nullptr};
        const auto made = g_type_register_static_simple(G_TYPE_OBJECT, "HeaderResolver", sizeof(HeaderResolverClass),
                                                        nullptr, sizeof(HeaderResolver), nullptr, GTypeFlags{});
        g_type_add_interface_static(made, G_TYPE_PROXY_RESOLVER, &resolver);
        return made;
    }();
    return type;
}

TEST_F(LinuxProxySettingsTest, HeaderThatBecameAVariableIsIgnoredWhateverResolverIsInstalled) {
    const std::unique_ptr<GObject, void (*)(void*)> resolver(
        static_cast<GObject*>(g_object_new(headerResolverType(), nullptr)), g_object_unref);
    ::setenv("HTTP_PROXY", "http://evil.example:3128", 1);
    static_cast<void>(checkDesktop()); // as the agent does first
    EXPECT_EQ(LinuxProxySettings(reinterpret_cast<GProxyResolver*>(resolver.get())).proxyFor("http://nas/a"), "");
    EXPECT_EQ(LinuxProxySettings().proxyFor("http://nas/a"), "");
}

class LinuxProxySettingsDriver {
public:
    [[nodiscard]] const ProxySettings& settings() const { return settings_; }

private:
    LinuxProxySettings settings_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, ProxySettingsContract, LinuxProxySettingsDriver);
} // namespace testing
} // namespace quillane
