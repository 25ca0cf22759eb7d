// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ApplicationCatalog.hpp"

#include <QObject>
#include <QString>

#include <functional>
#include <string>
#include <vector>

class QWidget;

namespace quillane {

/// The applications that the user can add to a list, and the names of those on it.
class ApplicationChooser : public QObject {
    Q_OBJECT

public:
    using Search = std::function<void(ApplicationCatalog::Handler)>;

    /// `search` as ApplicationCatalog does; absent where none can be found.
    ApplicationChooser(Search search, QWidget& page);

    [[nodiscard]] bool isAvailable() const { return search_ != nullptr; }

    /// Looks for applications and then calls `found`, unless the page has gone.
    void find(std::function<void()> found);

    /// As of the last search; the identifier of one that was not found.
    [[nodiscard]] QString nameOf(const std::string& bundleID) const;

    /// Offers those that are not listed yet in a menu below the anchor, the running ones first.
    void offer(QWidget& anchor, const std::vector<std::string>& listed,
               const std::function<void(const std::string& bundleID)>& chosen);

private:
    Search search_;
    QWidget& page_;
    std::vector<KnownApplication> applications_; ///< by name
};

} // namespace quillane
