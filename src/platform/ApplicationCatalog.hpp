// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <string>
#include <vector>

namespace quillane {

/// An application that the user can name.
struct KnownApplication {
    std::string bundleID; ///< as `Workspace` reports it when the application is in front
    std::string name;     ///< in the language of the session
    bool running = false;

    bool operator==(const KnownApplication&) const = default;
};

/// The applications that are installed or running. Main thread.
class ApplicationCatalog {
public:
    using Handler = std::function<void(const std::vector<KnownApplication>& applications)>;

    virtual ~ApplicationCatalog() = default;

    /// Looks for them off the main thread, then calls the handler once, on the main thread, unless this object has been
    /// destroyed; never inside the call. Each identifier occurs once, in no particular order; this program's own is
    /// left out.
    virtual void read(Handler handler) = 0;
};

} // namespace quillane
