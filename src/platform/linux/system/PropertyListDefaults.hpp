// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/preferences/UserDefaults.hpp"
#include "core/support/AtomicFile.hpp"

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace quillane {

/// `$XDG_CONFIG_HOME/quillane/defaults.plist`; `~/.config` when the variable is unset or not absolute (XDG Base
/// Directory Specification).
[[nodiscard]] std::filesystem::path standardDefaultsFile();

/// Settings in a property list file of mode 0600, read once and replaced atomically on every change. Main thread.
///
/// A damaged file, or one over 16 MiB, is renamed to `NAME.damaged-TIME` beside itself, and the settings start empty.
/// While the file cannot be read it is never overwritten: changes stay in memory and are applied to its content as soon
/// as it can be read again. A change that cannot be written stays in memory too and is written with the next one, as a
/// note is.
class PropertyListDefaults final : public core::UserDefaults {
public:
    static constexpr std::size_t maximumBytes = std::size_t{16} << 20;

    /// Reads the file. Never fails; `lastError` says when it could not be read.
    explicit PropertyListDefaults(std::filesystem::path file);

    /// Writes the notes that no change has written.
    ~PropertyListDefaults() override;

    PropertyListDefaults(const PropertyListDefaults&) = delete;
    PropertyListDefaults& operator=(const PropertyListDefaults&) = delete;

    [[nodiscard]] std::optional<core::PropertyListValue> object(std::string_view key) const override;
    void setObject(std::string_view key, core::PropertyListValue value) override;
    void setObjects(const core::PropertyListValue::Dictionary& values) override;
    void removeObject(std::string_view key) override;
    void note(std::string_view key, core::PropertyListValue value) override;

    /// Why the settings in memory are not on the disk, or none when they are. EFBIG: they are too large or nested too
    /// deeply.
    [[nodiscard]] std::optional<core::FileError> lastError() const { return lastError_; }

private:
    using Dictionary = core::PropertyListValue::Dictionary;
    using Changes = std::map<std::string, std::optional<core::PropertyListValue>, std::less<>>;

    void change(std::string key, std::optional<core::PropertyListValue> value);
    void load();
    void setAside();
    void write();
    [[nodiscard]] tl::expected<void, core::FileError> tryToWrite();

    std::filesystem::path file_;
    Dictionary values_;
    Changes unsaved_; ///< what the file does not hold yet; an empty value is a removal
    bool fileRead_ = false;
    std::optional<core::FileError> lastError_;
};

} // namespace quillane
