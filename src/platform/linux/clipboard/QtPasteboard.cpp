// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/clipboard/QtPasteboard.hpp"

#include "platform/linux/clipboard/ClipboardTargets.hpp"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <algorithm>
#include <span>
#include <utility>

namespace quillane {

namespace {

const std::string* stringOf(const core::PasteboardItem& item, std::string_view type) {
    const auto found = std::ranges::find(item.strings, type, &std::pair<std::string, std::string>::first);
    return found != item.strings.end() ? &found->second : nullptr;
}

const core::SharedBytes* bytesOf(const core::PasteboardItem& item, std::string_view type) {
    const auto found = std::ranges::find(item.representations, type, &core::ClipboardRepresentation::type);
    return found != item.representations.end() ? &found->data : nullptr;
}

} // namespace

QtPasteboard::QtPasteboard() {
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
        if (!isWriting_ && !isOwner()) {
            items_.clear();
            ++changeCount_;
        }
    });
}

bool QtPasteboard::isOwner() const {
    return !items_.empty() && QGuiApplication::clipboard()->ownsClipboard();
}

std::vector<std::vector<std::string>> QtPasteboard::itemTypes() const {
    std::vector<std::vector<std::string>> result;
    for (const auto& item : items_) {
        auto& types = result.emplace_back();
        std::ranges::transform(item.representations, std::back_inserter(types), &core::ClipboardRepresentation::type);
        std::ranges::transform(item.strings, std::back_inserter(types), &std::pair<std::string, std::string>::first);
    }
    return result;
}

std::optional<core::SharedBytes> QtPasteboard::data(std::size_t item, std::string_view type) const {
    if (item >= items_.size()) {
        return std::nullopt;
    }
    if (const auto* bytes = bytesOf(items_[item], type)) {
        return *bytes;
    }
    if (const auto* text = stringOf(items_[item], type)) {
        const auto bytes = std::as_bytes(std::span(*text));
        return std::vector<std::byte>(bytes.begin(), bytes.end());
    }
    return std::nullopt;
}

std::optional<std::string> QtPasteboard::string(std::string_view type) const {
    for (std::size_t item = 0; item < items_.size(); ++item) {
        if (const auto bytes = data(item, type)) {
            return std::string(reinterpret_cast<const char*>((*bytes)->data()), (*bytes)->size());
        }
    }
    return std::nullopt;
}

void QtPasteboard::clear() {
    isWriting_ = true;
    items_.clear();
    ++changeCount_;
    QGuiApplication::clipboard()->clear();
    isWriting_ = false;
}

bool QtPasteboard::setString(std::string_view type, std::string_view text) {
    return write({{{}, {{std::string(type), std::string(text)}}}});
}

bool QtPasteboard::write(std::vector<core::PasteboardItem> items) {
    auto offered = std::make_unique<QMimeData>();
    for (const auto target : clipboardTargets::targetsFor(items)) {
        if (const auto bytes = clipboardTargets::dataFor(target, items); bytes && target.find('/') != target.npos) {
            offered->setData(QString::fromUtf8(target.data(), qsizetype(target.size())),
                             QByteArray(reinterpret_cast<const char*>((*bytes)->data()), qsizetype((*bytes)->size())));
        }
    }
    if (items.empty() || offered->formats().isEmpty()) {
        return false;
    }
    isWriting_ = true;
    items_ = std::move(items);
    QGuiApplication::clipboard()->setMimeData(offered.release());
    isWriting_ = false;
    return true;
}

} // namespace quillane
